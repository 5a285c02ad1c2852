// Time from a slide's tick to its picture being painted on the full-screen player, for a show
// of 24-megapixel photographs, with the next slide decoded ahead and without. Prints the median
// of each and their ratio; the goal is a median under 20 ms with decoding ahead.
//
//   bench_slideshow [SLIDES] [INTERVAL_MS]      (defaults: 8 slides, 2000 ms)
//
// Needs a display (run it under Xvfb with QT_QPA_PLATFORM=xcb to see a real screen's size;
// offscreen works too). The photographs are made in a temporary folder: two 6000 x 4000
// JPEGs as detailed as real photographs, copied under as many names as there are slides.

#include "browser/frmSlideshow_FS.h"
#include "browser/SlideDecoder.h"
#include "browser/SlideshowHost.h"
#include "browser/SlideshowPlayer.h"
#include "common/Utilities.h"
#include "viewing/ucImgPreview.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

QString makePhotograph(const QString& path, int hue)
{
    QImage image(6000, 4000, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, 4000);
    sky.setColorAt(0, QColor::fromHsv(hue, 160, 200));
    sky.setColorAt(1, QColor(250, 200, 120));
    painter.fillRect(image.rect(), sky);
    // Detail, so the file is about as large as a photograph of that size.
    for (int i = 0; i < 1500; ++i) {
        painter.setPen(QColor::fromHsv((hue + i * 37) % 360, 160, 200));
        painter.drawLine(int(i * 7919LL % 6000), int(i * 104729LL % 4000),
                         int(i * 1299709LL % 6000), int(i * 15485863LL % 4000));
    }
    painter.end();
    image.save(path, "JPEG", 90);
    return path;
}

// Plays one show full screen and notes, for every slide after the first, the time from its
// tick until the paint that puts its picture on screen has finished.
class Show : public QObject, public SlideshowHost
{
public:
    Show(const QString& folder, const QStringList& names, int intervalMs, bool decodeAhead)
        : m_folder(folder)
    {
        m_show.Start(names, false, false);
        m_timer.setInterval(intervalMs);
        m_timer.callOnTimeout(this, [this] { tick(); });
        m_player = new frmSlideshow_FS(this);
        m_player->Ahead().setDecodingAhead(decodeAhead);
        m_player->Slide()->installEventFilter(this);
        m_player->Load();
    }
    ~Show() override
    {
        if (m_player) {
            m_player->setHost(nullptr);
            delete m_player;
        }
    }

    std::vector<double> Run()
    {
        ShowSlide();
        m_timer.start();
        QEventLoop loop;
        m_done = [&loop] { loop.quit(); };
        loop.exec();
        return m_times;
    }

    void ToggleShow(int n) override
    {
        if (n == 1)
            m_timer.stop();
    }
    void ShowSlide() override
    {
        const QString name = m_show.ShowSlide();
        const QString upcoming = m_show.Upcoming();
        m_expected = Utilities::JoinPath(m_folder, name);
        m_player->ShowPicture(
            m_expected, upcoming.isEmpty() ? QString() : Utilities::JoinPath(m_folder, upcoming));
    }
    SlideshowPlayer& Player() override { return m_show; }
    QTimer& SlideTimer() override { return m_timer; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Paint || m_inPaint || !m_clock.isValid())
            return false;
        ucImgPreview* slide = m_player->Slide();
        if (slide->FileName() != m_expected || slide->DecodedImage().isNull())
            return false;
        // Let the pane paint first, so the time includes drawing the picture.
        m_inPaint = true;
        QCoreApplication::sendEvent(watched, event);
        m_inPaint = false;
        m_times.push_back(m_clock.nsecsElapsed() / 1e6);
        m_clock.invalidate();
        return true;
    }

private:
    void tick()
    {
        if (m_clock.isValid())
            m_times.push_back(m_timer.interval()); // never painted within its interval
        if (!m_show.Tick()) {
            m_timer.stop();
            m_done();
            return;
        }
        m_clock.start();
        ShowSlide();
    }

    QString m_folder;
    QString m_expected;
    SlideshowPlayer m_show;
    QTimer m_timer;
    QPointer<frmSlideshow_FS> m_player;
    QElapsedTimer m_clock;
    std::vector<double> m_times;
    std::function<void()> m_done;
    bool m_inPaint = false;
};

double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void print(const char* label, const std::vector<double>& times)
{
    std::printf("%-22s median %7.1f ms   (", label, median(times));
    for (const double time : times)
        std::printf(" %.1f", time);
    std::printf(" )\n");
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const int slides = argc > 1 ? std::max(3, atoi(argv[1])) : 8;
    const int intervalMs = argc > 2 ? std::max(100, atoi(argv[2])) : 2000;

    QTemporaryDir dir;
    const QString first = makePhotograph(dir.filePath(QStringLiteral("source0.jpg")), 210);
    const QString second = makePhotograph(dir.filePath(QStringLiteral("source1.jpg")), 20);
    QStringList names;
    for (int i = 0; i < slides; ++i) {
        names << QStringLiteral("slide%1.jpg").arg(i, 3, 10, QLatin1Char('0'));
        QFile::copy(i % 2 ? second : first, dir.filePath(names.last()));
    }

    std::vector<double> ahead, onDemand;
    QSize shownAt;
    {
        Show show(dir.path(), names, intervalMs, true);
        ahead = show.Run();
    }
    {
        Show show(dir.path(), names, intervalMs, false);
        onDemand = show.Run();
    }
    if (QScreen* screen = QGuiApplication::primaryScreen())
        shownAt = screen->size();

    std::printf(
        "show                   %d slides of 6000x4000 JPEG every %d ms on a %dx%d screen\n",
        slides, intervalMs, shownAt.width(), shownAt.height());
    std::printf("tick to painted picture, slides 2 to %d:\n", slides);
    print("decoded ahead", ahead);
    print("decoded at the tick", onDemand);
    const double m = median(ahead);
    std::printf("ratio at tick/ahead    %7.1fx (goal: ahead under 20 ms: %s)\n",
                m > 0 ? median(onDemand) / m : 0.0, m < 20 ? "met" : "missed");
    return 0;
}
