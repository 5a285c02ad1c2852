#include "AppFixtures.h"
#include "TestWorld.h"

#include "app/StartUp.h"

class tst_SettingsStore : public QObject
{
    Q_OBJECT

    static QString freshPath()
    {
        static int count = 0;
        return WorldPath(QStringLiteral("store%1/Lumbra.ini").arg(++count));
    }

private Q_SLOTS:
    void defaultPathFollowsXdgConfigHome()
    {
        QCOMPARE(SettingsStore::defaultPath(), WorldPath("config/Lumbra/Lumbra.ini"));
    }

    void readGlobals_data()
    {
        QTest::addColumn<QStringList>("stored"); // in [General], as key=value
        QTest::addColumn<QList<long>>("options");
        QTest::newRow("empty store gives the catalogue's defaults")
            << QStringList{} << QList<long>{1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 1, 0, 0};
        QTest::newRow("an unreadable option is zero, not its default")
            << QStringList{"Options_3=abc", "Options_9=1"} << QList<long>{1, 1, 1, 0, 1, 1, 1, 1, 1, 1, 0, 1, 0, 0};
    }
    void readGlobals()
    {
        QFETCH(QStringList, stored);
        SettingsStore store(freshPath());
        for (const QString& entry : stored)
            store.write("General", entry.section(u'=', 0, 0), entry.section(u'=', 1));
        AppGlobals globals;
        StartUp::ReadGlobals(store, globals);
        QTEST(QList<long>(globals.Options.begin(), globals.Options.end()), "options");
        QCOMPARE(globals.MyColor, 12648384L);
        QCOMPARE(globals.WindowState, 0L);
    }

    void namesIgnoreCase_data()
    {
        QTest::addColumn<QString>("writeSection");
        QTest::addColumn<QString>("writeKey");
        QTest::addColumn<QString>("readSection");
        QTest::addColumn<QString>("readKey");
        QTest::newRow("window state key") << Keys::WindowStateWrite.section << Keys::WindowStateWrite.key
                                          << Keys::WindowStateRead.section << Keys::WindowStateRead.key;
        QTest::newRow("slide interval") << Keys::Timer_DelayWrite.section << Keys::Timer_DelayWrite.key
                                        << Keys::Timer_DelayRead.section << Keys::Timer_DelayRead.key;
        QTest::newRow("key with a bar") << "mdiMain" << "ucSidebar|ucSideBar(0)" << "MDIMAIN" << "UCSIDEBAR|UCSIDEBAR(0)";
        QTest::newRow("key with a blank") << "mdiMain" << "Last Used" << "mdimain" << "last used";
    }
    void namesIgnoreCase()
    {
        QFETCH(QString, writeSection);
        QFETCH(QString, writeKey);
        QFETCH(QString, readSection);
        QFETCH(QString, readKey);
        const QString path = freshPath();
        {
            SettingsStore store(path);
            store.write(writeSection, writeKey, "first");
            store.write(readSection, readKey, "second, with a comma");
            QCOMPARE(store.read(readSection, readKey), QStringLiteral("second, with a comma"));
        }
        // Across a restart, and in the spelling written first.
        QCOMPARE(SettingsStore(path).read(writeSection, writeKey), QStringLiteral("second, with a comma"));
        const QByteArray text = ReadFile(path);
        QVERIFY2(!text.contains(readKey.toUtf8()) || readKey == writeKey, text.constData());
    }

    void booleansAreWords()
    {
        const QString path = freshPath();
        SettingsStore store(path);
        store.writeBool("frmMyImages", "View_1", false);
        store.writeBool("frmMyImages", "View_2", true);
        store.flush();
        const QByteArray text = ReadFile(path);
        QVERIFY2(text.contains("View_1=False") && text.contains("View_2=True"), text.constData());
    }

    void unreadableValueKeepsTheOldOne()
    {
        // What converts is checked with Formats; here, what happens when nothing does.
        SettingsStore store(freshPath());
        store.write("General", "Value", "abc");
        long number = 77;
        bool flag = true;
        QVERIFY(!store.readInto("General", "Value", "5", number));
        QVERIFY(!store.readInto("General", "Value", "False", flag));
        QCOMPARE(number, 77L);
        QCOMPARE(flag, true);
    }

    void damagedFileStartsWithDefaultsAndKeepsWorking_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("unclosed section") << QByteArray("[General\nOptions_3=0\n");
        QTest::newRow("binary junk") << QByteArray("\x00\xff\xfe[\x01\x02=\n\xc3(", 11);
        QTest::newRow("huge line") << QByteArray(1 << 20, 'x');
    }
    void damagedFileStartsWithDefaultsAndKeepsWorking()
    {
        QFETCH(QByteArray, content);
        const QString path = freshPath();
        WriteFile(path, content);
        {
            SettingsStore store(path);
            AppGlobals globals;
            StartUp::ReadGlobals(store, globals);
            QCOMPARE(globals.Options[3], 1L);
            store.write("General", "WindowState", 2);
        }
        QCOMPARE(SettingsStore(path).read("General", "Windowstate"), QStringLiteral("2"));
    }

    void unwritableFileKeepsValuesInMemory()
    {
        // A regular file where the settings folder should be: nothing can be written there.
        WriteFile(WorldPath("blocker"), {});
        SettingsStore store(WorldPath("blocker/Lumbra/Lumbra.ini"));
        store.write("General", "MyColor", 255);
        QCOMPARE(store.read("General", "MyColor"), QStringLiteral("255"));
        QVERIFY(!store.persisted());
    }
};

LUMBRA_TEST_MAIN(tst_SettingsStore)
#include "tst_settingsstore.moc"
