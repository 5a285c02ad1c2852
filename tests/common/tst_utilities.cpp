#include "TestWorld.h"

#include "common/Formats.h"
#include "common/Utilities.h"

#include <QFile>
#include <QLocale>

class tst_Utilities : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void sizeText_data()
    {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<QString>("expected");
        QTest::newRow("missing file") << qint64(-1) << "<none>";
        QTest::newRow("largest byte count") << qint64(999) << "999 Bytes";
        QTest::newRow("first kilobyte") << qint64(1000) << "1 KB";
        QTest::newRow("1.5 KB rounds to even 2") << qint64(1500) << "2 KB";
        QTest::newRow("2.5 KB rounds to even 2") << qint64(2500) << "2 KB";
        QTest::newRow("1000.5 KB rounds to even 1,000") << qint64(1000500) << "1,000 KB";
        QTest::newRow("just past a thousand KB") << qint64(1000501) << "1 MB";
        QTest::newRow("thousands of MB grouped") << qint64(1234567890) << "1,235 MB";
    }
    void sizeText()
    {
        QFETCH(qint64, bytes);
        // A sparse file of the given length (none for -1): the size text reads it from the disk.
        QFile file(property("worldPath").toString() + QStringLiteral("/sized.bin"));
        file.remove();
        if (bytes >= 0) {
            QVERIFY(file.open(QIODevice::WriteOnly));
            QVERIFY(file.resize(bytes));
            file.close();
        }
        QTEST(Utilities::FileSizeText(file.fileName()).value_or(QStringLiteral("<none>")), "expected");
    }

    void paths_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("joined");
        QTest::addColumn<QString>("fileName");
        QTest::newRow("root keeps one separator") << "/" << "a.jpg" << "/a.jpg" << "a.jpg";
        QTest::newRow("folder gains a separator") << "/home/pics" << "a.jpg" << "/home/pics/a.jpg" << "a.jpg";
        QTest::newRow("folder ending with separator") << "/home/pics/" << "b.png" << "/home/pics/b.png" << "b.png";
        QTest::newRow("empty folder") << "" << "c.gif" << "c.gif" << "c.gif";
    }
    void paths()
    {
        QFETCH(QString, folder);
        QFETCH(QString, name);
        QFETCH(QString, joined);
        QCOMPARE(Utilities::JoinPath(folder, name), joined);
        QTEST(Utilities::FileNameOf(joined), "fileName");
        QCOMPARE(Utilities::FileNameOf(QStringLiteral("/pics/")), QString());
    }

    void roundUp_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("expected");
        QTest::newRow("whole stays") << 3.0 << 3;
        QTest::newRow("fraction goes up") << 3.01 << 4;
        QTest::newRow("negative fraction goes toward zero") << -2.5 << -2;
    }
    void roundUp()
    {
        QFETCH(double, value);
        QTEST(Utilities::RoundUp(value), "expected");
    }

    void conversions_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("asLong");
        QTest::addColumn<QString>("asBool");
        QTest::newRow("blanks around") << "  7 " << "7" << "True";
        QTest::newRow("decimal half rounds to even") << "2.5" << "2" << "True";
        QTest::newRow("decimal half rounds up to even") << "3.5" << "4" << "True";
        QTest::newRow("minus one is true") << "-1" << "-1" << "True";
        QTest::newRow("zero is false") << "0" << "0" << "False";
        QTest::newRow("True in any case") << "tRUE" << "fail" << "True";
        QTest::newRow("False") << "False" << "fail" << "False";
        QTest::newRow("letters fail") << "abc" << "fail" << "fail";
        QTest::newRow("empty fails") << "" << "fail" << "fail";
    }
    void conversions()
    {
        QFETCH(QString, text);
        const auto number = Formats::toLong(text);
        QTEST(number ? QString::number(*number) : QStringLiteral("fail"), "asLong");
        const auto flag = Formats::toBool(text);
        QTEST(flag ? Formats::fromBool(*flag) : QStringLiteral("fail"), "asBool");
    }

    void formats()
    {
        QCOMPARE(Formats::thousands(0), QStringLiteral("0"));
        QCOMPARE(Formats::thousands(1234567), QStringLiteral("1,234,567"));
        QCOMPARE(Formats::thousandsNoZero(0), QString());
        QCOMPARE(Formats::nineDigits(1500), QStringLiteral("000001500"));
        QCOMPARE(Formats::mmddyyyy(QDate(2026, 3, 7)), QStringLiteral("03072026"));
        QCOMPARE(Formats::colorFromBgr(12648384), QColor(192, 255, 192));
        QCOMPARE(Formats::bgrFromColor(QColor(192, 255, 192)), qint64(12648384));
        QCOMPARE(Formats::twipsToPixels(6314), 420);
    }

    void specialFolders()
    {
        const QString pictures = Utilities::SpecialFolderPath(Utilities::Pictures);
        QVERIFY(pictures.endsWith(u'/'));
        QCOMPARE(Utilities::SpecialFolderName(pictures), QStringLiteral("My Pictures"));
        QCOMPARE(Utilities::SpecialFolderName(pictures.chopped(1)), QStringLiteral("My Pictures"));
        QCOMPARE(Utilities::SpecialFolderName(Utilities::SpecialFolderPath(Utilities::Desktop)),
                 QStringLiteral("Desktop"));
        QCOMPARE(Utilities::SpecialFolderName(Utilities::SpecialFolderPath(Utilities::Documents)),
                 QStringLiteral("My Documents"));
        QCOMPARE(Utilities::SpecialFolderName(QStringLiteral("/srv/photos/my pictures/")),
                 QStringLiteral("My Pictures"));
        QCOMPARE(Utilities::SpecialFolderName(QStringLiteral("/srv/photos")), QStringLiteral("/srv/photos"));
    }

    void programFolderFollowsLumbraHome()
    {
        const QString home = property("worldPath").toString() + QStringLiteral("/home");
        QCOMPARE(Utilities::ProgramFolder(), home);
        qputenv("LUMBRA_HOME", QFile::encodeName(home + QStringLiteral("/nested/deeper")));
        QCOMPARE(Utilities::ProgramFolder(), home + QStringLiteral("/nested/deeper"));
        QVERIFY(QFileInfo(home + QStringLiteral("/nested/deeper")).isDir());
        qputenv("LUMBRA_HOME", QFile::encodeName(home));
    }
};

LUMBRA_TEST_MAIN(tst_Utilities)
#include "tst_utilities.moc"
