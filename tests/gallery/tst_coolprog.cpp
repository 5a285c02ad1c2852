#include "TestWorld.h"

#include "app/mdiMain.h"
#include "app/SettingsStore.h"
#include "common/AppGlobals.h"
#include "common/Utilities.h"
#include "gallery/frmThumbSize.h"
#include "gallery/ucCoolProg.h"

#include <QCheckBox>
#include <QDateTime>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QStatusBar>

// Stands in for the gallery: answers the two operations the size dialog calls by name and
// remembers the calls in order.
class GalleryTarget : public QObject
{
    Q_OBJECT
public:
    Q_INVOKABLE void SizeThumbs() { calls << QStringLiteral("SizeThumbs"); }
    Q_INVOKABLE void RefreshMe(bool keepList)
    {
        calls << QStringLiteral("RefreshMe(%1)").arg(keepList ? "true" : "false");
    }
    QStringList calls;
};

class tst_CoolProg : public QObject
{
    Q_OBJECT

    // The bar, its area and the button, which always come and go together.
    static QList<bool> progressShown(const ucCoolProg& strip)
    {
        return {strip.picProgress->isVisibleTo(&strip), strip.progCool->isVisibleTo(&strip),
                strip.cmdCancel->isVisibleTo(&strip)};
    }

    // A load as the gallery runs it: one position per picture, stopping when asked to.
    static int load(ucCoolProg& strip, int total, int cancelAt = -1)
    {
        strip.setMax(total);
        int done = 0;
        while (done < total && !Globals().Cancel) {
            if (done == cancelAt) {
                QTest::mousePress(strip.cmdCancel, Qt::LeftButton);
                QTest::mouseRelease(strip.cmdCancel, Qt::LeftButton);
            }
            strip.setValue(++done);
        }
        return done;
    }

private Q_SLOTS:
    void init()
    {
        QFile::remove(SettingsStore::defaultPath());
        SettingsStore::reopenGlobal();
        Globals().Options.fill(0);
        Globals().Cancel = false;
    }

    void maxSetsCountAndProgress_data()
    {
        QTest::addColumn<qint64>("total");
        QTest::addColumn<QString>("count");
        QTest::addColumn<bool>("progress");
        QTest::newRow("none") << qint64(0) << "No Images" << false;
        QTest::newRow("below none") << qint64(-1) << "No Images" << false;
        QTest::newRow("one, singular") << qint64(1) << "1 Image" << true;
        QTest::newRow("no thousands separator") << qint64(1234) << "1234 Images" << true;
    }
    void maxSetsCountAndProgress()
    {
        QFETCH(qint64, total);
        QFETCH(bool, progress);
        ucCoolProg strip;
        strip.setMax(7);
        strip.setValue(5);
        strip.setMax(total);
        QTEST(strip.Panel(2)->text(), "count");
        QCOMPARE(progressShown(strip), QList<bool>(3, progress));
        QCOMPARE(strip.Max(), total);
        if (progress) {
            // A new run starts from the beginning, stamped with its start.
            QCOMPARE(strip.progCool->value(), 0);
            QCOMPARE(strip.progCool->maximum(), int(total));
            QVERIFY(QDateTime::fromString(strip.StartTime(), Qt::ISODateWithMs).isValid());
        }
    }

    void valueMovesOrEndsProgress_data()
    {
        QTest::addColumn<qint64>("total");
        QTest::addColumn<qint64>("value");
        QTest::addColumn<bool>("progress");
        QTest::newRow("below the total moves the bar") << qint64(10) << qint64(4) << true;
        QTest::newRow("the total ends the run") << qint64(10) << qint64(10) << false;
        QTest::newRow("past the total ends the run") << qint64(10) << qint64(11) << false;
    }
    void valueMovesOrEndsProgress()
    {
        QFETCH(qint64, total);
        QFETCH(qint64, value);
        QFETCH(bool, progress);
        ucCoolProg strip;
        strip.setCaption(QStringLiteral("Ready"));
        strip.setMax(total);
        strip.setValue(value);
        QCOMPARE(progressShown(strip), QList<bool>(3, progress));
        QCOMPARE(strip.Panel(1)->isVisibleTo(&strip), !progress);
        if (progress) {
            QCOMPARE(strip.Value(), value);
            QCOMPARE(strip.progCool->value(), int(value));
        }
    }

    void cancelLastsOneTimerPeriod()
    {
        ucCoolProg strip;
        strip.show();
        QVERIFY(QTest::qWaitForWindowExposed(&strip));
        QCOMPARE(load(strip, 100, 10), 11);
        QVERIFY(Globals().Cancel);
        QVERIFY(strip.tmrUserCancel.isActive());
        QCOMPARE(strip.tmrUserCancel.interval(), 1200);
        QTRY_VERIFY_WITH_TIMEOUT(!Globals().Cancel, 5000);
        QCOMPARE(load(strip, 100), 100);
        QCOMPARE(progressShown(strip), QList<bool>(3, false));
    }

    void folderImageShowsOnePicture()
    {
        ucCoolProg strip;
        for (int index = 0; index < 4; ++index) {
            strip.setFolderImage(index);
            for (int i = 0; i < 4; ++i)
                QCOMPARE(strip.imgFolder[size_t(i)]->isVisibleTo(strip.picProgress), i == index);
        }
    }

    void sizeDialog_data()
    {
        QTest::addColumn<QString>("storedSize");
        QTest::addColumn<bool>("captions");
        QTest::addColumn<QString>("openHint");
        QTest::addColumn<QList<int>>("slides");
        QTest::addColumn<bool>("toggle");
        QTest::addColumn<QString>("hint");
        QTest::addColumn<int>("previewSide");
        QTest::addColumn<QString>("savedSize");
        QTest::addColumn<QString>("savedCaptions");
        QTest::addColumn<QStringList>("calls");
        const QStringList resized{"SizeThumbs", "RefreshMe(true)"};
        QTest::newRow("fresh system, 3 confirmed, gallery's 1 resized")
            << "" << false << "Default" << QList<int>{4, 3} << false << "Default" << 16 << "3"
            << "" << resized;
        QTest::newRow("captions on only, folder read again")
            << "5" << false << "5 Times" << QList<int>{} << true << "5 Times" << 26 << "5"
            << "1" << QStringList{"RefreshMe(false)"};
        QTest::newRow("captions off only")
            << "1" << true << "1 Times" << QList<int>{} << true << "1 Times" << 5 << "1"
            << "0" << QStringList{"RefreshMe(false)"};
    }
    void sizeDialog()
    {
        QFETCH(QString, storedSize);
        QFETCH(bool, captions);
        QFETCH(QList<int>, slides);
        QFETCH(bool, toggle);
        QFETCH(int, previewSide);
        SettingsStore& store = SettingsStore::global();
        if (!storedSize.isEmpty())
            store.write(QStringLiteral("General"), QStringLiteral("ThumbSize"), storedSize);
        Globals().Options[13] = captions ? 1 : 0;

        GalleryTarget gallery;
        frmThumbSize dialog(&gallery);
        dialog.show();
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Thumbnail Size"));
        QCOMPARE(dialog.sldThumbSize->value(), storedSize.isEmpty() ? 3 : storedSize.toInt());
        QCOMPARE(dialog.chkThumbSize->isChecked(), captions);
        QTEST(dialog.sldThumbSize->toolTip(), "openHint");
        QVERIFY(!dialog.cmdOK->isEnabled());

        for (int position : slides)
            dialog.sldThumbSize->setValue(position);
        if (toggle)
            dialog.chkThumbSize->click();
        QTEST(dialog.sldThumbSize->toolTip(), "hint");
        QCOMPARE(dialog.lblThumbsize->size(), QSize(previewSide, previewSide));
        QTest::mouseClick(dialog.cmdOK, Qt::LeftButton);

        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QTEST(gallery.calls, "calls");
        QTEST(store.read(QStringLiteral("General"), QStringLiteral("ThumbSize")), "savedSize");
        QTEST(store.read(QStringLiteral("General"), QStringLiteral("Options_13")), "savedCaptions");
        QCOMPARE(Globals().option(13), captions != toggle);
    }

    void mainWindowOwnsTheStrip()
    {
        Utilities::SetStatus(QStringLiteral("nobody listens"));
        QCOMPARE(Utilities::StatusStrip(), nullptr);
        {
            mdiMain main;
            main.Load();
            ucCoolProg* strip = Utilities::StatusStrip();
            QVERIFY(strip);
            QVERIFY(main.statusBar()->isAncestorOf(strip));
            main.SetStatusText(QStringLiteral("Ready"));
            QCOMPARE(strip->Panel(1)->text(), QStringLiteral("Ready"));
            Utilities::SetStatus(QStringLiteral("Sorting"));
            QCOMPARE(strip->Panel(1)->text(), QStringLiteral("Sorting"));
        }
        QCOMPARE(Utilities::StatusStrip(), nullptr);
        Utilities::SetStatus(QStringLiteral("after the window"));
    }
};

LUMBRA_TEST_MAIN(tst_CoolProg)
#include "tst_coolprog.moc"
