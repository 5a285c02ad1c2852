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
#include "browser/SlideshowSession.h"
#include "common/Utilities.h"
#include "viewing/ucImgPreview.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
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
class Show : public QObject
{
public:
    Show(const QString& folder, const QStringList& names, int intervalMs, bool decodeAhead)
    {
        m_session.setSource([folder, names] {
            return SlideshowSession::Source{folder, names, false, false, true};
        });
        m_session.setDecodingAhead(decodeAhead);
        // The clock starts as the tick comes, before the session shows the slide.
        QTimer& timer = m_session.SlideTimer();
        timer.disconnect(&m_session);
        timer.callOnTimeout(this, [this] {
            if (m_clock.isValid())
                m_times.push_back(m_session.SlideTimer().interval()); // never painted in time
            m_clock.start();
            m_session.Tick();
            if (!m_session.Playing())
                m_loop.quit();
        });
        m_session.ToggleShow(2);
        timer.setInterval(intervalMs);
        m_session.FullScreenPlayer()->Slide()->installEventFilter(this);
    }

    std::vector<double> Run()
    {
        m_loop.exec();
        return m_times;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Paint || m_inPaint || !m_clock.isValid())
            return false;
        const ucImgPreview* slide = m_session.FullScreenPlayer()->Slide();
        const QString due =
            m_session.Player().PlayList().value(m_session.Player().LastShownIndex());
        if (slide->DecodedImage().isNull() || Utilities::FileNameOf(slide->FileName()) != due)
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
    SlideshowSession m_session;
    QEventLoop m_loop;
    QElapsedTimer m_clock;
    std::vector<double> m_times;
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
