#include "TestWorld.h"

#include "app/SettingsStore.h"
#include "gallery/FilesFound.h"
#include "gallery/PictureScan.h"
#include "gallery/SortKeys.h"

#include <QDateTime>
#include <QFile>

class tst_FilesFound : public QObject
{
    Q_OBJECT

    int m_folders = 0;

    QString freshFolder()
    {
        const QString folder =
            property("worldPath").toString() + QStringLiteral("/pics%1/").arg(++m_folders);
        QDir().mkpath(folder);
        return folder;
    }

    // "name" an empty file, "name/" a folder, "name->target" a symbolic link.
    static void make(const QString& folder, const QStringList& layout)
    {
        for (const QString& entry : layout) {
            const QStringList link = entry.split(QStringLiteral("->"));
            if (entry.endsWith(u'/'))
                QVERIFY(QDir().mkpath(folder + entry));
            else if (link.size() == 2)
                QVERIFY(QFile::link(folder + link[1], folder + link[0]));
            else
                QVERIFY(QFile(folder + entry).open(QIODevice::WriteOnly));
        }
    }

    // A file of the given length, last modified at noon local time.
    static void makeSized(const QString& path, qint64 bytes, QDate date)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(bytes));
        QVERIFY(file.setFileTime(QDateTime(date, QTime(12, 0)), QFileDevice::FileModificationTime));
    }

    // The names in name order: the directory decides the order of the scan.
    static QStringList names(const FilesFound& files)
    {
        QStringList list;
        for (qsizetype i = 0; i < files.Count(); ++i)
            list << files.File(i);
        list.sort();
        return list;
    }

private Q_SLOTS:
    void scanFolder_data()
    {
        QTest::addColumn<QStringList>("layout");
        QTest::addColumn<bool>("extraTypes");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("upper- and mixed-case extensions, two of a type")
            << QStringList{"A.JPG", "c.GiF", "b.Bmp", "d.jpg"} << true
            << QStringList{"A.JPG", "b.Bmp", "c.GiF", "d.jpg"};
        QTest::newRow("hidden files and folders skipped")
            << QStringList{".h.jpg", ".d.jpg/", ".d.jpg/in.jpg", "v.jpg"} << true
            << QStringList{"v.jpg"};
        QTest::newRow("folder named like a picture skipped")
            << QStringList{"x.jpg/", "y.gif"} << true << QStringList{"y.gif"};
        QTest::newRow("links count only when they lead to a regular file")
            << QStringList{"real.bin", "l.jpg->real.bin", "sub/", "d.jpg->sub", "gone.jpg->nothing"}
            << true << QStringList{"l.jpg"};
        QTest::newRow("png and webp only with Extra_Types")
            << QStringList{"p.png", "o.webp", "n.jpeg", "m.tiff"} << false
            << QStringList{"m.tiff", "n.jpeg"};
        QTest::newRow("other extensions are not pictures")
            << QStringList{"a.txt", "b.jpgx", "c.jpg.bak", "jpg", "d.jpe"} << true << QStringList{};
    }
    void scanFolder()
    {
        QFETCH(QStringList, layout);
        QFETCH(bool, extraTypes);
        const QString folder = freshFolder();
        make(folder, layout);
        SettingsStore::global().writeBool(Keys::Extra_Types, extraTypes);

        FilesFound files;
        QCOMPARE(PictureScan::scanPath(files, folder.chopped(1)), 0);
        QCOMPARE(files.Path(), folder);
        QTEST(names(files), "expected");
        QCOMPARE(files.File(files.Count()), QString());
    }

    void setPath_data()
    {
        // Relative to a folder holding pic.jpg, .secret.jpg and other.gif.
        QTest::addColumn<QString>("given");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("listFolder");
        QTest::addColumn<QStringList>("expected");
        const QStringList both{"other.gif", "pic.jpg"};
        QTest::newRow("folder without the separator") << "" << 0 << "/" << both;
        QTest::newRow("a picture in it") << "/pic.jpg" << 1 << "/" << QStringList{"pic.jpg"};
        QTest::newRow("a picture named in another case")
            << "/PIC.JPG" << 1 << "/" << QStringList{"pic.jpg"};
        QTest::newRow("a wildcard names what it matches")
            << "/*.GIF" << 1 << "/" << QStringList{"other.gif"};
        QTest::newRow("a missing path is an empty folder")
            << "/gone" << 0 << "/gone/" << QStringList{};
        QTest::newRow("a hidden file is not found")
            << "/.secret.jpg" << 0 << "/.secret.jpg/" << QStringList{};
    }
    void setPath()
    {
        QFETCH(QString, given);
        QFETCH(int, result);
        QFETCH(QString, listFolder);
        const QString folder = freshFolder().chopped(1);
        make(folder + u'/', {"pic.jpg", ".secret.jpg", "other.gif"});

        // A folder path gains the separator in the caller's text; a file path stays.
        FilesFound probe;
        QString path = folder + given;
        QCOMPARE(probe.SetPath(path), result);
        QCOMPARE(path, result ? folder + given : folder + listFolder);

        FilesFound files;
        QCOMPARE(PictureScan::scanPath(files, folder + given), result);
        QCOMPARE(files.Path(), folder + listFolder);
        QTEST(names(files), "expected");
    }

    void sortedOrder_data()
    {
        QTest::addColumn<QString>("stored");    // the window's "Sortation"; empty: missing
        QTest::addColumn<QStringList>("files"); // name:bytes:yyyy-MM-dd, added in this order
        QTest::addColumn<QStringList>("expected");
        const QString day = QStringLiteral(":1:2020-01-01");
        QTest::newRow("missing setting sorts by name, ignoring case")
            << "" << QStringList{"b.jpg" + day, "C.jpg" + day, "a.JPG" + day}
            << QStringList{"a.JPG", "b.jpg", "C.jpg"};
        QTest::newRow("names compare as text, digit by digit")
            << "0" << QStringList{"img9.jpg" + day, "img10.jpg" + day}
            << QStringList{"img10.jpg", "img9.jpg"};
        QTest::newRow("an order outside 0..3 sorts by name")
            << "7" << QStringList{"b.bmp" + day, "a.gif" + day} << QStringList{"a.gif", "b.bmp"};
        // The type is the name's last three letters: "PEG" comes after "JPG".
        QTest::newRow("by type, ignoring case")
            << "1" << QStringList{"z.jpg" + day, "q.jpeg" + day, "x.gif" + day, "a.JPG" + day,
                           "m.bmp" + day}
            << QStringList{"m.bmp", "x.gif", "z.jpg", "a.JPG", "q.jpeg"};
        // Hundreds rounded half to even: 150 and 250 bytes both count 2, 251 counts 3.
        QTest::newRow("by size in hundreds, a missing file first")
            << "2" << QStringList{"a.jpg:150:2020-01-01",  "b.jpg:99:2020-01-01",
                                  "c.jpg:1000:2020-01-01", "gone.jpg",
                                  "e.jpg:251:2020-01-01",  "d.jpg:250:2020-01-01"}
            << QStringList{"gone.jpg", "b.jpg", "a.jpg", "d.jpg", "e.jpg", "c.jpg"};
        QTest::newRow("by date, month before day before year")
            << "3"
            << QStringList{"old.jpg:1:2003-02-01", "new.jpg:1:2005-01-15", "dec.jpg:1:2001-12-31",
                           "jan.jpg:1:2009-01-01"}
            << QStringList{"jan.jpg", "new.jpg", "old.jpg", "dec.jpg"};
        QStringList ties;
        for (int i = 0; i < 40; ++i)
            ties << QStringLiteral("t%1.jpg").arg((i * 17) % 40) + day;
        QStringList tieOrder = ties;
        tieOrder.replaceInStrings(day, QString());
        QTest::newRow("forty equal keys keep list order") << "2" << ties << tieOrder;
    }
    void sortedOrder()
    {
        QFETCH(QString, stored);
        QFETCH(QStringList, files);
        const QString folder = freshFolder();
        const QString section = QStringLiteral("frmThumbnails%1").arg(m_folders);
        if (!stored.isEmpty())
            SettingsStore::global().write(Keys::Sortation.in(section), stored);

        FilesFound list;
        QString path = folder;
        list.SetPath(path);
        for (const QString& entry : files) {
            const QStringList parts = entry.split(u':');
            if (parts.size() == 3)
                makeSized(folder + parts[0], parts[1].toLongLong(),
                          QDate::fromString(parts[2], Qt::ISODate));
            list.AddFile(parts[0]);
        }
        QStringList sorted;
        for (const qsizetype i : SortKeys::sortedOrder(list, SortKeys::storedSortation(section)))
            sorted << list.File(i);
        QTEST(sorted, "expected");
    }
};

LUMBRA_TEST_MAIN(tst_FilesFound)
#include "tst_filesfound.moc"
