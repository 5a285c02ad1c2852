#include "DialogAnswers.h"
#include "TestWorld.h"

#include "app/FileChooser.h"
#include "app/ZipPictures.h"

#include <QRandomGenerator>

#include <zip.h>

namespace {

void makeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

// Every entry of the archive as name=content, read back with libzip; "unreadable" when the
// archive cannot be opened.
QStringList readBack(const QString& zipPath)
{
    int error = 0;
    zip_t* archive =
        zip_open(QFile::encodeName(zipPath).constData(), ZIP_RDONLY | ZIP_CHECKCONS, &error);
    if (!archive)
        return {QStringLiteral("unreadable")};
    QStringList entries;
    for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i) {
        zip_stat_t stat;
        zip_stat_index(archive, zip_uint64_t(i), 0, &stat);
        QByteArray bytes(qsizetype(stat.size), '\0');
        zip_file_t* file = zip_fopen_index(archive, zip_uint64_t(i), 0);
        const zip_int64_t got = file ? zip_fread(file, bytes.data(), stat.size) : -1;
        if (file)
            zip_fclose(file);
        entries << QString::fromUtf8(stat.name) + u'=' +
                       (got == zip_int64_t(stat.size) ? QString::fromLatin1(bytes)
                                                      : QStringLiteral("?"));
    }
    zip_close(archive);
    return entries;
}

} // namespace

class tst_ZipPictures : public QObject
{
    Q_OBJECT

    int m_folders = 0;

    QString freshFolder()
    {
        const QString folder =
            property("worldPath").toString() + QStringLiteral("/zip%1/").arg(++m_folders);
        QDir().mkpath(folder);
        return folder;
    }

private slots:
    void cleanup() { FileChooser::SetAnswer({}); }

    void writesTheChosenPictures_data()
    {
        QTest::addColumn<QStringList>("pictures");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("existing");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("written");
        QTest::addColumn<QStringList>("entries");

        const QStringList two{"a/beach.jpg", "a/cat.bmp"};
        const QStringList bothEntries{"beach.jpg=a/beach.jpg", "cat.bmp=a/cat.bmp"};
        QTest::newRow("two pictures, names and bytes")
            << two << "out.zip" << false << 0 << "out.zip" << bothEntries;
        QTest::newRow("a name typed without .zip gains it")
            << two << "out" << false << 0 << "out.zip" << bothEntries;
        QTest::newRow("one name from two folders, the second a Copy Of")
            << QStringList{"a/beach.jpg", "b/beach.jpg"} << "out.zip" << false << 0 << "out.zip"
            << QStringList{"beach.jpg=a/beach.jpg", "Copy Of beach.jpg=b/beach.jpg"};
        QTest::newRow("an archive there, replaced after yes")
            << two << "out.zip" << true << int(QMessageBox::Yes) << "out.zip" << bothEntries;
        QTest::newRow("an archive there, kept after no")
            << two << "out.zip" << true << int(QMessageBox::No) << "out.zip"
            << QStringList{"old.txt=old"};
        QTest::newRow("save dialog cancelled, nothing written")
            << two << "" << false << 0 << "out.zip" << QStringList{"unreadable"};
    }

    void writesTheChosenPictures()
    {
        QFETCH(QStringList, pictures);
        QFETCH(QString, typed);
        QFETCH(bool, existing);
        QFETCH(int, answer);
        QFETCH(QString, written);
        QFETCH(QStringList, entries);
        const QString folder = freshFolder();
        QStringList files;
        // Each picture holds its own relative path, so every entry shows where it came from.
        for (const QString& picture : pictures) {
            makeFile(folder + picture, picture.toLatin1());
            files << folder + picture;
        }
        if (existing) {
            makeFile(folder + "old.txt", "old");
            QVERIFY(ZipPictures::Write({folder + "old.txt"}, folder + "out.zip"));
        }
        FileChooser::Request asked;
        FileChooser::SetAnswer([&](const FileChooser::Request& request) {
            asked = request;
            return typed.isEmpty() ? QStringList{} : QStringList{folder + typed};
        });
        DialogAnswers answers({QMessageBox::StandardButton(answer)});

        ZipPictures::Run(nullptr, files);

        QVERIFY(asked.save);
        QCOMPARE(asked.folder, QFileInfo(files.first()).absolutePath());
        QCOMPARE(answers.seen.size(), existing ? 1 : 0);
        QCOMPARE(readBack(folder + written), entries);
        // Nothing half-written is left beside the archive.
        const QStringList left = QDir(folder).entryList(QDir::Files);
        QVERIFY2(left.filter(QStringLiteral("out.zip.")).isEmpty(), qPrintable(left.join(u' ')));
    }

    void cancellingLeavesNoPartialFile_data()
    {
        QTest::addColumn<bool>("existing");
        QTest::newRow("new archive: no file at all") << false;
        QTest::newRow("replacing: the old archive stays whole") << true;
    }

    void cancellingLeavesNoPartialFile()
    {
        QFETCH(bool, existing);
        const QString folder = freshFolder();
        QStringList files;
        // Random bytes do not compress, so the write takes enough steps to be cancelled.
        for (int i = 0; i < 8; ++i) {
            QByteArray bytes(512 * 1024, Qt::Uninitialized);
            QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(bytes.data()),
                                                  bytes.size() / 4);
            makeFile(folder + QStringLiteral("p%1.bmp").arg(i), bytes);
            files << folder + QStringLiteral("p%1.bmp").arg(i);
        }
        if (existing) {
            makeFile(folder + "old.txt", "old");
            QVERIFY(ZipPictures::Write({folder + "old.txt"}, folder + "out.zip"));
        }
        const QStringList before = QDir(folder).entryList(QDir::Files, QDir::Name);
        int calls = 0;
        QString why;
        QVERIFY(!ZipPictures::Write(
            files, folder + "out.zip",
            [&calls](double done) {
                ++calls;
                return done < 0.3;
            },
            &why));
        QVERIFY(calls > 1);
        QCOMPARE(QDir(folder).entryList(QDir::Files, QDir::Name), before);
        if (existing)
            QCOMPARE(readBack(folder + "out.zip"), QStringList{"old.txt=old"});
    }
};

LUMBRA_TEST_MAIN(tst_ZipPictures)
#include "tst_zippictures.moc"
