#include "AppFixtures.h"
#include "TestWorld.h"

#include "app/MainMenus.h"
#include "app/StartUp.h"
#include "app/WindowBalloon.h"
#include "app/frmSysTray.h"
#include "controls/ucSideBar.h"

#include <QDir>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QStatusBar>

class tst_MainWindow : public QObject
{
    Q_OBJECT

    static void setOptions(const QList<int>& on)
    {
        Globals().Options.fill(0);
        for (int index : on)
            Globals().Options[size_t(index)] = 1;
    }

private Q_SLOTS:
    void init() { FreshSettings(); }

    void leftoversAreCleanedUp_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QStringList>("kept");
        QTest::newRow("matches go")
            << QStringList{"st6a.tmp", "st6b.x", "ST6C.TMP", "st6"} << QStringList{};
        QTest::newRow("others stay")
            << QStringList{"st5a.tmp", "ast6.tmp", "TIPOFDAY.TXT"} << QStringList{"TIPOFDAY.TXT", "ast6.tmp", "st5a.tmp"};
    }
    void leftoversAreCleanedUp()
    {
        QFETCH(QStringList, files);
        QTemporaryDir folder;
        for (const QString& name : files)
            WriteFile(folder.filePath(name), {});
        QDir(folder.path()).mkdir(QStringLiteral("st6folder"));
        StartUp::CleanLeftovers(folder.path());
        QTEST(QDir(folder.path()).entryList(QDir::Files, QDir::Name), "kept");
        QVERIFY(QFileInfo(folder.filePath(QStringLiteral("st6folder"))).isDir());
    }

    void startUp_data()
    {
        QTest::addColumn<QList<int>>("options");
        QTest::addColumn<QString>("lastUsed");
        QTest::addColumn<QString>("opened");
        // The gallery's own status comes from its folder listing, before or after "Ready".
        QTest::addColumn<QString>("status");
        QTest::newRow("last area reopens the gallery") << QList<int>{9} << "2" << "frmThumbnails" << "";
        QTest::newRow("last area reopens the builder, on top") << QList<int>{9, 5} << "4" << "frmSlideshow" << "Ready";
        QTest::newRow("last used 0 opens nothing, tips") << QList<int>{9, 6} << "0" << "" << "";
        QTest::newRow("option 9 off opens nothing") << QList<int>{} << "2" << "" << "";
        QTest::newRow("nothing stored means button 1") << QList<int>{9} << "" << "" << "";
        QTest::newRow("side bar and status bar") << QList<int>{4, 11} << "" << "" << "";
    }
    void startUp()
    {
        QFETCH(QList<int>, options);
        QFETCH(QString, lastUsed);
        QFETCH(QString, status);
        setOptions(options);
        if (!lastUsed.isEmpty())
            SettingsStore::global().write("mdiMain", "Last Used", lastUsed);
        SettingsStore::global().write("mdiMain", "SideBar_Align", 4);
        mdiMain main;
        QSignalSpy tips(&main, &mdiMain::TipWindowRequested);
        QVERIFY(!main.tmrMain[3].isActive());
        StartMain(main);
        QTEST(main.ActiveChild() ? main.ActiveChild()->objectName() : QString(), "opened");
        QCOMPARE(bool(main.windowFlags() & Qt::WindowStaysOnTopHint), options.contains(5));
        QCOMPARE(tips.count(), options.contains(6) ? 1 : 0);
        QCOMPARE(main.SideBar(0)->isVisible(), options.contains(4));
        if (options.contains(4))
            QCOMPARE(main.SideBar(0)->Align(), 4);
        QCOMPARE(main.statusBar()->isVisible(), options.contains(11));
        // Without a tray to show it, the greeting comes up in the window.
        QCOMPARE(main.Balloon()->isVisible(), !main.Tray()->CanHideToTray());
        if (!status.isEmpty())
            QCOMPARE(main.statusBar()->findChild<QLabel*>()->text(), status);
    }

    void childWindowsOpenOnceWithTheirNames()
    {
        mdiMain main;
        StartMain(main);
        main.tlbMain_ButtonClick(2);
        main.tlbMain_ButtonClick(0);
        main.tlbMain_ButtonClick(2);
        QCOMPARE(main.Area()->subWindowList().size(), 2);
        QCOMPARE(main.ActiveChild()->objectName(), QStringLiteral("frmThumbnails"));
        QCOMPARE(SettingsStore::global().read("mdiMain", "Last Used"), QStringLiteral("2"));
        main.Menus()->Action("mnuTools", 5)->trigger();
        QCOMPARE(main.ActiveChild()->objectName(), QStringLiteral("frmSlideshow"));
        QCOMPARE(main.IdleTicks(), 0);
    }

    void closeRequest_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<bool>("exit"); // File > Exit instead of closing the window
        QTest::addColumn<QString>("saved"); // the window state kept when the program ends
        QTest::newRow("normal goes to the tray") << int(Qt::WindowNoState) << false << "";
        QTest::newRow("maximised goes back to normal and to the tray") << int(Qt::WindowMaximized) << false << "";
        QTest::newRow("minimised ends the program") << int(Qt::WindowMinimized) << false << "1";
        QTest::newRow("Exit ends it maximised") << int(Qt::WindowMaximized) << true << "2";
    }
    void closeRequest()
    {
        QFETCH(int, state);
        QFETCH(bool, exit);
        QFETCH(QString, saved);
        mdiMain main;
        QSignalSpy unloaded(&main, &mdiMain::Unloaded);
        StartMain(main);
        main.setWindowState(Qt::WindowState(state));
        if (exit)
            main.Menus()->Action("mnuFile", 19)->trigger();
        else
            main.close();
        QCOMPARE(unloaded.count(), saved.isEmpty() ? 0 : 1);
        // Read back from the file, in another spelling of the key.
        QCOMPARE(SettingsStore(SettingsStore::defaultPath()).read("General", "Windowstate"), saved);
        if (!saved.isEmpty()) {
            QVERIFY(!main.isVisible());
            return;
        }
        QVERIFY(main.HiddenToTray());
        QVERIFY(!main.isMaximized());
        // With no tray the window is minimised, never lost.
        QVERIFY(main.isMinimized() || !main.isVisible());
        if (!main.Tray()->CanHideToTray())
            QVERIFY(main.isVisible());
        QVERIFY(!main.tmrMain[0].isActive());
        main.ShowMain();
        QVERIFY(!main.isMinimized());
        QVERIFY(main.tmrMain[0].isActive());
    }

    void idleCountdown_data()
    {
        QTest::addColumn<QString>("minutes");
        QTest::addColumn<bool>("option0");
        QTest::newRow("two minutes: third tick") << "2" << true;
        QTest::newRow("option 0 off: counts, stays") << "2" << false;
    }
    void idleCountdown()
    {
        QFETCH(QString, minutes);
        QFETCH(bool, option0);
        setOptions(option0 ? QList<int>{0} : QList<int>{});
        SettingsStore::global().write("General", "MinToTray_Minutes", minutes);
        mdiMain main;
        StartMain(main);
        main.tmrMain[0].setInterval(10);
        main.tmrMain[0].start();
        if (!option0) {
            QTRY_COMPARE(main.IdleTicks(), minutes.toInt());
            QTest::qWait(50);
            QCOMPARE(main.IdleTicks(), minutes.toInt());
            QVERIFY(!main.isMinimized());
            return;
        }
        QTRY_VERIFY(main.isMinimized() || !main.isVisible());
        QCOMPARE(main.IdleTicks(), 0);
        QVERIFY(!main.tmrMain[0].isActive());
    }

    void trayMessages()
    {
        QMenu menu;
        menu.addAction(QStringLiteral("&Restore"));
        frmSysTray tray(&menu);
        QSignalSpy shown(&tray, &frmSysTray::MenuShown);
        QSignalSpy restore(&tray, &frmSysTray::RestoreRequested);
        tray.TrayMessage(frmSysTray::RightButtonUp);
        QCOMPARE(shown.count(), 1);
        menu.hide();
        tray.TrayMessage(frmSysTray::LeftDoubleClick);
        tray.TrayMessage(512);
        QCOMPARE(restore.count(), 1);
    }
};

LUMBRA_TEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
