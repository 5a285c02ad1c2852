#include "browser/SlideDecoder.h"

#include "viewing/PreviewLayout.h"
#include "viewing/ucImgPreview.h"

#include <QFileInfo>
#include <QFutureWatcher>
#include <QtConcurrent>

SlideDecoder::SlideDecoder(ucImgPreview* target, QObject* parent)
    : QObject(parent), m_target(target)
{
    // One slide ahead is all a show needs; a second thread would only compete with the screen.
    m_pool.setMaxThreadCount(1);
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
    if (m_decodingAhead && !upcoming.isEmpty() && upcoming != path)
        prepare(upcoming);
}

void SlideDecoder::prepare(const QString& path)
{
    if (path == m_pendingPath || IsReady(path))
        return;
    m_pendingPath = path;
    const quint64 generation = ++m_generation;
    const QSize pane = m_target->size();
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
    watcher->setFuture(QtConcurrent::run(&m_pool, [path, pane] {
        const QSize natural = PictureLoader::NaturalSize(path);
        if (!natural.isValid())
            return LoadedPicture{};
        LoadedPicture picture =
            PictureLoader::Load(path, PreviewLayout::FitSize(natural, pane).toSize());
        picture.naturalSize = natural;
        return picture;
    }));
}
