#include "TestWorld.h"

#include "app/SettingsStore.h"
#include "browser/frmSlideshow_FS.h"
#include "browser/SlideDecoder.h"
#include "browser/SlideshowHost.h"
#include "browser/SlideshowPlayer.h"
#include "common/Utilities.h"
#include "viewing/ucImgPreview.h"

#include <QImage>
#include <QPointer>
#include <QSettings>
#include <QSlider>
#include <QTimer>

namespace {

// The owner of a show as the builder window will be: the play state, the timer and the
// full-screen player as its slide target.
class TestHost : public SlideshowHost
{
public:
    explicit TestHost(QString folder) : folder(std::move(folder))
    {
        timer.callOnTimeout([this] { tick(); });
    }
    ~TestHost() override
    {
        if (player)
            player->setHost(nullptr);
        delete player;
    }

    void ToggleShow(int n) override
    {
        toggles << n;
        if (n == 1) {
            timer.stop();
            return;
        }
        show.Start(checked, random, repeat);
        timer.setInterval(intervalMs ? intervalMs
                                     : SlideshowPlayer::IntervalMs(SettingsStore::global()));
        if (!player) {
            player = new frmSlideshow_FS(this);
            player->Load();
        }
        ShowSlide();
        timer.start();
    }
    void ShowSlide() override
    {
        const QString name = show.ShowSlide();
        const QString upcoming = show.Upcoming();
        shown << name;
        player->ShowPicture(Utilities::JoinPath(folder, name),
                            upcoming.isEmpty() ? QString() : Utilities::JoinPath(folder, upcoming));
    }
    void tick()
    {
        if (show.Tick()) {
            ShowSlide();
            return;
        }
        ToggleShow(1);
        if (player)
            player->close();
    }
    SlideshowPlayer& Player() override { return show; }
    QTimer& SlideTimer() override { return timer; }

    QString folder;
    QStringList checked;
    bool random = false;
    bool repeat = false;
    int intervalMs = 0;
    SlideshowPlayer show;
    QTimer timer;
    QPointer<frmSlideshow_FS> player;
    QStringList shown;
    QList<int> toggles;
};

const QString Stop = QStringLiteral("<stop>");

} // namespace

class tst_Slideshow : public QObject
{
    Q_OBJECT

    // A folder for each test and row: no file is rewritten while an earlier show may still be
    // decoding it.
    QString folder() const
    {
        return property("worldPath").toString() +
               QStringLiteral("/%1-%2").arg(
                   QLatin1String(QTest::currentTestFunction()),
                   QString::number(qHash(QLatin1String(QTest::currentDataTag()))));
    }

    QStringList pictures(int count, QSize size = QSize(640, 480))
    {
        QDir().mkpath(folder());
        QStringList names;
        for (int i = 0; i < count; ++i) {
            QImage image(size, QImage::Format_RGB32);
            image.fill(QColor::fromHsv(i * 40 % 360, 200, 200));
            names << QStringLiteral("slide%1.jpg").arg(i);
            image.save(Utilities::JoinPath(folder(), names.last()), "JPEG");
        }
        return names;
    }

    QSettings settingsFile() const
    {
        SettingsStore::global().flush();
        return QSettings(property("worldPath").toString() +
                             QStringLiteral("/config/Lumbra/Lumbra.ini"),
                         QSettings::IniFormat);
    }

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
        QTest::newRow("once each in list order, then the show stops by itself")
            << false << QList<double>{} << "STTTT" << QStringList{a, b, c, Stop};
        QTest::newRow("repeat: an empty slide after the last, then the same list again")
            << true << QList<double>{} << "STTTTT" << QStringList{a, b, c, QString(), a, b};
        QTest::newRow("random: drawn once without replacement, the order kept on repeat")
            << true << QList<double>{0.5, 0.0, 0.9} << "STTTTT"
            << QStringList{b, a, c, QString(), b, a};
        QTest::newRow("left arrow on the first picture: an empty slide, then the first")
            << false << QList<double>{} << "SPTT" << QStringList{a, QString(), a, b};
        QTest::newRow("left arrow goes back to the picture before")
            << false << QList<double>{} << "STTPT" << QStringList{a, b, c, b, c};
        QTest::newRow("right arrow past the last picture starts over")
            << false << QList<double>{} << "STTSST" << QStringList{a, b, c, QString(), a, b};
    }
    void playOrder()
    {
        QFETCH(bool, repeat);
        QFETCH(QList<double>, draws);
        QFETCH(QString, steps);
        QFETCH(QStringList, expected);
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
        QCOMPARE(seen, expected);
    }

    void randomShowsEachPictureOncePerPass()
    {
        QStringList names;
        for (int i = 0; i < 20; ++i)
            names << QString::number(i);
        SlideshowPlayer show;
        show.Start(names, true, true);
        QStringList first, second;
        for (int i = 0; i < names.size(); ++i)
            first << show.ShowSlide();
        QCOMPARE(show.ShowSlide(), QString());
        for (int i = 0; i < names.size(); ++i)
            second << show.ShowSlide();
        QCOMPARE(second, first);
        first.sort();
        names.sort();
        QCOMPARE(first, names);
    }

    void loadFromSettings_data()
    {
        QTest::addColumn<QString>("delay"); // empty: not stored
        QTest::addColumn<QString>("colour");
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QColor>("background");
        QTest::newRow("first start: white, the default 2 taken as a position")
            << QString() << QString() << 2 << "2 second interval" << QColor(Qt::white);
        QTest::newRow("stored 3 is a position, stored colour is 0x00BBGGRR")
            << "3"
            << "255" << 3 << "3 second interval" << QColor(Qt::red);
        QTest::newRow("stored 15 lies beyond the slider, which stays put")
            << "15"
            << "16711680" << 0 << "15 second interval" << QColor(Qt::blue);
    }
    void loadFromSettings()
    {
        QFETCH(QString, delay);
        QFETCH(QString, colour);
        QFETCH(int, position);
        QFETCH(QString, label);
        QFETCH(QColor, background);
        if (!delay.isEmpty())
            SettingsStore::global().write(QStringLiteral("SlideShow"),
                                          QStringLiteral("Timer_Delay"), delay);
        if (!colour.isEmpty())
            SettingsStore::global().write(QStringLiteral("Slideshow"), QStringLiteral("BkColor"),
                                          colour);
        frmSlideshow_FS player(nullptr);
        QCOMPARE(player.IntervalSlider()->value(), position);
        QCOMPARE(player.IntervalText(), label);
        QCOMPARE(player.BackgroundColor(), background);
        QCOMPARE(player.Slide()->palette().color(QPalette::Window), background);
        QVERIFY(player.Slide()->NoDblClick());
        // Opening the player stores nothing.
        QCOMPARE(settingsFile().value(QStringLiteral("SlideShow/Timer_Delay"), delay).toString(),
                 delay);
    }

    void sliderChangesThePaceOfARunningShow()
    {
        TestHost host(folder());
        host.checked = pictures(2);
        host.ToggleShow(2);
        QCOMPARE(host.timer.interval(), 2000);
        host.player->IntervalSlider()->setValue(3);
        QCOMPARE(host.timer.interval(), 15000);
        QVERIFY(host.timer.isActive());
        QCOMPARE(host.player->IntervalText(), QStringLiteral("15 second interval"));
        QCOMPARE(settingsFile().value(QStringLiteral("SlideShow/Timer_Delay")).toString(),
                 QStringLiteral("15"));
        // The next show starts at the stored pace.
        QCOMPARE(SlideshowPlayer::IntervalMs(SettingsStore::global()), 15000);
    }

    void backgroundColour_data()
    {
        QTest::addColumn<QColor>("chosen");
        QTest::addColumn<QColor>("expected");
        QTest::addColumn<QString>("stored");
        QTest::newRow("chosen colour applied and stored")
            << QColor(0, 128, 255) << QColor(0, 128, 255) << "16744448";
        QTest::newRow("cancelled dialog changes nothing")
            << QColor() << QColor(Qt::white) << QString();
    }
    void backgroundColour()
    {
        QFETCH(QColor, chosen);
        QFETCH(QColor, expected);
        QFETCH(QString, stored);
        const frmSlideshow_FS::ColorChooser dialog = frmSlideshow_FS::ChooseColor();
        frmSlideshow_FS::ChooseColor() = [chosen](QWidget*, const QColor& current) {
            return current == Qt::white ? chosen : QColor(Qt::black);
        };
        frmSlideshow_FS player(nullptr);
        player.tlbPlay_ButtonClick(5);
        frmSlideshow_FS::ChooseColor() = dialog;
        QCOMPARE(player.BackgroundColor(), expected);
        QCOMPARE(player.Slide()->palette().color(QPalette::Window), expected);
        QCOMPARE(settingsFile().value(QStringLiteral("Slideshow/BkColor")).toString(), stored);
    }

    void fullScreenShowPlaysToItsEnd()
    {
        TestHost host(folder());
        host.checked = pictures(3);
        host.intervalMs = 60;
        host.ToggleShow(2);
        QPointer<frmSlideshow_FS> player = host.player;
        QVERIFY(player->isFullScreen());
        QTRY_VERIFY(player.isNull());
        QCOMPARE(host.shown, host.checked);
        QCOMPARE(host.toggles, (QList<int>{2, 1}));
        QVERIFY(!host.timer.isActive());
    }

    void keysReachTheOwner_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QStringList>("shown");
        QTest::addColumn<QList<int>>("toggles");
        QTest::addColumn<bool>("timerRuns");
        QTest::addColumn<QString>("caption");
        QTest::newRow("right arrow: next slide at once")
            << int(Qt::Key_Right) << QStringList{"slide0.jpg", "slide1.jpg"} << QList<int>{2}
            << true << "slide1.jpg";
        QTest::newRow("left arrow on the first: the empty slide")
            << int(Qt::Key_Left) << QStringList{"slide0.jpg", ""} << QList<int>{2} << true << "";
        QTest::newRow("pause: timer held, caption marked")
            << int(Qt::Key_Pause) << QStringList{"slide0.jpg"} << QList<int>{2} << false
            << "slide0.jpg - PAUSED";
        QTest::newRow("escape starts the show again")
            << int(Qt::Key_Escape) << QStringList{"slide0.jpg", "slide0.jpg"} << QList<int>{2, 2}
            << true << "slide0.jpg";
        QTest::newRow("other keys do nothing")
            << int(Qt::Key_A) << QStringList{"slide0.jpg"} << QList<int>{2} << true << "slide0.jpg";
    }
    void keysReachTheOwner()
    {
        QFETCH(int, key);
        QFETCH(QStringList, shown);
        QFETCH(QList<int>, toggles);
        QFETCH(bool, timerRuns);
        QFETCH(QString, caption);
        TestHost host(folder());
        host.checked = pictures(3);
        host.intervalMs = 60000;
        host.ToggleShow(2);
        QTest::keyClick(host.player, Qt::Key(key));
        QCOMPARE(host.shown, shown);
        QCOMPARE(host.toggles, toggles);
        QCOMPARE(host.timer.isActive(), timerRuns);
        QCOMPARE(host.player->CaptionText(), caption);
    }

    void pauseReleasedResumesTheTimer()
    {
        TestHost host(folder());
        host.checked = pictures(2);
        host.ToggleShow(2);
        host.player->KeyDown(19);
        QVERIFY(!host.timer.isActive());
        QTRY_VERIFY(!host.player->KeyLocked());
        host.player->KeyDown(19);
        QVERIFY(host.timer.isActive());
        QCOMPARE(host.player->CaptionText(), QStringLiteral("slide0.jpg"));
    }

    void heldArrowAdvancesOneSlidePerLock()
    {
        TestHost host(folder());
        host.checked = pictures(5);
        host.intervalMs = 60000;
        host.ToggleShow(2);
        for (int i = 0; i < 10; ++i)
            QTest::keyPress(host.player, Qt::Key_Right, Qt::NoModifier);
        QCOMPARE(host.shown.size(), 2);
        QSignalSpy unlocked(&host.player->tmrKeyResponse, &QTimer::timeout);
        QVERIFY(unlocked.wait());
        for (int i = 0; i < 10; ++i)
            QTest::keyPress(host.player, Qt::Key_Right, Qt::NoModifier);
        QCOMPARE(host.shown.size(), 3);
        // The toolbar's Next goes through the same lock.
        host.player->tlbPlay_ButtonClick(4);
        QCOMPARE(host.shown.size(), 3);
    }

    void vanishedFileShowsNothingAndTheShowGoesOn()
    {
        TestHost host(folder());
        host.checked = pictures(3);
        host.intervalMs = 60000;
        host.ToggleShow(2);
        ucImgPreview* slide = host.player->Slide();
        // Even decoded ahead, a file deleted before its turn is not shown.
        QTRY_VERIFY(host.player->Ahead().IsReady(Utilities::JoinPath(folder(), host.checked[1])));
        QVERIFY(QFile::remove(Utilities::JoinPath(folder(), host.checked[1])));
        host.tick();
        QVERIFY(slide->DecodedImage().isNull());
        QVERIFY(host.timer.isActive());
        host.tick();
        QTRY_VERIFY(!slide->DecodedImage().isNull());
        QCOMPARE(host.shown, host.checked);
    }

    void nextSlideIsDecodedBeforeItsTick()
    {
        TestHost host(folder());
        host.checked = pictures(2, QSize(3000, 2000));
        host.intervalMs = 60000;
        host.ToggleShow(2);
        ucImgPreview* slide = host.player->Slide();
        QSignalSpy prepared(&host.player->Ahead(), &SlideDecoder::Prepared);
        QVERIFY(prepared.wait());
        host.tick();
        // On screen at the tick itself, at the size shown, without a decode in between.
        const QImage shown = slide->DecodedImage();
        QVERIFY(!shown.isNull());
        QVERIFY(qAbs(shown.width() - slide->ElementRect().width()) <= 1);
        QVERIFY(shown.width() < 3000);
        QVERIFY(qAbs(shown.pixelColor(shown.rect().center()).hue() - 40) <= 4);
    }
};

LUMBRA_TEST_MAIN(tst_Slideshow)
#include "tst_slideshow.moc"
