#include "AppFixtures.h"
#include "DialogAnswers.h"
#include "TestWorld.h"

#include "app/ZipPictures.h"

#include <QRandomGenerator>

#include <zip.h>

// Every entry of the archive as name=content, read back with libzip; "unreadable" when the
// archive cannot be opened.
static QStringList readBack(const QString& zipPath)
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

class tst_ZipPictures : public QObject
{
    Q_OBJECT

    // A folder of its own for each case, with the pictures in it; each picture holds its own
    // relative path, so every entry shows where it came from.
    static QStringList makeFolder(QString& folder, const QStringList& pictures, bool oldArchive)
    {
        static int count = 0;
        folder = WorldPath(QStringLiteral("zip%1/").arg(++count));
        QDir().mkpath(folder);
        QStringList files;
        for (const QString& picture : pictures) {
            WriteFile(folder + picture, picture.toLatin1());
            files << folder + picture;
        }
        if (oldArchive) {
            WriteFile(folder + "old.txt", "old");
            [[maybe_unused]] const bool made = ZipPictures::Write({folder + "old.txt"}, folder + "out.zip");
        }
        return files;
    }

private slots:
    void writesTheChosenPictures_data()
    {
        QTest::addColumn<QStringList>("pictures");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("existing");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QStringList>("entries"); // of out.zip
        const QStringList two{"a/beach.jpg", "a/cat.bmp"};
        const QStringList bothEntries{"beach.jpg=a/beach.jpg", "cat.bmp=a/cat.bmp"};
        QTest::newRow("two pictures, names and bytes") << two << "out.zip" << false << 0 << bothEntries;
        QTest::newRow("a name typed without .zip gains it") << two << "out" << false << 0 << bothEntries;
        QTest::newRow("one name from two folders, the second a Copy Of")
            << QStringList{"a/beach.jpg", "b/beach.jpg"} << "out.zip" << false << 0
            << QStringList{"beach.jpg=a/beach.jpg", "Copy Of beach.jpg=b/beach.jpg"};
        QTest::newRow("an archive there, replaced after yes")
            << two << "out.zip" << true << int(QMessageBox::Yes) << bothEntries;
        QTest::newRow("an archive there, kept after no")
            << two << "out.zip" << true << int(QMessageBox::No) << QStringList{"old.txt=old"};
        QTest::newRow("save dialog cancelled, nothing written")
            << two << "" << false << 0 << QStringList{"unreadable"};
    }

    void writesTheChosenPictures()
    {
        QFETCH(QStringList, pictures);
        QFETCH(QString, typed);
        QFETCH(bool, existing);
        QFETCH(int, answer);
        QFETCH(QStringList, entries);
        QString folder;
        const QStringList files = makeFolder(folder, pictures, existing);
        FileAnswers chosen({typed.isEmpty() ? QStringList{} : QStringList{folder + typed}});
        DialogAnswers answers({QMessageBox::StandardButton(answer)});

        ZipPictures::Run(nullptr, files);

        QVERIFY(chosen.asked.value(0).save);
        QCOMPARE(chosen.asked.value(0).folder, QFileInfo(files.first()).absolutePath());
        QCOMPARE(answers.seen.size(), existing ? 1 : 0);
        QCOMPARE(readBack(folder + "out.zip"), entries);
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
        QString folder;
        QStringList files = makeFolder(folder, {}, existing);
        // Random bytes do not compress, so the write takes enough steps to be cancelled.
        for (int i = 0; i < 8; ++i) {
            QByteArray bytes(512 * 1024, Qt::Uninitialized);
            QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(bytes.data()), bytes.size() / 4);
            files << folder + QStringLiteral("p%1.bmp").arg(i);
            WriteFile(files.last(), bytes);
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
