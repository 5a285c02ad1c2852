#include "TestWorld.h"

#include "app/frmTip.h"
#include "app/MainMenus.h"
#include "app/mdiMain.h"
#include "app/SettingsStore.h"
#include "app/TipRules.h"
#include "common/AppGlobals.h"
#include "common/Utilities.h"

#include <QAction>
#include <QCheckBox>
#include <QInputDialog>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSet>
#include <QTimer>

class tst_Tips : public QObject
{
    Q_OBJECT

    static QString tipsFile() { return TipRules::FilePath(Utilities::ProgramFolder()); }

    static void writeTips(const QByteArray& content)
    {
        QFile file(tipsFile());
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
    }

    static QByteArray readTips()
    {
        QFile file(tipsFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }

private Q_SLOTS:
    void init()
    {
        // What the last case wrote reaches the file first, or it would come back.
        SettingsStore::global().flush();
        QFile::remove(SettingsStore::defaultPath());
        SettingsStore::reopenGlobal();
        QFile::remove(tipsFile());
        Globals().Options.fill(0);
        Globals().Options[6] = 1;
    }

    void missingFileLeavesAnEmptyOne()
    {
        frmTip tip;
        QCOMPARE(
            tip.lblTipText->text(),
            QStringLiteral(
                "I'm sorry, Tip of the Day [tipofday.txt] file was not found.  Either it was not "
                "in the installation package, or it has been moved or deleted.  You can still "
                "add tips of your own!"));
        QVERIFY(QFileInfo::exists(tipsFile()));
        QCOMPARE(QFileInfo(tipsFile()).size(), 0);
        QVERIFY(!tip.cmdTips[0]->isEnabled());
    }

    void scrollBarFromLongTips_data()
    {
        QTest::addColumn<int>("shownLength");
        QTest::addColumn<bool>("scrollBar");
        QTest::newRow("215 characters shown") << 215 << false;
        QTest::newRow("216 characters shown") << 216 << true;
    }
    void scrollBarFromLongTips()
    {
        QFETCH(int, shownLength);
        // Words, so the text wraps as a real tip does; "..." comes in front when shown.
        writeTips(QByteArray("word ").repeated(shownLength).left(shownLength - 3) + '\n');
        frmTip tip;
        tip.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tip));
        QCOMPARE(tip.lblTipText->text().size(), shownLength);
        QTEST(tip.sbTip->isVisible(), "scrollBar");
    }

    void addedTipGetsItsPrefix_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QString>("given");
        // For the input box: what the user leaves in it; empty to cancel it.
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QString>("shown");
        QTest::newRow("given text")
            << QByteArray("First\n") << "Sort by date"
            << "" << QByteArray("First\n...Sort by date\n") << "......Sort by date";
        QTest::newRow("typed in the input box")
            << QByteArray("First\n") << ""
            << "Press F5" << QByteArray("First\n...Press F5\n") << "......Press F5";
        QTest::newRow("input box cancelled") << QByteArray("First\n") << ""
                                             << "" << QByteArray("First\n") << "...First";
        QTest::newRow("last line without its break")
            << QByteArray("First") << "Zoom"
            << "" << QByteArray("First\n...Zoom\n") << "......Zoom";
    }
    void addedTipGetsItsPrefix()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, given);
        QFETCH(QString, typed);
        writeTips(before);
        frmTip tip;
        QString title;
        QString proposed;
        if (given.isEmpty()) {
            auto* poll = new QTimer(&tip);
            connect(poll, &QTimer::timeout, &tip, [&, poll] {
                auto* box = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
                if (!box)
                    return;
                poll->stop();
                title = box->windowTitle();
                proposed = box->textValue();
                if (typed.isEmpty()) {
                    box->reject();
                } else {
                    box->setTextValue(typed);
                    box->accept();
                }
            });
            poll->start(10);
            tip.cmdTips[1]->click();
            QCOMPARE(title, QStringLiteral("Lumbra - Add Help Tip"));
            QCOMPARE(proposed, QStringLiteral("Add tip here..."));
        } else {
            tip.AddTip(given);
        }
        QTEST(readTips(), "after");
        QTEST(tip.lblTipText->text(), "shown");
    }

    void randomTipNeverRepeatsTheOneShown_data()
    {
        QTest::addColumn<int>("count");
        QTest::newRow("one tip shows again") << 1;
        QTest::newRow("two tips take turns") << 2;
        QTest::newRow("five tips") << 5;
    }
    void randomTipNeverRepeatsTheOneShown()
    {
        QFETCH(int, count);
        QByteArray content;
        for (int i = 1; i <= count; ++i)
            content += "Tip " + QByteArray::number(i) + '\n';
        writeTips(content);
        frmTip tip;
        QSet<QString> seen{tip.lblTipText->text()};
        for (int click = 0; click < 60; ++click) {
            const QString before = tip.lblTipText->text();
            tip.cmdTips[0]->click();
            if (count > 1)
                QVERIFY2(tip.lblTipText->text() != before, qPrintable(before));
            seen.insert(tip.lblTipText->text());
        }
        QCOMPARE(seen.size(), count);
        QVERIFY(seen.contains(QStringLiteral("...Tip 1")));
    }

    void untickingWritesOption6AtOnce()
    {
        writeTips("Only tip\n");
        frmTip tip;
        tip.show();
        QVERIFY(tip.chkTips->isChecked());
        QCOMPARE(tip.chkTips->text(), QStringLiteral("&Show Tips at Startup"));
        // Loading the window ticks the box without storing anything.
        QVERIFY(!SettingsStore::global().contains("General", "Options_6"));
        tip.chkTips->click();
        QCOMPARE(Globals().Options[6], 0L);
        SettingsStore::global().flush();
        QCOMPARE(SettingsStore(SettingsStore::defaultPath()).read("General", "Options_6"),
                 QStringLiteral("0"));
        QVERIFY(tip.isVisible());
    }

    void installedTipsAreCopiedOnce()
    {
        const QString folder = property("worldPath").toString();
        const QString installed = folder + QStringLiteral("/installed.txt");
        {
            QFile file(installed);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("Installed tip\n");
        }
        QFile::setPermissions(installed, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        QVERIFY(TipRules::ProvideCopy(tipsFile(), installed));
        QCOMPARE(readTips(), QByteArray("Installed tip\n"));
        // The user's copy takes added tips, and is never replaced.
        QVERIFY(TipRules::Append(tipsFile(), QStringLiteral("Mine")));
        QVERIFY(!TipRules::ProvideCopy(tipsFile(), installed));
        QCOMPARE(readTips(), QByteArray("Installed tip\n...Mine\n"));
    }

    void helpMenuOpensOneTipWindow()
    {
        writeTips("Only tip\n");
        mdiMain main;
        main.Menus()->Action("mnuHelp", 2)->trigger();
        main.Menus()->Action("mnuHelp", 2)->trigger();
        QTRY_COMPARE(main.findChildren<frmTip*>().size(), 1);
        QVERIFY(main.findChild<frmTip*>()->isVisible());
        QCOMPARE(main.findChild<frmTip*>()->lblTipText->text(), QStringLiteral("...Only tip"));
    }
};

LUMBRA_TEST_MAIN(tst_Tips)
#include "tst_tips.moc"
