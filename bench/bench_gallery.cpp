// The real gallery window, off screen, over one folder. Prints key=value lines for
// bench/gallery_vs_peers.sh:
//   thumbs_per_s        pictures / seconds from ShowFolder to PassFinished
//   first_screen_ms     from ShowFolder until every cell in view has its thumbnail and a paint
//                       of the grid with them is done
//   ui_gap_max_ms       the longest the UI thread went without serving a 1 ms timer during
//                       the load (ShowFolder included, since it runs on the UI thread)
//   scroll_ms_max/mean  after the load, one row down per frame over the whole canvas: moving
//                       the scroll bar plus a paint of the grid
//   peak_rss_mb         VmHWM of the process at the end
//
//   bench_gallery [--cold | --warm] [--cache DIR] [--box PIXELS] [--window WxH]
//                 [--no-scroll] [--timeout SECONDS] FOLDER
//
// The disk cache lives in DIR/thumbnails (XDG_CACHE_HOME=DIR; a temporary folder without
// --cache). --cold, the default, empties it first; --warm keeps what an earlier run left, so a
// cold run followed by a warm one over the same DIR times both. Settings and the other
// per-user folders always go to a temporary folder.

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "common/Formats.h"
#include "gallery/GalleryLayout.h"
#include "gallery/ThumbGrid.h"
#include "gallery/ThumbPipeline.h"
#include "gallery/frmThumbnails.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace {

struct Options
{
    QString folder;
    QString cache;
    bool warm = false;
    int box = 80;
    QSize window{1280, 800};
    bool scroll = true;
    int timeoutSecs = 1800;
};

void usage()
{
    std::fprintf(stderr, "usage: bench_gallery [--cold | --warm] [--cache DIR] [--box PIXELS] [--window WxH]\n"
                         "                     [--no-scroll] [--timeout SECONDS] FOLDER\n"
                         "PIXELS is a gallery cell edge: 40, 60, ... 220 (80 and 120 are the usual ones)\n");
}

std::optional<Options> parse(const QStringList& args)
{
    Options options;
    for (int i = 1; i < args.size(); ++i) {
        const QString& arg = args[i];
        const bool hasValue = i + 1 < args.size();
        if (arg == QLatin1String("--cold"))
            options.warm = false;
        else if (arg == QLatin1String("--warm"))
            options.warm = true;
        else if (arg == QLatin1String("--no-scroll"))
            options.scroll = false;
        else if (arg == QLatin1String("--cache") && hasValue)
            options.cache = args[++i];
        else if (arg == QLatin1String("--box") && hasValue)
            options.box = args[++i].toInt();
        else if (arg == QLatin1String("--timeout") && hasValue)
            options.timeoutSecs = args[++i].toInt();
        else if (arg == QLatin1String("--window") && hasValue) {
            const QStringList wh = args[++i].split(u'x');
            options.window = wh.size() == 2 ? QSize(wh[0].toInt(), wh[1].toInt()) : QSize();
        } else if (!arg.startsWith(QLatin1String("--")) && options.folder.isEmpty())
            options.folder = arg;
        else
            return std::nullopt;
    }
    // The gallery only knows boxes of (scale + 1) * 20 pixels for scales 1 to 10.
    const bool boxOk = options.box % 20 == 0 && options.box >= 40 && options.box <= 220;
    if (options.folder.isEmpty() || !boxOk || options.window.isEmpty() || options.timeoutSecs < 1)
        return std::nullopt;
    if (options.warm && options.cache.isEmpty()) {
        std::fprintf(stderr, "--warm needs the --cache folder a cold run filled\n");
        return std::nullopt;
    }
    return options;
}

// Settings, data and the program folder in a world of their own, so the run neither reads nor
// changes the user's; must happen before the application object exists.
void setUpWorld(const QTemporaryDir& world, const QString& cache)
{
    for (const char* name : {"config", "data", "home", "empty"})
        QDir(world.path()).mkpath(QLatin1String(name));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(world.filePath(QStringLiteral("config"))));
    qputenv("XDG_DATA_HOME", QFile::encodeName(world.filePath(QStringLiteral("data"))));
    qputenv("LUMBRA_HOME", QFile::encodeName(world.filePath(QStringLiteral("home"))));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(cache));
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

void writeSettings(const Options& options, const QString& emptyFolder)
{
    SettingsStore& settings = SettingsStore::global();
    settings.write(Keys::ThumbSizeForGallery, qint64(options.box / 20 - 1));
    settings.write(Keys::Width, Formats::pixelsToTwips(options.window.width()));
    settings.write(Keys::Height, Formats::pixelsToTwips(options.window.height()));
    // The window opens on the folder it showed last; an empty one keeps the first load out of
    // the figures.
    settings.write(Keys::BrowsePath.in(QStringLiteral("frmThumbnails")), emptyFolder);
}

double peakResidentMegabytes()
{
    // Files under /proc report no size, so atEnd() would stop before the first line.
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly | QIODevice::Text))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toDouble() / 1024.0;
    }
    return -1;
}

double msSince(const QElapsedTimer& clock)
{
    return clock.nsecsElapsed() / 1e6;
}

// Lets queued events run for a while: the window's layout timers settle this way.
void settle(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

// The UI thread's longest stretch without turning to its event loop, seen as the largest
// distance between ticks of a 1 ms timer.
class GapMeter
{
public:
    explicit GapMeter(const QElapsedTimer& clock) : m_clock(clock)
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { tick(); });
    }

    void start()
    {
        m_last = msSince(m_clock);
        m_timer.start();
    }
    // The stretch that is still open counts too.
    void stop()
    {
        tick();
        m_timer.stop();
    }

    double maxGap() const { return m_maxGap; }
    double maxGapEnd() const { return m_maxGapEnd; }
    int gapsOver(double ms) const { return int(std::count_if(m_gaps.begin(), m_gaps.end(), [ms](double g) { return g > ms; })); }

private:
    void tick()
    {
        const double now = msSince(m_clock);
        const double gap = now - m_last;
        if (gap > 10)
            m_gaps.push_back(gap);
        if (gap > m_maxGap) {
            m_maxGap = gap;
            m_maxGapEnd = now;
        }
        m_last = now;
    }

    const QElapsedTimer& m_clock;
    QTimer m_timer;
    double m_last = 0;
    double m_maxGap = 0;
    double m_maxGapEnd = 0;
    std::vector<double> m_gaps;
};

struct LoadFigures
{
    double showFolderMs = -1;
    double firstMadeMs = -1;
    double firstScreenMs = -1;
    int firstScreenCells = 0;
    double passMs = -1;
    bool cancelled = false;
    bool timedOut = false;
};

// Every cell in view has its thumbnail in memory.
bool screenReady(const frmThumbnails& window)
{
    const auto [first, last] = window.picFrame()->visibleRange();
    if (first < 0)
        return false;
    for (int i = first; i <= last; ++i)
        if (window.pipeline()->Picture(i).isNull())
            return false;
    return true;
}

LoadFigures timeLoad(frmThumbnails& window, const QString& folder, GapMeter& gaps, const QElapsedTimer& clock,
                     int timeoutSecs)
{
    LoadFigures figures;
    QEventLoop loop;
    auto checkScreen = [&] {
        if (figures.firstScreenMs >= 0 || !screenReady(window))
            return;
        window.picFrame()->grab();
        figures.firstScreenMs = msSince(clock);
        const auto [first, last] = window.picFrame()->visibleRange();
        figures.firstScreenCells = last - first + 1;
    };
    QObject context;
    QObject::connect(window.pipeline(), &ThumbPipeline::Made, &context, [&](int) {
        if (figures.firstMadeMs < 0)
            figures.firstMadeMs = msSince(clock);
        checkScreen();
    });
    QObject::connect(&window, &frmThumbnails::PassFinished, &context, [&](bool cancelled) {
        figures.passMs = msSince(clock);
        figures.cancelled = cancelled;
        checkScreen();
        loop.quit();
    });
    QTimer::singleShot(timeoutSecs * 1000, &context, [&] {
        figures.timedOut = true;
        loop.quit();
    });
    // ShowFolder runs inside the event loop, as a user's command would, so the meter sees it.
    QTimer::singleShot(0, &context, [&] {
        const double start = msSince(clock);
        window.ShowFolder(folder);
        figures.showFolderMs = msSince(clock) - start;
        checkScreen();
    });
    gaps.start();
    loop.exec();
    gaps.stop();
    return figures;
}

struct ScrollFigures
{
    int frames = 0;
    double maxMs = 0;
    double meanMs = 0;
    double maxPaintMs = 0;
    int blankFrames = 0;
};

int blankCells(const frmThumbnails& window)
{
    const auto [first, last] = window.picFrame()->visibleRange();
    int blank = 0;
    for (int i = first; first >= 0 && i <= last; ++i)
        blank += window.pipeline()->Picture(i).isNull() ? 1 : 0;
    return blank;
}

// One row further per frame from the top to the end of the canvas; between frames the event
// loop runs once, as it would between a user's scroll steps.
ScrollFigures timeScroll(frmThumbnails& window)
{
    ScrollFigures figures;
    QScrollBar* bar = window.sbSlide();
    ThumbGrid* grid = window.picFrame();
    const int columns = grid->columns();
    const int step = std::max(1, qRound(GalleryLayout::CellPos(columns, columns, grid->box()).y() -
                                        GalleryLayout::CellPos(0, columns, grid->box()).y()));
    double total = 0;
    for (int value = 0;; value = std::min(value + step, bar->maximum())) {
        QElapsedTimer frame;
        frame.start();
        bar->setValue(value);
        const double moved = msSince(frame);
        if (blankCells(window) > 0)
            ++figures.blankFrames;
        frame.restart();
        grid->grab();
        const double paint = msSince(frame);
        figures.maxPaintMs = std::max(figures.maxPaintMs, paint);
        figures.maxMs = std::max(figures.maxMs, moved + paint);
        total += moved + paint;
        ++figures.frames;
        QCoreApplication::processEvents();
        if (value >= bar->maximum())
            break;
    }
    figures.meanMs = total / figures.frames;
    return figures;
}

void print(const char* key, double value)
{
    std::printf("%s=%.1f\n", key, value);
}

void print(const char* key, int value)
{
    std::printf("%s=%d\n", key, value);
}

void print(const char* key, const QString& value)
{
    std::printf("%s=%s\n", key, qPrintable(value));
}

void report(const Options& options, const frmThumbnails& window, const LoadFigures& load, const GapMeter& gaps)
{
    const int pictures = window.pipeline()->Count();
    print("folder", QDir(options.folder).absolutePath());
    print("cache", options.warm ? QStringLiteral("warm") : QStringLiteral("cold"));
    print("box", options.box);
    print("window", QStringLiteral("%1x%2").arg(options.window.width()).arg(options.window.height()));
    print("columns", window.Columns());
    print("pictures", pictures);
    print("made", window.pipeline()->Finished());
    print("showfolder_ms", load.showFolderMs);
    print("first_made_ms", load.firstMadeMs);
    print("first_screen_ms", load.firstScreenMs);
    print("first_screen_cells", load.firstScreenCells);
    print("pass_ms", load.passMs);
    print("thumbs_per_s", load.passMs > 0 ? pictures * 1000.0 / load.passMs : 0.0);
    print("ui_gap_max_ms", gaps.maxGap());
    print("ui_gap_max_end_ms", gaps.maxGapEnd());
    print("ui_gaps_over_50ms", gaps.gapsOver(50));
}

void reportScroll(const ScrollFigures& scroll)
{
    print("scroll_frames", scroll.frames);
    print("scroll_ms_max", scroll.maxMs);
    print("scroll_ms_mean", scroll.meanMs);
    print("scroll_paint_ms_max", scroll.maxPaintMs);
    print("scroll_blank_frames", scroll.blankFrames);
}

} // namespace

int main(int argc, char** argv)
{
    QStringList args;
    for (int i = 0; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    const std::optional<Options> parsed = parse(args);
    if (!parsed) {
        usage();
        return 2;
    }
    Options options = *parsed;

    QTemporaryDir world;
    if (options.cache.isEmpty())
        options.cache = world.filePath(QStringLiteral("cache"));
    const QDir thumbnails(QDir(options.cache).filePath(QStringLiteral("thumbnails")));
    if (options.warm && !thumbnails.exists()) {
        std::fprintf(stderr, "no disk cache in %s: run --cold with that --cache first\n", qPrintable(options.cache));
        return 2;
    }
    if (!options.warm)
        QDir(thumbnails).removeRecursively();
    QDir().mkpath(options.cache);
    setUpWorld(world, options.cache);

    QApplication app(argc, argv);
    app.setApplicationName(QStringLiteral("Lumbra"));
    writeSettings(options, world.filePath(QStringLiteral("empty")));

    frmThumbnails window;
    window.show();
    settle(300);

    QElapsedTimer clock;
    clock.start();
    GapMeter gaps(clock);
    const LoadFigures load = timeLoad(window, options.folder, gaps, clock, options.timeoutSecs);
    report(options, window, load, gaps);
    if (load.timedOut || load.cancelled) {
        print("error", load.timedOut ? QStringLiteral("timeout") : QStringLiteral("cancelled"));
        return 1;
    }
    if (options.scroll)
        reportScroll(timeScroll(window));
    print("peak_rss_mb", peakResidentMegabytes());
    return 0;
}
