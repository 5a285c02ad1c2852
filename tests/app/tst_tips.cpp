#include "TestWorld.h"

#include "app/frmTip.h"
#include "app/SettingsStore.h"
#include "app/TipRules.h"
#include "common/AppGlobals.h"
#include "common/Utilities.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSet>

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
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("after a whole line")
            << QByteArray("First\n") << QByteArray("First\n...Zoom in\n");
        QTest::newRow("after a last line without its break")
            << QByteArray("First") << QByteArray("First\n...Zoom in\n");
    }
    void addedTipGetsItsPrefix()
    {
        QFETCH(QByteArray, before);
        writeTips(before);
        frmTip tip;
        tip.AddTip(QStringLiteral("Zoom in"));
        QTEST(readTips(), "after");
        // Shown as every line is shown, with "..." in front of the "..." the file holds.
        QCOMPARE(tip.lblTipText->text(), QStringLiteral("......Zoom in"));
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
        QVERIFY(QFile::permissions(tipsFile()) & QFile::WriteOwner);
        // The user's copy takes added tips, and is never replaced.
        QVERIFY(TipRules::Append(tipsFile(), QStringLiteral("Mine")));
        QVERIFY(!TipRules::ProvideCopy(tipsFile(), installed));
        QCOMPARE(readTips(), QByteArray("Installed tip\n...Mine\n"));
    }
};

LUMBRA_TEST_MAIN(tst_Tips)
#include "tst_tips.moc"
