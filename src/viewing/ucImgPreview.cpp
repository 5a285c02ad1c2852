#include "viewing/ucImgPreview.h"

#include "common/AppGlobals.h"
#include "common/Formats.h"
#include "common/Utilities.h"
#include "gallery/PictureMenu.h"
#include "imaging/PictureLoader.h"
#include "viewing/PictureOpener.h"
#include "viewing/PreviewLayout.h"

#include <QFutureWatcher>
#include <QMouseEvent>
#include <QPainter>
#include <QtMath>
#include <QThreadPool>
#include <QtConcurrent>

#include <utility>

namespace {

// Previews decode one or two pictures at a time; a pool of their own keeps them from waiting
// behind thumbnail work.
QThreadPool& previewPool()
{
    static QThreadPool* pool = [] {
        auto* made = new QThreadPool;
        made->setMaxThreadCount(2);
        return made;
    }();
    return *pool;
}

QCursor magnifierCursor()
{
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, 3));
    painter.drawLine(19, 19, 29, 29);
    painter.setPen(QPen(Qt::black, 2));
    painter.setBrush(QColor(255, 255, 255, 180));
    painter.drawEllipse(QPointF(12, 12), 9, 9);
    painter.drawLine(8, 12, 16, 12);
    painter.drawLine(12, 8, 12, 16);
    return QCursor(pixmap, 12, 12);
}

} // namespace

ucImgPreview::ucImgPreview(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("ucImgPreview"));
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setNoDblClick(false);
}

ucImgPreview::~ucImgPreview()
{
    m_zoomStop = true;
    ++m_generation;
}

void ucImgPreview::setFileName(const QString& name)
{
    m_elementVisible = false;
    const bool same = name == m_fileName;
    m_fileName = name;

    if (!name.isEmpty()) {
        Globals().CurrentPicture = name;
        const QSizeF inner = size();
        if (m_stretchMode) {
            // Loaded while the element still stretches: what is recorded is the element's size.
            m_natural = {int(Formats::bankersRound(m_element.height())),
                         int(Formats::bankersRound(m_element.width()))};
            m_naturalSize = PictureLoader::NaturalSize(name);
            m_element = QRectF(QPointF(0, 0), inner);
            decode(m_element.size().toSize());
        } else {
            m_element = QRectF(QPointF(0, 0), inner);
            m_elementStretches = false;
            const bool offered = !same && name == m_offeredName;
            if (!same) {
                m_image = QImage();
                m_naturalSize =
                    offered ? QSizeF(m_offeredNatural) : PictureLoader::NaturalSize(name);
                if (!m_naturalSize.isValid()) {
                    // An unreadable file leaves the element hidden, as far as the load got.
                    m_natural = {0, 0};
                    update();
                    Q_EMIT Loaded(false);
                    return;
                }
                m_natural = {int(Formats::bankersRound(m_naturalSize.height())),
                             int(Formats::bankersRound(m_naturalSize.width()))};
            }
            const QSizeF fitted = PreviewLayout::FitSize(m_naturalSize, inner);
            m_element.setSize(fitted);
            const QSizeF gap = fitted - m_offeredImage.deviceIndependentSize();
            if (offered && qAbs(gap.width()) <= 1 && qAbs(gap.height()) <= 1) {
                // Ready now: any decode still running for the previous file must not land.
                m_image = std::exchange(m_offeredImage, QImage());
                m_offeredName.clear();
                const quint64 generation = ++m_generation;
                QMetaObject::invokeMethod(
                    this,
                    [this, generation] {
                        if (generation == m_generation)
                            Q_EMIT Loaded(true);
                    },
                    Qt::QueuedConnection);
            } else if (!same || m_image.isNull() ||
                       fitted.width() > m_image.deviceIndependentSize().width() + 0.5 ||
                       fitted.height() > m_image.deviceIndependentSize().height() + 0.5)
                decode(fitted.toSize());
        }
    }
    layOut();
}

void ucImgPreview::OfferDecoded(const QString& name, const QImage& image, const QSize& naturalSize)
{
    m_offeredName = name;
    m_offeredImage = image;
    m_offeredNatural = naturalSize;
}

void ucImgPreview::layOut()
{
    m_elementStretches = true;
    m_element.moveTopLeft(PreviewLayout::Centre(m_element.size(), size()));
    m_elementVisible = true;
    update();
}

void ucImgPreview::decode(const QSize& box)
{
    if (box.isEmpty())
        return;
    const quint64 generation = ++m_generation;
    const QString path = m_fileName;
    auto* watcher = new QFutureWatcher<LoadedPicture>(this);
    connect(watcher, &QFutureWatcher<LoadedPicture>::finished, this, [this, watcher, generation, box] {
        watcher->deleteLater();
        if (generation != m_generation)
            return;
        const LoadedPicture picture = watcher->result();
        m_image = picture.image;
        MatchRatio(m_image, box);
        update();
        Q_EMIT Loaded(!picture.isNull());
    });
    // Stretching fills any shape, so the picture is decoded to the box itself; fitting keeps
    // the proportions the box already has.
    const bool enlarge = m_stretchMode;
    const QSize pixels = DevicePixels(box, devicePixelRatioF());
    watcher->setFuture(QtConcurrent::run(&previewPool(), [path, pixels, enlarge] {
        return PictureLoader::Load(path, pixels, enlarge);
    }));
}

QSize ucImgPreview::DevicePixels(const QSizeF& box, qreal ratio)
{
    return QSize(qCeil(box.width() * ratio - 0.01), qCeil(box.height() * ratio - 0.01));
}

void ucImgPreview::MatchRatio(QImage& image, const QSizeF& box)
{
    if (!image.isNull() && box.width() > 0)
        image.setDevicePixelRatio(qMax(1.0, image.width() / box.width()));
}

void ucImgPreview::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event);
    if (!m_elementVisible || m_image.isNull())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (m_elementStretches) {
        painter.drawImage(m_element, m_image);
    } else {
        painter.setClipRect(m_element);
        painter.drawImage(m_element.topLeft(), m_image);
    }
}

void ucImgPreview::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (!m_resizing)
        setFileName(m_fileName);
}

void ucImgPreview::Resize(const QVariant& width, const QVariant& height)
{
    m_resizing = true;
    QSize wanted = size();
    bool ok = false;
    if (const double w = width.toDouble(&ok); width.isValid() && ok)
        wanted.setWidth(int(float(w)));
    if (const double h = height.toDouble(&ok); height.isValid() && ok)
        wanted.setHeight(int(float(h)));
    resize(wanted);
    m_resizing = false;
    setFileName(m_fileName);
}

void ucImgPreview::setMousepointer(int pointer)
{
    switch (pointer) {
    case 0:
        unsetCursor();
        break;
    case 1:
        setCursor(Qt::ArrowCursor);
        break;
    case 2:
        setCursor(Qt::CrossCursor);
        break;
    case 3:
        setCursor(Qt::IBeamCursor);
        break;
    case 11:
        setCursor(Qt::WaitCursor);
        break;
    case 99:
        setCursor(magnifierCursor());
        break;
    default:
        break;
    }
}

void ucImgPreview::setNoDblClick(bool value)
{
    m_noDblClick = value;
    setMousepointer(value ? 0 : 99);
}

void ucImgPreview::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->accept();
    if (!m_noDblClick)
        PictureOpener::Open(m_fileName);
}

void ucImgPreview::mouseReleaseEvent(QMouseEvent* event)
{
    event->accept();
    if (m_noDblClick)
        return;
    m_zoomStop = false;
    PictureMenu::ButtonReleased(int(event->button()));
}

void ucImgPreview::ZoomImage()
{
    if (m_noDblClick)
        return;
    const QPointer<ucImgPreview> self(this);
    m_zoomStop = false;
    for (;;) {
        QCoreApplication::processEvents();
        int wait = 500;
        Utilities::Pause(wait, true);
        // The wait processes events: the pane may have gone, or been told to stop.
        if (!self || m_zoomStop)
            return;
        if (m_image.isNull() || !m_naturalSize.isValid()) {
            m_zoomLevel = 0;
            continue;
        }
        const PreviewLayout::ZoomStep step =
            PreviewLayout::NextZoom(m_zoomLevel, m_naturalSize, width(), m_element.size());
        m_zoomLevel = step.level;
        m_element.setSize(step.size);
        m_elementStretches = step.stretch;
        // A step larger than the pixels decoded so far gets them decoded at its size.
        const QSize needed = step.size.toSize().boundedTo(m_naturalSize.toSize());
        const QSizeF decoded = m_image.deviceIndependentSize();
        if (needed.width() > decoded.width() + 0.5 || needed.height() > decoded.height() + 0.5)
            decode(needed);
        update();
    }
}
