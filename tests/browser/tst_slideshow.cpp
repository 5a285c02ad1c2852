#include "BrowserBench.h"

#include "app/SettingsStore.h"
#include "browser/frmSlideshow_FS.h"
#include "browser/SlideDecoder.h"
#include "browser/SlideshowPlayer.h"
#include "browser/SlideshowSession.h"
#include "common/Utilities.h"
#include "viewing/ucImgPreview.h"

#include <QImage>
#include <QPointer>
#include <QSettings>
#include <QSlider>
#include <QTimer>

namespace {

const QString Stop = QStringLiteral("<stop>");

QString storedValue(const QString& key)
{
    SettingsStore::global().flush();
    return QSettings(SettingsStore::defaultPath(), QSettings::IniFormat).value(key).toString();
}

} // namespace

class tst_Slideshow : public QObject
{
    Q_OBJECT

    // A folder for each test and row: no file is rewritten while an earlier show may still be
    // decoding it.
    QString path(int index) const
    {
        return property("worldPath").toString() +
               QStringLiteral("/%1-%2/slide%3.jpg")
                   .arg(QLatin1String(QTest::currentTestFunction()))
                   .arg(qHash(QLatin1String(QTest::currentDataTag())))
                   .arg(index);
    }

    // A full-screen show of count pictures of different hues, started, its timer at intervalMs.
    std::unique_ptr<SlideshowSession> play(int count, int intervalMs, QSize size = {640, 480})
    {
        QStringList names;
        for (int i = 0; i < count; ++i) {
            QImage image(size, QImage::Format_RGB32);
            image.fill(QColor::fromHsv(i * 40 % 360, 200, 200));
            QDir().mkpath(QFileInfo(path(i)).path());
            image.save(path(i), "JPEG");
            names << QFileInfo(path(i)).fileName();
        }
        auto show = std::make_unique<SlideshowSession>();
        show->setSource([folder = QFileInfo(path(0)).path(), names] {
            return SlideshowSession::Source{folder, names, false, false, true};
        });
        show->ToggleShow(2);
        show->SlideTimer().setInterval(intervalMs);
        return show;
    }
    static ucImgPreview* slide(SlideshowSession& show) { return show.FullScreenPlayer()->Slide(); }

private Q_SLOTS:
    void init()
    {
        QFile::remove(SettingsStore::defaultPath());
        SettingsStore::reopenGlobal();
    }

    // Steps: S shows a slide at once (the start, or Right arrow), T is a timer tick, P is the
    // Left arrow. A tick that ends the show adds <stop>.
    void playOrder_data()
    {
        QTest::addColumn<bool>("repeat");
        QTest::addColumn<QList<double>>("draws"); // empty: in list order
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QStringList>("expected");
        const QString a = QStringLiteral("a"), b = QStringLiteral("b"), c = QStringLiteral("c");
        const QList<double> inOrder;
        row("once each in list order, then the show stops by itself", false, inOrder, "STTTT",
            QStringList{a, b, c, Stop});
        row("repeat: an empty slide after the last, then the same list again", true, inOrder,
            "STTTTT", QStringList{a, b, c, QString(), a, b});
        row("random: drawn once without replacement, the order kept on repeat", true,
            QList<double>{0.5, 0.0, 0.9}, "STTTTT", QStringList{b, a, c, QString(), b, a});
        row("left arrow on the first picture: an empty slide, then the first", false, inOrder,
            "SPTT", QStringList{a, QString(), a, b});
        row("left arrow goes back to the picture before", false, inOrder, "STTPT",
            QStringList{a, b, c, b, c});
    }
    void playOrder()
    {
        QFETCH(bool, repeat);
        QFETCH(QList<double>, draws);
        QFETCH(QString, steps);
        SlideshowPlayer show;
        show.Start({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")},
                   !draws.isEmpty(), repeat, [&draws] { return draws.takeFirst(); });
        QStringList seen;
        for (const QChar step : steps) {
            if (step == u'P')
                show.Previous();
            if (step == u'T' && !show.Tick()) {
                seen << Stop;
                break;
            }
            seen << show.ShowSlide();
        }
        QTEST(seen, "expected");
    }

    void loadFromSettings_data()
    {
        QTest::addColumn<QString>("delay"); // empty: not stored
        QTest::addColumn<QString>("colour");
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("seconds"); // the pace the show runs at, and the label tells
        QTest::addColumn<QColor>("background");
        row("first start: white, the default 2 taken as a position", QString(), QString(), 2, 2,
            QColor(Qt::white));
        row("stored 3 is a position, stored colour is 0x00BBGGRR", "3", "255", 3, 3,
            QColor(Qt::red));
        row("stored 15 lies beyond the slider, which stays put", "15", "16711680", 0, 15,
            QColor(Qt::blue));
        row("0 stored by hand would race: 2 seconds", "0", QString(), 0, 2, QColor(Qt::white));
    }
    void loadFromSettings()
    {
        QFETCH(QString, delay);
        QFETCH(QString, colour);
        QFETCH(int, seconds);
        QFETCH(QColor, background);
        if (!delay.isEmpty())
            SettingsStore::global().write(QStringLiteral("SlideShow"),
                                          QStringLiteral("Timer_Delay"), delay);
        if (!colour.isEmpty())
            SettingsStore::global().write(QStringLiteral("Slideshow"), QStringLiteral("BkColor"),
                                          colour);
        frmSlideshow_FS player(nullptr);
        QTEST(player.IntervalSlider()->value(), "position");
        QCOMPARE(player.IntervalText(), QStringLiteral("%1 second interval").arg(seconds));
        QCOMPARE(SlideshowPlayer::IntervalMs(SettingsStore::global()), seconds * 1000);
        QCOMPARE(player.BackgroundColor(), background);
        QCOMPARE(player.Slide()->palette().color(QPalette::Window), background);
        // Opening the player stores nothing.
        QCOMPARE(storedValue("SlideShow/Timer_Delay"), delay);
    }

    void sliderChangesThePaceOfARunningShow()
    {
        const auto show = play(2, 2000);
        QCOMPARE(show->SlideTimer().interval(), 2000);
        show->FullScreenPlayer()->IntervalSlider()->setValue(3);
        QCOMPARE(show->SlideTimer().interval(), 15000);
        QVERIFY(show->SlideTimer().isActive());
        QCOMPARE(show->FullScreenPlayer()->IntervalText(), QStringLiteral("15 second interval"));
        QCOMPARE(storedValue("SlideShow/Timer_Delay"), QStringLiteral("15"));
        // The next show starts at the stored pace.
        QCOMPARE(SlideshowPlayer::IntervalMs(SettingsStore::global()), 15000);
    }

    // Each key is pressed on the second of three pictures.
    void keysReachTheOwner_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<int>("nextIndex");
        QTest::addColumn<bool>("timerRuns");
        QTest::addColumn<bool>("fullScreen");
        row("right arrow: the next slide at once", int(Qt::Key_Right), "slide2.jpg", 3, true, true);
        row("left arrow: the slide before", int(Qt::Key_Left), "slide0.jpg", 1, true, true);
        row("pause: timer held, caption marked", int(Qt::Key_Pause), "slide1.jpg - PAUSED", 2,
            false, true);
        row("escape starts the show again and leaves full screen", int(Qt::Key_Escape),
            "slide1.jpg", 1, true, false);
    }
    void keysReachTheOwner()
    {
        QFETCH(int, key);
        QFETCH(bool, fullScreen);
        const auto show = play(3, 60000);
        QPointer<frmSlideshow_FS> player = show->FullScreenPlayer();
        ucImgPreview pane;
        show->setPreview(&pane);
        show->ShowSlide();
        QTest::keyClick(player, Qt::Key(key));
        // Out of full screen, the show goes on in the builder's preview.
        QCOMPARE(pane.FileName(), fullScreen ? QString() : path(0));
        QTEST(player->CaptionText(), "caption");
        QTEST(show->Player().NextIndex(), "nextIndex");
        QTEST(show->SlideTimer().isActive(), "timerRuns");
        QVERIFY(show->Playing());
        QCOMPARE(player->isVisible(), fullScreen);
    }

    void vanishedFileShowsNothingAndTheShowGoesOn()
    {
        const auto show = play(3, 60000);
        // Even decoded ahead, a file deleted before its turn is not shown.
        QTRY_VERIFY(show->FullScreenPlayer()->Ahead().IsReady(path(1)));
        QVERIFY(QFile::remove(path(1)));
        show->Tick();
        QVERIFY(slide(*show)->DecodedImage().isNull());
        QVERIFY(show->SlideTimer().isActive());
        show->Tick();
        QCOMPARE(slide(*show)->FileName(), path(2));
        QTRY_VERIFY(!slide(*show)->DecodedImage().isNull());
    }

    void nextSlideIsDecodedBeforeItsTick()
    {
        const auto show = play(2, 60000, QSize(3000, 2000));
        QSignalSpy prepared(&show->FullScreenPlayer()->Ahead(), &SlideDecoder::Prepared);
        QVERIFY(prepared.wait());
        show->Tick();
        // On screen at the tick itself, at the size shown, without a decode in between.
        const QImage shown = slide(*show)->DecodedImage();
        QVERIFY(!shown.isNull());
        QVERIFY(qAbs(shown.width() - slide(*show)->ElementRect().width()) <= 1);
        QVERIFY(shown.width() < 3000);
        QVERIFY(qAbs(shown.pixelColor(shown.rect().center()).hue() - 40) <= 4);
    }
};

LUMBRA_TEST_MAIN(tst_Slideshow)
#include "tst_slideshow.moc"
