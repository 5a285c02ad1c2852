#include "browser/SlideDecoder.h"

#include "viewing/PreviewLayout.h"
#include "viewing/ucImgPreview.h"

#include <QFileInfo>
#include <QFutureWatcher>
#include <QtConcurrent>

#include <utility>

namespace {

// Longest wait for the pane to paint the slide before the next one is decoded anyway.
constexpr int PaintWaitMs = 300;

} // namespace

SlideDecoder::SlideDecoder(ucImgPreview* target, QObject* parent)
    : QObject(parent), m_target(target)
{
    // One slide ahead is all a show needs; a second thread would only compete with the screen.
    m_pool.setMaxThreadCount(1);
    m_afterPaint.setSingleShot(true);
    m_afterPaint.setInterval(PaintWaitMs);
    connect(&m_afterPaint, &QTimer::timeout, this, [this] {
        if (!m_upcoming.isEmpty())
            prepare(std::exchange(m_upcoming, QString()));
    });
    if (target)
        target->installEventFilter(this);
}

SlideDecoder::~SlideDecoder() = default;

void SlideDecoder::Show(const QString& path, const QString& upcoming)
{
    if (!m_target)
        return;
    // A file deleted since it was decoded ahead is shown as what it is now: nothing.
    if (IsReady(path) && QFileInfo::exists(path))
        m_target->OfferDecoded(path, m_ready.image, m_ready.naturalSize);
    m_readyPath.clear();
    m_ready = {};
    m_target->setFileName(path);
    m_upcoming = m_decodingAhead && upcoming != path ? upcoming : QString();
    if (!m_upcoming.isEmpty())
        m_afterPaint.start();
}

bool SlideDecoder::eventFilter(QObject* watched, QEvent* event)
{
    // A zero timer runs once this paint is done.
    if (event->type() == QEvent::Paint && watched == m_target && !m_upcoming.isEmpty() &&
        !m_target->DecodedImage().isNull())
        m_afterPaint.start(0);
    return false;
}

void SlideDecoder::prepare(const QString& path)
{
    if (path == m_pendingPath || IsReady(path))
        return;
    m_pendingPath = path;
    const quint64 generation = ++m_generation;
    const QSize pane = m_target->size();
    const qreal ratio = m_target->devicePixelRatioF();
    auto* watcher = new QFutureWatcher<LoadedPicture>(this);
    connect(watcher, &QFutureWatcher<LoadedPicture>::finished, this,
            [this, watcher, generation, path] {
                watcher->deleteLater();
                if (generation != m_generation)
                    return;
                m_pendingPath.clear();
                const LoadedPicture picture = watcher->result();
                if (!picture.isNull()) {
                    m_readyPath = path;
                    m_ready = picture;
                }
                Q_EMIT Prepared(path);
            });
    // The same size the pane decodes at: the picture fitted into it, never enlarged.
    watcher->setFuture(QtConcurrent::run(&m_pool, [path, pane, ratio] {
        const QSize natural = PictureLoader::NaturalSize(path);
        if (!natural.isValid())
            return LoadedPicture{};
        const QSizeF fitted = PreviewLayout::FitSize(natural, pane);
        LoadedPicture picture =
            PictureLoader::Load(path, ucImgPreview::DevicePixels(fitted, ratio));
        ucImgPreview::MatchRatio(picture.image, fitted);
        picture.naturalSize = natural;
        return picture;
    }));
}
