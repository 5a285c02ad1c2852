#include "AppFixtures.h"
#include "TestWorld.h"

#include "app/TipRules.h"
#include "app/frmTip.h"
#include "common/Utilities.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSet>

class tst_Tips : public QObject
{
    Q_OBJECT

    static QString tipsFile() { return TipRules::FilePath(Utilities::ProgramFolder()); }

private Q_SLOTS:
    void init()
    {
        FreshSettings();
        QFile::remove(tipsFile());
        Globals().Options[6] = 1;
    }

    void missingFileLeavesAnEmptyOne()
    {
        frmTip tip;
        QCOMPARE(tip.lblTipText->text(), TipRules::MissingText());
        QVERIFY(QFileInfo::exists(tipsFile()));
        QCOMPARE(QFileInfo(tipsFile()).size(), 0);
        QVERIFY(!tip.cmdTips[0]->isEnabled());
    }

    void oneTipALine_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("tips");
        QTest::newRow("Windows line ends") << QByteArray("One\r\nTwo\r\n") << QStringList{"One", "Two"};
        QTest::newRow("last line without its break") << QByteArray("One\nTwo") << QStringList{"One", "Two"};
        QTest::newRow("empty file") << QByteArray() << QStringList{};
    }
    void oneTipALine()
    {
        QFETCH(QByteArray, content);
        WriteFile(tipsFile(), content);
        QTEST(TipRules::Load(tipsFile()).value_or(QStringList{"(missing)"}), "tips");
    }

    void addedTipGetsItsPrefix_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QString>("added");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("after a whole line") << QByteArray("First\n") << "Zoom in" << QByteArray("First\n...Zoom in\n");
        QTest::newRow("after a last line without its break")
            << QByteArray("First") << "Zoom in" << QByteArray("First\n...Zoom in\n");
        QTest::newRow("typed over two lines, kept on one")
            << QByteArray("First\n") << "Zoom\r\nin" << QByteArray("First\n...Zoom  in\n");
    }
    void addedTipGetsItsPrefix()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, added);
        QFETCH(QByteArray, after);
        WriteFile(tipsFile(), before);
        frmTip tip;
        tip.AddTip(added);
        QCOMPARE(ReadFile(tipsFile()), after);
        // Shown as every line is shown, with "..." in front of the "..." the file holds.
        QCOMPARE(tip.lblTipText->text(), "..." + QString::fromUtf8(after.split('\n').value(1)));
    }

    void randomTipNeverRepeatsTheOneShown()
    {
        WriteFile(tipsFile(), "Tip 1\nTip 2\nTip 3\nTip 4\nTip 5\n");
        frmTip tip;
        QSet<QString> seen{tip.lblTipText->text()};
        for (int click = 0; click < 60; ++click) {
            const QString before = tip.lblTipText->text();
            tip.cmdTips[0]->click();
            QVERIFY2(tip.lblTipText->text() != before, qPrintable(before));
            seen.insert(tip.lblTipText->text());
        }
        QCOMPARE(seen.size(), 5);
        QVERIFY(seen.contains(QStringLiteral("...Tip 1")));
    }

    void untickingWritesOption6AtOnce()
    {
        WriteFile(tipsFile(), "Only tip\n");
        frmTip tip;
        tip.show();
        QVERIFY(tip.chkTips->isChecked());
        // Loading the window ticks the box without storing anything.
        QVERIFY(!SettingsStore::global().contains("General", "Options_6"));
        tip.chkTips->click();
        QCOMPARE(Globals().Options[6], 0L);
        SettingsStore::global().flush();
        QCOMPARE(SettingsStore(SettingsStore::defaultPath()).read("General", "Options_6"), QStringLiteral("0"));
        QVERIFY(tip.isVisible());
    }

    void installedTipsAreCopiedOnce()
    {
        const QString installed = WorldPath("installed.txt");
        WriteFile(installed, "Installed tip\n");
        QFile::setPermissions(installed, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        QVERIFY(TipRules::ProvideCopy(tipsFile(), installed));
        QCOMPARE(ReadFile(tipsFile()), QByteArray("Installed tip\n"));
        QVERIFY(QFile::permissions(tipsFile()) & QFile::WriteOwner);
        // The user's copy takes added tips, and is never replaced.
        QVERIFY(TipRules::Append(tipsFile(), QStringLiteral("Mine")));
        QVERIFY(!TipRules::ProvideCopy(tipsFile(), installed));
        QCOMPARE(ReadFile(tipsFile()), QByteArray("Installed tip\n...Mine\n"));
    }
};

LUMBRA_TEST_MAIN(tst_Tips)
#include "tst_tips.moc"
