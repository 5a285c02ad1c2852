#include "AppFixtures.h"
#include "TestWorld.h"

#include "app/OptionsRules.h"
#include "app/frmOptions.h"

#include <QCheckBox>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>

class tst_Options : public QObject
{
    Q_OBJECT

    static SettingsStore& store() { return SettingsStore::global(); }

private Q_SLOTS:
    void init()
    {
        FreshSettings();
        Globals().MyColor = 12648384;
    }

    void minutesLadder_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<int>("up");
        QTest::addColumn<int>("down");
        QTest::newRow("3, the bottom") << "3 minutes" << 10 << 3;
        QTest::newRow("30") << "30 minutes" << 60 << 10;
        QTest::newRow("60, the top") << "60 minutes" << 60 << 30;
        QTest::newRow("7, off the ladder") << "7 minutes" << 0 << 0;
        QTest::newRow("100 reads as its first two digits") << "100 minutes" << 30 << 3;
        QTest::newRow("no number") << "minutes" << 0 << 0;
    }
    void minutesLadder()
    {
        QFETCH(QString, caption);
        const int shown = OptionsRules::MinutesOfCaption(caption);
        QTEST(OptionsRules::MinToTrayStep(shown, true), "up");
        QTEST(OptionsRules::MinToTrayStep(shown, false), "down");
    }

    void acceptStoresAndApplies()
    {
        // A value stored by hand, off the ladder, turns into 0 at the first click.
        store().write("General", "MinToTray_Minutes", 7);
        mdiMain main;
        frmOptions dialog(&main);
        QCOMPARE(dialog.lblMinToTray->text(), QStringLiteral("7 minutes"));
        dialog.chkGeneral[0]->setChecked(true);
        dialog.spnMinToTray->findChildren<QToolButton*>().value(0)->click();
        QCOMPARE(dialog.lblMinToTray->text(), QStringLiteral("0 minutes"));
        dialog.opMainMenu[1]->click();
        dialog.ShowColor(QColor(0x12, 0x34, 0x56));
        dialog.cmdOptions[0]->click();
        QCOMPARE(store().read("General", "MinToTray_Minutes"), QStringLiteral("0"));
        QCOMPARE(main.MinToTrayMinutes(), 0);
        // Menus only, and option 11 (off) hides the status strip at once.
        QCOMPARE(store().read("General", "MainMenu_View"), QStringLiteral("1"));
        QVERIFY(!main.menuBar()->isHidden());
        QVERIFY(main.findChild<QToolBar*>(QStringLiteral("tlbMain"))->isHidden());
        QVERIFY(main.statusBar()->isHidden());
        // The colour is kept as 0x00BBGGRR.
        QCOMPARE(store().read("General", "MyColor"), QString::number(0x563412));
        frmOptions again(&main);
        QVERIFY(again.opMainMenu[1]->isChecked());
        QCOMPARE(again.shaColor->palette().color(QPalette::Window), QColor(0x12, 0x34, 0x56));
    }

    void eachCheckBoxWritesItsKey_data()
    {
        QTest::addColumn<int>("option"); // -1 for the picture types
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("written");
        // Every option starts off, so a tick writes 1; option 2 has no box.
        for (int option : {0, 1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13})
            QTest::addRow("option %d", option) << option << QStringLiteral("Options_%1").arg(option) << "1";
        QTest::newRow("PNG and WebP, on by default") << -1 << "Extra_Types" << "False";
    }
    void eachCheckBoxWritesItsKey()
    {
        QFETCH(int, option);
        QFETCH(QString, key);
        {
            frmOptions dialog;
            QCheckBox* box = option >= 0 ? dialog.chkGeneral[size_t(option)] : dialog.chkExtraTypes;
            QVERIFY(box);
            box->click();
            // Nothing is stored before OK.
            QVERIFY(!store().contains("General", key));
            dialog.cmdOptions[0]->click();
        }
        QTEST(store().read("General", key), "written");
        if (option >= 0)
            QCOMPARE(Globals().Options[size_t(option)], 1L);
        // The other boxes are written too, unchanged, and option 2 is left alone.
        QCOMPARE(store().read("General", option == 3 ? "Options_4" : "Options_3"), QStringLiteral("0"));
        QVERIFY(!store().contains("General", "Options_2"));
    }

    void lastTabIsShownAgain_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<int>("opened");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("written");
        QTest::newRow("nothing stored opens tab 1") << "" << 1 << true << "3";
        QTest::newRow("stored 2 opens tab 2") << "2" << 2 << true << "3";
        QTest::newRow("a tab that is not there opens the first") << "9" << 0 << true << "3";
        QTest::newRow("cancel keeps the stored tab") << "2" << 2 << false << "2";
    }
    void lastTabIsShownAgain()
    {
        QFETCH(QString, stored);
        QFETCH(bool, accepted);
        if (!stored.isEmpty())
            store().write("General", "Last_Opt_Tab", stored);
        frmOptions dialog;
        QTEST(dialog.SSTab1->currentIndex(), "opened");
        dialog.SSTab1->setCurrentIndex(3);
        dialog.cmdOptions[accepted ? 0 : 1]->click();
        QTEST(store().read("General", "Last_Opt_Tab"), "written");
    }
};

LUMBRA_TEST_MAIN(tst_Options)
#include "tst_options.moc"
