#include "TestWorld.h"

#include "app/SettingsStore.h"
#include "common/AppGlobals.h"
#include "gallery/frmThumbSize.h"
#include "gallery/ucCoolProg.h"

#include <QCheckBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>

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

private Q_SLOTS:
    void init()
    {
        QFile::remove(SettingsStore::defaultPath());
        SettingsStore::reopenGlobal();
        Globals().Options.fill(0);
        Globals().Cancel = false;
    }

    // setMax starts a run (or hides the progress for none); a value at the total ends it.
    void progress_data()
    {
        QTest::addColumn<qint64>("total");
        QTest::addColumn<qint64>("value");
        QTest::addColumn<QString>("count");
        QTest::addColumn<bool>("progress");
        QTest::newRow("none") << qint64(0) << qint64(0) << "No Images" << false;
        QTest::newRow("one, singular") << qint64(1) << qint64(0) << "1 Image" << true;
        QTest::newRow("no thousands separator, mid-run")
            << qint64(1234) << qint64(600) << "1234 Images" << true;
        QTest::newRow("the total ends the run") << qint64(10) << qint64(10) << "10 Images" << false;
    }
    void progress()
    {
        QFETCH(qint64, total);
        QFETCH(qint64, value);
        QFETCH(bool, progress);
        ucCoolProg strip;
        strip.setCaption(QStringLiteral("Ready"));
        strip.setMax(7);
        strip.setValue(5);
        strip.setMax(total);
        if (value)
            strip.setValue(value);
        QTEST(strip.Panel(2)->text(), "count");
        QCOMPARE(progressShown(strip), QList<bool>(3, progress));
        QCOMPARE(strip.Panel(1)->isVisibleTo(&strip), !progress);
        // A new run starts from the beginning.
        if (progress)
            QCOMPARE(strip.progCool->value(), int(value));
    }

    // Cancel stops the loads running now, not the next one.
    void cancelLastsOneTimerPeriod()
    {
        ucCoolProg strip;
        strip.show();
        QVERIFY(QTest::qWaitForWindowExposed(&strip));
        strip.setMax(100);
        QTest::mouseClick(strip.cmdCancel, Qt::LeftButton);
        QVERIFY(Globals().Cancel);
        QTRY_VERIFY_WITH_TIMEOUT(!Globals().Cancel, 5000);
        strip.setValue(100);
        QCOMPARE(progressShown(strip), QList<bool>(3, false));
    }

    void sizeDialog_data()
    {
        QTest::addColumn<QString>("storedSize");
        QTest::addColumn<bool>("captions");
        QTest::addColumn<QString>("hint"); // shown at once, though the slider reports no change
        QTest::addColumn<QList<int>>("slides");
        QTest::addColumn<bool>("toggle");
        QTest::addColumn<QString>("savedSize");
        QTest::addColumn<QString>("savedCaptions");
        QTest::addColumn<QStringList>("calls");
        QTest::newRow("fresh system, 3 confirmed, gallery's 1 resized")
            << "" << false << "Default" << QList<int>{4, 3} << false << "3"
            << "" << QStringList{"SizeThumbs", "RefreshMe(true)"};
        QTest::newRow("captions on only, folder read again")
            << "5" << false << "5 Times" << QList<int>{} << true << "5"
            << "1" << QStringList{"RefreshMe(false)"};
    }
    void sizeDialog()
    {
        QFETCH(QString, storedSize);
        QFETCH(bool, captions);
        QFETCH(QList<int>, slides);
        QFETCH(bool, toggle);
        SettingsStore& store = SettingsStore::global();
        if (!storedSize.isEmpty())
            store.write(QStringLiteral("General"), QStringLiteral("ThumbSize"), storedSize);
        Globals().Options[13] = captions ? 1 : 0;

        GalleryTarget gallery;
        frmThumbSize dialog(&gallery);
        dialog.show();
        QCOMPARE(dialog.chkThumbSize->isChecked(), captions);
        QTEST(dialog.sldThumbSize->toolTip(), "hint");
        QVERIFY(!dialog.cmdOK->isEnabled());
        for (int position : slides)
            dialog.sldThumbSize->setValue(position);
        if (toggle)
            dialog.chkThumbSize->click();
        QTest::mouseClick(dialog.cmdOK, Qt::LeftButton);

        QTEST(gallery.calls, "calls");
        QTEST(store.read(QStringLiteral("General"), QStringLiteral("ThumbSize")), "savedSize");
        QTEST(store.read(QStringLiteral("General"), QStringLiteral("Options_13")), "savedCaptions");
        QCOMPARE(Globals().option(13), captions != toggle);
    }
};

LUMBRA_TEST_MAIN(tst_CoolProg)
#include "tst_coolprog.moc"
