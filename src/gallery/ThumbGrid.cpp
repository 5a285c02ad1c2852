#include "gallery/ThumbGrid.h"

#include "browser/DesktopClipboard.h"
#include "gallery/GalleryLayout.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHash>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

// One wheel notch moves three small changes of the scroll bar, as a notch scrolls three
// lines elsewhere on the desktop.
constexpr int NotchesPerStep = 120;
constexpr int SmallChangesPerNotch = 3;

// Alphas for the overlays: the selection must read at a glance over any picture, the hot
// frame only hint.
constexpr int CheckedFillAlpha = 80;
constexpr int HotFrameAlpha = 140;
constexpr int CaptionStripAlpha = 190;

// Snaps a logical coordinate to the device pixel grid so a thumbnail made for this density
// is blitted pixel for pixel.
double toDevicePixel(double logical, double dpr)
{
    return std::round(logical * dpr) / dpr;
}

QList<QUrl> localFiles(const QMimeData* mime)
{
    QList<QUrl> files;
    if (!mime || !mime->hasUrls())
        return files;
    for (const QUrl& url : mime->urls()) {
        if (url.isLocalFile())
            files << url;
    }
    return files;
}

} // namespace

ThumbGrid::ThumbGrid(QWidget* parent) : QWidget(parent)
{
    setMouseTracking(true);
    setAcceptDrops(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setBackgroundRole(QPalette::Base);
    updateCaptionFont();
}

void ThumbGrid::setPictureSource(std::function<QImage(int)> source)
{
    m_source = std::move(source);
    update();
}

void ThumbGrid::setBox(int box)
{
    if (box == m_box || box < 1)
        return;
    m_box = box;
    m_looksDpr = 0;
    update();
    refreshVisibleRange();
}

void ThumbGrid::setColumns(int columns)
{
    columns = std::max(1, columns);
    if (columns == m_columns)
        return;
    m_columns = columns;
    update();
    refreshVisibleRange();
}

void ThumbGrid::setCount(int count)
{
    m_count = std::max(0, count);
    // Captions are made room for when the first one is set: most galleries show none.
    m_captions.clear();
    m_captionStrips.clear();
    m_checked.assign(size_t(m_count), false);
    m_hidden.assign(size_t(m_count), false);
    m_checkedCount = 0;
    m_hot = -1;
    m_pressed = -1;
    m_current = -1;
    update();
    refreshVisibleRange();
}

void ThumbGrid::setCaption(int index, const QString& caption)
{
    if (!isValid(index) || this->caption(index) == caption)
        return;
    if (m_captions.isEmpty())
        m_captions.resize(m_count);
    m_captions[index] = caption;
    m_captionStrips.remove(index);
    updateCell(index);
}

QString ThumbGrid::caption(int index) const
{
    return isValid(index) && index < m_captions.size() ? m_captions[index] : QString();
}

void ThumbGrid::setChecked(int index, bool checked)
{
    if (!isValid(index) || m_checked[size_t(index)] == checked)
        return;
    if (checked && m_hidden[size_t(index)])
        return;
    m_checked[size_t(index)] = checked;
    m_checkedCount += checked ? 1 : -1;
    updateCell(index);
}

bool ThumbGrid::isChecked(int index) const
{
    return isValid(index) && m_checked[size_t(index)];
}

void ThumbGrid::setCellHidden(int index, bool hidden)
{
    if (!isValid(index) || m_hidden[size_t(index)] == hidden)
        return;
    if (hidden) {
        setChecked(index, false);
        if (m_hot == index)
            m_hot = -1;
    }
    m_hidden[size_t(index)] = hidden;
    updateCell(index);
}

bool ThumbGrid::isCellHidden(int index) const
{
    return isValid(index) && m_hidden[size_t(index)];
}

void ThumbGrid::setScrollTop(int top)
{
    if (top == m_scrollTop)
        return;
    // Move what is already drawn and paint only the strip that scrolls into view.
    const int dy = m_scrollTop - top;
    m_scrollTop = top;
    // Without a current cell the focus frame follows the first cell in view: paint it all.
    if (std::abs(dy) < height() && !(hasFocus() && m_current < 0))
        scroll(0, dy);
    else
        update();
    refreshVisibleRange();
}

int ThumbGrid::IndexAt(const QPoint& widgetPos) const
{
    const QPointF canvasPoint(widgetPos.x(), widgetPos.y() + double(m_scrollTop));
    const int index = GalleryLayout::IndexAt(canvasPoint, m_columns, m_box, m_count);
    return isCellHidden(index) ? -1 : index;
}

QRectF ThumbGrid::cellRect(int index) const
{
    if (!isValid(index))
        return {};
    const QPointF pos = GalleryLayout::CellPos(index, m_columns, m_box);
    return {pos - QPointF(0, m_scrollTop), QSizeF(m_box, m_box)};
}

// The cell on whole pixels, the way it is drawn; the frame style wants integer rectangles.
QRect ThumbGrid::paintRect(int index) const
{
    const QRectF exact = cellRect(index);
    return {qRound(exact.x()), qRound(exact.y()), m_box, m_box};
}

void ThumbGrid::updateCell(int index)
{
    if (!isValid(index))
        return;
    const QRect area = paintRect(index).adjusted(-1, -1, 1, 1);
    if (area.intersects(rect()))
        update(area);
}

void ThumbGrid::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRect exposed = event->rect();
    painter.fillRect(exposed, palette().brush(backgroundRole()));

    const auto [first, last] = GalleryLayout::VisibleRange(
        m_scrollTop + exposed.top(), exposed.height(), m_columns, m_box, m_count);
    for (int i = first; i >= 0 && i <= last; ++i) {
        if (!m_hidden[size_t(i)] && paintRect(i).intersects(exposed))
            paintCell(painter, i);
    }
    if (hasFocus())
        paintFocus(painter, focusCell());
}

void ThumbGrid::paintFocus(QPainter& painter, int index)
{
    if (index < 0)
        return;
    // Dots of the text colour on a line of the base colour, inside the selection frame: the
    // frame shows over any picture, checked or not, and whether or not the focus came by Tab
    // (the style's own focus frame waits for a Tab).
    const QRectF frame = QRectF(paintRect(index)).adjusted(3.5, 3.5, -3.5, -3.5);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Base), 1));
    painter.drawRect(frame);
    painter.setPen(QPen(palette().color(QPalette::Text), 1, Qt::DotLine));
    painter.drawRect(frame);
    painter.restore();
}

void ThumbGrid::setCurrent(int index)
{
    if (!isValid(index))
        index = -1;
    if (index == m_current)
        return;
    const int before = focusCell();
    m_current = index;
    updateCell(before);
    updateCell(index);
}

int ThumbGrid::focusCell() const
{
    if (isValid(m_current) && !m_hidden[size_t(m_current)])
        return m_current;
    for (int i = m_visible.first; i >= 0 && i <= m_visible.second; ++i)
        if (!m_hidden[size_t(i)])
            return i;
    return -1;
}

void ThumbGrid::paintCell(QPainter& painter, int index)
{
    const QRect cell = paintRect(index);
    const CellLook& look =
        lookFor(m_checked[size_t(index)], index == m_hot, painter.device()->devicePixelRatioF());
    painter.drawPixmap(cell.topLeft(), look.panel);
    paintPicture(painter, cell, index);
    if (!look.overlay.isNull())
        painter.drawPixmap(cell.topLeft(), look.overlay);
    if (index < m_captions.size() && !m_captions[index].isEmpty())
        paintCaption(painter, cell, index);
}

const ThumbGrid::CellLook& ThumbGrid::lookFor(bool checked, bool hot, qreal dpr)
{
    if (m_looksDpr != dpr) {
        for (int state = 0; state < int(m_looks.size()); ++state)
            m_looks[size_t(state)] = makeLook(state & 1, state & 2, dpr);
        m_looksDpr = dpr;
    }
    return m_looks[size_t((checked ? 1 : 0) | (hot ? 2 : 0))];
}

// A graphical check box: raised when clear, pushed in and tinted with the selection colour
// when checked; the hot cell only gets a faint frame.
ThumbGrid::CellLook ThumbGrid::makeLook(bool checked, bool hot, qreal dpr) const
{
    const QRect cell(0, 0, m_box, m_box);
    const auto blank = [&] {
        QPixmap pixmap(cell.size() * dpr);
        pixmap.setDevicePixelRatio(dpr);
        pixmap.fill(Qt::transparent);
        return pixmap;
    };

    CellLook look{blank(), {}};
    QStyleOptionButton option;
    option.initFrom(this);
    option.rect = cell;
    option.state &= ~QStyle::State_MouseOver;
    option.state |= checked ? (QStyle::State_Sunken | QStyle::State_On) : QStyle::State_Raised;
    if (hot)
        option.state |= QStyle::State_MouseOver;
    {
        QPainter painter(&look.panel);
        style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, this);
    }

    if (!checked && !hot)
        return look;
    look.overlay = blank();
    QPainter painter(&look.overlay);
    QColor highlight = palette().color(QPalette::Highlight);
    if (checked) {
        painter.fillRect(
            cell, QColor(highlight.red(), highlight.green(), highlight.blue(), CheckedFillAlpha));
        painter.setPen(QPen(highlight, 2));
        painter.drawRect(QRectF(cell).adjusted(1, 1, -1, -1));
    } else {
        highlight.setAlpha(HotFrameAlpha);
        painter.setPen(QPen(highlight, 1));
        painter.drawRect(QRectF(cell).adjusted(0.5, 0.5, -0.5, -0.5));
    }
    return look;
}

void ThumbGrid::paintPicture(QPainter& painter, const QRect& cell, int index)
{
    if (!m_source)
        return;
    const QImage picture = m_source(index);
    if (picture.isNull())
        return;
    const QSizeF logical = picture.deviceIndependentSize();
    const QRectF fit = GalleryLayout::FitInCell(logical, m_box);
    const double dpr = painter.device()->devicePixelRatioF();
    const QPointF at(toDevicePixel(cell.x() + fit.x(), dpr),
                     toDevicePixel(cell.y() + fit.y(), dpr));
    if (fit.size() == logical) {
        painter.drawImage(at, picture);
        return;
    }
    // A picture made for another box or density still has to fit; only then is it resampled.
    painter.drawImage(QRectF(at, fit.size()), picture);
}

void ThumbGrid::paintCaption(QPainter& painter, const QRect& cell, int index)
{
    const qreal dpr = painter.device()->devicePixelRatioF();
    const QPixmap* strip = m_captionStrips.object(index);
    if (!strip || strip->devicePixelRatio() != dpr ||
        strip->deviceIndependentSize().width() != cell.width() - 4) {
        auto made = std::make_unique<QPixmap>(makeCaptionStrip(m_captions[index], dpr));
        const qsizetype bytes = qsizetype(made->width()) * made->height() * 4;
        strip = made.get();
        m_captionStrips.insert(index, made.release(), bytes);
    }
    const int height = qRound(strip->deviceIndependentSize().height());
    painter.drawPixmap(QPoint(cell.left() + 2, cell.bottom() - 1 - height), *strip);
}

// The caption sits over the bottom of the picture on a strip that keeps it readable; text
// wider than the cell is simply cut off at the strip's ends.
QPixmap ThumbGrid::makeCaptionStrip(const QString& caption, qreal dpr) const
{
    const QFontMetrics metrics(m_captionFont);
    const QRect strip(0, 0, std::max(1, m_box - 4), metrics.height() + 2);
    QPixmap pixmap(strip.size() * dpr);
    pixmap.setDevicePixelRatio(dpr);
    QColor background = palette().color(QPalette::Base);
    background.setAlpha(CaptionStripAlpha);
    pixmap.fill(background);
    QPainter painter(&pixmap);
    painter.setFont(m_captionFont);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(strip, Qt::AlignCenter | Qt::TextSingleLine, caption);
    return pixmap;
}

void ThumbGrid::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    refreshVisibleRange();
}

void ThumbGrid::changeEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::FontChange:
        updateCaptionFont();
        break;
    case QEvent::PaletteChange:
    case QEvent::StyleChange:
        m_looksDpr = 0;
        m_captionStrips.clear();
        break;
    default:
        break;
    }
    QWidget::changeEvent(event);
}

void ThumbGrid::updateCaptionFont()
{
    m_captionStrips.clear();
    m_captionFont = font();
    if (m_captionFont.pointSizeF() > 0)
        m_captionFont.setPointSizeF(std::max(6.0, m_captionFont.pointSizeF() * 0.8));
    else
        m_captionFont.setPixelSize(std::max(8, m_captionFont.pixelSize() * 4 / 5));
}

void ThumbGrid::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_pressed = IndexAt(event->position().toPoint());
        m_pressPos = event->position().toPoint();
    }
    QWidget::mousePressEvent(event);
}

// A check box toggles when the button comes up over the box it went down on.
void ThumbGrid::mouseReleaseEvent(QMouseEvent* event)
{
    const int index = IndexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton) {
        const int pressed = std::exchange(m_pressed, -1);
        if (index >= 0 && index == pressed) {
            setChecked(index, !isChecked(index));
            emit CellClicked(index);
        }
    } else if (event->button() == Qt::RightButton && index >= 0) {
        emit CellContextMenu(index, event->globalPosition().toPoint());
    }
    QWidget::mouseReleaseEvent(event);
}

void ThumbGrid::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() == Qt::NoButton) {
        const int index = IndexAt(event->position().toPoint());
        if (index != m_hot) {
            setHot(index);
            if (index >= 0)
                emit CellHovered(index);
        }
    } else if (event->buttons() == Qt::LeftButton && m_pressed >= 0 && m_fileOf &&
               (event->position().toPoint() - m_pressPos).manhattanLength() >=
                   QApplication::startDragDistance()) {
        // A drag, not a click: the press must not toggle the cell when the button comes up.
        startDrag(std::exchange(m_pressed, -1));
    }
    QWidget::mouseMoveEvent(event);
}

void ThumbGrid::setFileSource(std::function<QString(int)> fileOf)
{
    m_fileOf = std::move(fileOf);
}

std::unique_ptr<QMimeData> ThumbGrid::MakeDragData(int pressedIndex) const
{
    if (!m_fileOf || !isValid(pressedIndex) || m_hidden[size_t(pressedIndex)])
        return nullptr;
    QStringList paths;
    if (isChecked(pressedIndex)) {
        for (int i = 0; i < m_count; ++i)
            if (isChecked(i))
                paths << m_fileOf(i);
    } else {
        paths << m_fileOf(pressedIndex);
    }
    paths.removeAll(QString());
    if (paths.isEmpty())
        return nullptr;
    return DesktopClipboard::Pack(paths, false);
}

void ThumbGrid::startDrag(int index)
{
    std::unique_ptr<QMimeData> data = MakeDragData(index);
    if (!data)
        return;
    auto* drag = new QDrag(this);
    drag->setMimeData(data.release());
    if (m_source) {
        const QImage picture = m_source(index);
        if (!picture.isNull())
            drag->setPixmap(QPixmap::fromImage(picture.scaled(
                64, 64, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    }
    // Pictures leave the gallery as copies: moving them away under it would empty cells.
    drag->exec(Qt::CopyAction, Qt::CopyAction);
    drag->deleteLater();
}

void ThumbGrid::keyPressEvent(QKeyEvent* event)
{
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const int from = focusCell();
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (modifiers != Qt::NoModifier)
            break;
        if (from >= 0)
            emit CellActivated(from);
        return;
    case Qt::Key_Space:
        if (modifiers & ~Qt::ControlModifier)
            break;
        if (from >= 0)
            emit CellToggled(from);
        return;
    case Qt::Key_F10:
        if (modifiers != Qt::ShiftModifier)
            break;
        if (from >= 0)
            emit CellContextMenu(from, mapToGlobal(paintRect(from).center()));
        return;
    default:
        break;
    }

    using GalleryLayout::Move;
    static const QHash<int, Move> moves = {
        {Qt::Key_Left, Move::Left},         {Qt::Key_Right, Move::Right},
        {Qt::Key_Up, Move::Up},             {Qt::Key_Down, Move::Down},
        {Qt::Key_PageUp, Move::PageUp},     {Qt::Key_PageDown, Move::PageDown},
        {Qt::Key_Home, Move::Home},         {Qt::Key_End, Move::End},
    };
    const auto move = moves.constFind(event->key());
    if (move == moves.constEnd() || (modifiers & ~(Qt::ShiftModifier | Qt::ControlModifier))) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (from < 0)
        return;
    // The first key takes the cell the focus frame shows; Home and End go where they say.
    const bool jump = *move == Move::Home || *move == Move::End;
    const int target = m_current < 0 && !jump
                           ? from
                           : GalleryLayout::MoveTo(from, *move, m_columns, m_count,
                                                   GalleryLayout::RowsPerPage(height(), m_box),
                                                   [this](int i) { return m_hidden[size_t(i)]; });
    if (target >= 0)
        emit KeyMoved(target, modifiers);
}

void ThumbGrid::contextMenuEvent(QContextMenuEvent* event)
{
    // The mouse's menu comes with the right button's release; this one is the menu key's.
    if (event->reason() == QContextMenuEvent::Mouse) {
        event->ignore();
        return;
    }
    const int index = focusCell();
    if (index < 0) {
        event->ignore();
        return;
    }
    event->accept();
    emit CellContextMenu(index, mapToGlobal(paintRect(index).center()));
}

void ThumbGrid::focusInEvent(QFocusEvent* event)
{
    updateCell(focusCell());
    QWidget::focusInEvent(event);
}

void ThumbGrid::focusOutEvent(QFocusEvent* event)
{
    updateCell(focusCell());
    QWidget::focusOutEvent(event);
}

void ThumbGrid::leaveEvent(QEvent* event)
{
    setHot(-1);
    QWidget::leaveEvent(event);
}

void ThumbGrid::setHot(int index)
{
    const int previous = std::exchange(m_hot, index);
    updateCell(previous);
    updateCell(index);
}

void ThumbGrid::wheelEvent(QWheelEvent* event)
{
    int delta = event->pixelDelta().y();
    if (event->pixelDelta().isNull()) {
        const int smallChange = GalleryLayout::ScrollFor(0, 0, m_box).smallChange;
        delta = event->angleDelta().y() * SmallChangesPerNotch * smallChange / NotchesPerStep;
    }
    if (delta != 0)
        emit WheelScrolled(delta);
    event->accept();
}

void ThumbGrid::dragEnterEvent(QDragEnterEvent* event)
{
    // Pictures dragged out of this gallery are already here.
    if (event->source() != this && !localFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void ThumbGrid::dragMoveEvent(QDragMoveEvent* event)
{
    if (event->source() != this && !localFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void ThumbGrid::dropEvent(QDropEvent* event)
{
    const QList<QUrl> files = localFiles(event->mimeData());
    if (files.isEmpty() || event->source() == this)
        return;
    event->acceptProposedAction();
    emit FilesDropped(files);
}

void ThumbGrid::refreshVisibleRange()
{
    const auto range =
        GalleryLayout::VisibleRange(m_scrollTop, height(), m_columns, m_box, m_count);
    if (range == m_visible)
        return;
    m_visible = range;
    emit VisibleRangeChanged(range.first, range.second);
}
