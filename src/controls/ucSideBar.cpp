#include "controls/ucSideBar.h"

#include "app/SettingsStore.h"
#include "controls/ucToggleButton.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QToolButton>
#include <QVariantAnimation>
#include <QVBoxLayout>

#include <functional>

// The bar's title: its text and the toggle button while rolled out; the whole strip while
// rolled up. It runs down the bar's inner edge when the bar is docked left or right, so that
// rolling up leaves exactly the title behind. Presses it does not use go on to the dock
// widget, which drags the bar by them.
class ucSideBarTitle : public QWidget
{
public:
    explicit ucSideBarTitle(QWidget* bar) : QWidget(bar), m_bar(bar)
    {
        setMouseTracking(true);
        m_button = new ucToggleButton(this);
        m_button->setObjectName(QStringLiteral("cmdToggle"));
        m_button->setStateToolTips(QStringLiteral("Show"), QStringLiteral("Hide"));
        m_button->setFocusPolicy(Qt::NoFocus);
        placeButton();
    }

    ucToggleButton* button() const { return m_button; }
    std::function<void()> stripClicked;

    void setVertical(bool vertical)
    {
        if (vertical == m_vertical)
            return;
        m_vertical = vertical;
        relayout();
    }

    void setStrip(bool strip, int thickness)
    {
        if (strip == m_strip && thickness == m_stripThickness)
            return;
        m_strip = strip;
        m_stripThickness = thickness;
        relayout();
    }

    int normalThickness() const { return qMax(fontMetrics().height() + 6, 20); }
    int thickness() const { return m_strip ? m_stripThickness : normalThickness(); }

    QSize sizeHint() const override
    {
        const int length =
            buttonSize() + 12 + fontMetrics().horizontalAdvance(m_bar->windowTitle());
        return m_vertical ? QSize(thickness(), length) : QSize(length, thickness());
    }
    QSize minimumSizeHint() const override { return QSize(thickness(), thickness()); }

protected:
    void resizeEvent(QResizeEvent*) override { placeButton(); }

    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const QColor base = palette().color(QPalette::Window);
        painter.fillRect(rect(), base.darker(m_strip ? 115 : 106));
        if (m_strip) {
            // Two grip lines along the strip, clear of the button.
            painter.setPen(base.darker(150));
            const int mid = thickness() / 2;
            const int from = buttonSize() + 4;
            if (m_vertical) {
                painter.drawLine(mid - 1, from, mid - 1, height() - 4);
                painter.drawLine(mid + 1, from, mid + 1, height() - 4);
            } else {
                painter.drawLine(4, mid - 1, width() - from, mid - 1);
                painter.drawLine(4, mid + 1, width() - from, mid + 1);
            }
            return;
        }
        const QString title = m_bar->windowTitle();
        if (title.isEmpty())
            return;
        painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled,
                                       QPalette::WindowText));
        const int room = (m_vertical ? height() : width()) - buttonSize() - 12;
        const QString shown = fontMetrics().elidedText(title, Qt::ElideRight, room);
        if (m_vertical) {
            // Read from the bottom up, as vertical captions are.
            painter.translate(0, height());
            painter.rotate(-90);
            painter.drawText(QRect(6, 0, room, width()), Qt::AlignLeft | Qt::AlignVCenter, shown);
        } else {
            painter.drawText(QRect(6, 0, room, height()), Qt::AlignLeft | Qt::AlignVCenter, shown);
        }
    }

    // On the strip a click rolls the bar out, while a press that moves on starts a drag.
    void mousePressEvent(QMouseEvent* event) override
    {
        m_pressed = m_strip && event->button() == Qt::LeftButton;
        m_pressPos = event->position().toPoint();
        event->ignore();
    }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (m_pressed && (event->position().toPoint() - m_pressPos).manhattanLength() >
                             QApplication::startDragDistance())
            m_pressed = false;
        event->ignore();
    }
    void mouseReleaseEvent(QMouseEvent* event) override
    {
        const bool click = m_pressed && event->button() == Qt::LeftButton && m_strip;
        m_pressed = false;
        event->ignore();
        if (click && stripClicked)
            stripClicked();
    }

private:
    int buttonSize() const { return m_strip ? m_stripThickness : normalThickness() - 4; }

    void relayout()
    {
        placeButton();
        updateGeometry();
        update();
    }

    // The button sits in the bar's upper corner: at the top of a vertical title, at the right
    // end of a horizontal one.
    void placeButton()
    {
        const int size = buttonSize();
        const int inset = (thickness() - size) / 2;
        m_button->setFixedSize(size, size);
        if (m_vertical)
            m_button->move(inset, inset);
        else
            m_button->move(width() - size - inset, inset);
    }

    QWidget* m_bar;
    ucToggleButton* m_button = nullptr;
    bool m_vertical = false;
    bool m_strip = false;
    int m_stripThickness = 10;
    bool m_pressed = false;
    QPoint m_pressPos;
};

namespace {

Qt::DockWidgetArea areaOf(int side)
{
    switch (side) {
    case ucSideBar::Top:
        return Qt::TopDockWidgetArea;
    case ucSideBar::Bottom:
        return Qt::BottomDockWidgetArea;
    case ucSideBar::Right:
        return Qt::RightDockWidgetArea;
    default:
        return Qt::LeftDockWidgetArea;
    }
}

int sideOf(Qt::DockWidgetArea area)
{
    switch (area) {
    case Qt::TopDockWidgetArea:
        return ucSideBar::Top;
    case Qt::BottomDockWidgetArea:
        return ucSideBar::Bottom;
    case Qt::RightDockWidgetArea:
        return ucSideBar::Right;
    case Qt::LeftDockWidgetArea:
        return ucSideBar::Left;
    default:
        return 0;
    }
}

// The arrow points the way the button will move the bar: towards the window's edge to roll
// it up, away from it to roll it out.
Qt::ArrowType arrowFor(int side, bool rolledUp)
{
    switch (side) {
    case ucSideBar::Top:
        return rolledUp ? Qt::DownArrow : Qt::UpArrow;
    case ucSideBar::Bottom:
        return rolledUp ? Qt::UpArrow : Qt::DownArrow;
    case ucSideBar::Right:
        return rolledUp ? Qt::LeftArrow : Qt::RightArrow;
    default:
        return rolledUp ? Qt::RightArrow : Qt::LeftArrow;
    }
}

bool carriesFiles(const QMimeData* data)
{
    return data && data->hasUrls();
}

constexpr int RollMilliseconds = 150;
constexpr int FallbackContentExtent = 120;

} // namespace

ucSideBar::ucSideBar(int index, const QString& formName, QMainWindow* owner)
    : QDockWidget(owner), m_owner(owner), m_index(index), m_formName(formName)
{
    setObjectName(Identifier());
    setAllowedAreas(Qt::AllDockWidgetAreas);
    setAcceptDrops(true);
    setMouseTracking(true);

    m_title = new ucSideBarTitle(this);
    setTitleBarWidget(m_title);
    connect(m_title->button(), &QToolButton::clicked, this, &ucSideBar::UserToggle);
    m_title->stripClicked = [this] { UserToggle(); };

    // The dock's own widget stays visible while the bar is rolled up: a dock widget whose
    // widget is hidden shrinks to its title both ways, so only the holder inside is hidden.
    m_body = new QWidget(this);
    m_body->setMouseTracking(true);
    auto* bodyLayout = new QVBoxLayout(m_body);
    bodyLayout->setContentsMargins(0, 0, 0, 0);
    m_holder = new QWidget(m_body);
    m_holder->setMouseTracking(true);
    auto* holderLayout = new QVBoxLayout(m_holder);
    holderLayout->setContentsMargins(0, 0, 0, 0);
    bodyLayout->addWidget(m_holder);
    setWidget(m_body);

    m_animation = new QVariantAnimation(this);
    m_animation->setDuration(RollMilliseconds);
    m_animation->setEasingCurve(QEasingCurve::OutCubic);
    connect(m_animation, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        if (!isRolling())
            return;
        fixExtent(value.toInt());
        emit Rolling(value.toInt());
    });
    connect(m_animation, &QVariantAnimation::finished, this, &ucSideBar::finishRoll);

    m_actShow = new QAction(tr("&Expanded"), this);
    m_actShow->setObjectName(QStringLiteral("mnuShow"));
    m_actShow->setCheckable(true);
    connect(m_actShow, &QAction::triggered, this, &ucSideBar::UserToggle);

    connect(this, &QDockWidget::topLevelChanged, this, &ucSideBar::onTopLevelChanged);
    connect(this, &QDockWidget::dockLocationChanged, this, &ucSideBar::onDockLocationChanged);

    if (m_owner) {
        m_dockingByCode = true;
        m_owner->addDockWidget(areaOf(m_align), this);
        m_dockingByCode = false;
    }
    applySide();

    bool on = true;
    SettingsStore::global().readInto(Keys::SideBarState(Identifier()).in(m_formName), on);
    if (!on) {
        m_manualHide = true;
        roll(true);
    }
    syncControls();
}

ucSideBar::~ucSideBar() = default;

QString ucSideBar::Identifier() const
{
    return QStringLiteral("ucSideBar(%1)").arg(m_index);
}

void ucSideBar::setContentWidget(QWidget* content)
{
    if (content == m_content)
        return;
    delete m_content;
    m_content = content;
    if (content)
        m_holder->layout()->addWidget(content);
}

Qt::Orientation ucSideBar::Orientation() const
{
    return m_align == Left || m_align == Right ? Qt::Vertical : Qt::Horizontal;
}

void ucSideBar::Dock(int side)
{
    if (side < Top || side > Right)
        return;
    if (isRolling()) {
        m_animation->stop();
        finishRoll();
    }
    if (m_owner && m_owner->dockWidgetArea(this) != areaOf(side)) {
        // Leave the constraints of the old side behind before the layout sees the bar.
        releaseExtent();
        m_dockingByCode = true;
        m_owner->addDockWidget(areaOf(side), this);
        m_dockingByCode = false;
    }
    m_align = side;
    applySide();
    emit Docked(side);
}

void ucSideBar::setRoll_SmallWidth(int pixels)
{
    m_smallWidth = qMax(1, pixels);
    if (m_rolledUp && !isRolling()) {
        m_title->setStrip(true, m_smallWidth);
        fixExtent(m_smallWidth);
    }
}

void ucSideBar::setEnabledState(bool enabled)
{
    m_enabled = enabled;
    m_holder->setEnabled(enabled);
    syncControls();
}

bool ucSideBar::isRolling() const
{
    return m_animation->state() == QAbstractAnimation::Running;
}

void ucSideBar::RollUp()
{
    roll(true);
}

void ucSideBar::RollOut()
{
    if (!m_manualHide)
        roll(false);
}

void ucSideBar::ToggleRoll()
{
    if (m_rolledUp)
        RollOut();
    else
        RollUp();
}

void ucSideBar::UserToggle()
{
    if (m_enabled) {
        const bool wasOn = !m_rolledUp;
        SettingsStore::global().writeBool(Keys::SideBarState(Identifier()).in(m_formName), !wasOn);
        m_manualHide = wasOn;
        roll(wasOn);
    }
    syncControls();
}

void ucSideBar::setHint(const QString& title, const QString& text)
{
    QString body = text.toHtmlEscaped();
    body.replace(QStringLiteral("\r\n"), QStringLiteral("<br>"));
    body.replace(u'\r', QStringLiteral("<br>"));
    body.replace(u'\n', QStringLiteral("<br>"));
    if (title.isEmpty())
        setToolTip(QStringLiteral("<p>") + body + QStringLiteral("</p>"));
    else
        setToolTip(QStringLiteral("<b>") + title.toHtmlEscaped() + QStringLiteral("</b><br>") +
                   body);
}

bool ucSideBar::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        emit ucMouseDown(mouse->button(), mouse->modifiers(), mouse->position().toPoint());
        break;
    }
    case QEvent::MouseMove: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        emit ucMouseMove(mouse->buttons(), mouse->modifiers(), mouse->position().toPoint());
        break;
    }
    case QEvent::WindowTitleChange:
        m_title->updateGeometry();
        m_title->update();
        break;
    default:
        break;
    }
    return QDockWidget::event(event);
}

void ucSideBar::contextMenuEvent(QContextMenuEvent* event)
{
    syncControls();
    QMenu menu(this);
    menu.addAction(m_actShow);
    menu.exec(event->globalPos());
    event->accept();
}

void ucSideBar::dragEnterEvent(QDragEnterEvent* event)
{
    if (!carriesFiles(event->mimeData())) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    emit OLEDraggingOver(event->mimeData(), event->position().toPoint());
}

void ucSideBar::dragMoveEvent(QDragMoveEvent* event)
{
    if (!carriesFiles(event->mimeData())) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    emit OLEDraggingOver(event->mimeData(), event->position().toPoint());
}

void ucSideBar::dropEvent(QDropEvent* event)
{
    if (!carriesFiles(event->mimeData())) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    emit OLEDrop(event->mimeData(), event->position().toPoint());
}

// A bar that is not floatable only leaves its dock while the user drags it: the main window
// unplugs it at the start of the drag and plugs it in again at the end.
void ucSideBar::onTopLevelChanged(bool floating)
{
    if (floating && !m_dockingByCode && !m_userDragging) {
        m_userDragging = true;
        emit DragModeChanged(true);
    }
}

void ucSideBar::onDockLocationChanged(Qt::DockWidgetArea area)
{
    const int side = sideOf(area);
    if (m_dockingByCode || side == 0)
        return;
    m_align = side;
    applySide();
    if (m_userDragging) {
        m_userDragging = false;
        SettingsStore::global().write(Keys::SideBar_AlignOf(m_index).in(m_formName), side);
        emit Docked(side);
        emit DragModeChanged(false);
        return;
    }
    emit Docked(side);
}

void ucSideBar::applySide()
{
    const bool vertical = Orientation() == Qt::Vertical;
    setFeatures(vertical ? DockWidgetMovable | DockWidgetVerticalTitleBar : DockWidgetMovable);
    m_title->setVertical(vertical);
    if (m_rolledUp && !isRolling()) {
        releaseExtent();
        fixExtent(m_smallWidth);
    }
    syncControls();
}

void ucSideBar::roll(bool up)
{
    if (up == m_rolledUp)
        return;
    const bool turning = isRolling();
    m_animation->stop();
    const int from = extent();
    const int slot = Orientation() == Qt::Vertical ? 0 : 1;
    if (up && !turning && from > m_smallWidth)
        m_fullExtent[slot] = from;
    const int to = up ? m_smallWidth
                      : (m_fullExtent[slot] > m_smallWidth ? m_fullExtent[slot] : naturalExtent());

    m_rolledUp = up;
    syncControls();
    emit BeginRolling(up);
    // The contents stay hidden while the size changes, so they are not laid out every frame.
    m_holder->hide();
    if (!up) {
        m_title->setStrip(false, m_smallWidth);
        m_fullExtent[slot] = to;
    }

    if (!isVisible() || !m_owner || !m_owner->isVisible() || from == to) {
        fixExtent(to);
        emit Rolling(to);
        finishRoll();
        return;
    }
    m_animation->setStartValue(from);
    m_animation->setEndValue(to);
    m_animation->start();
}

void ucSideBar::finishRoll()
{
    if (m_rolledUp) {
        fixExtent(m_smallWidth);
        m_title->setStrip(true, m_smallWidth);
        m_holder->hide();
    } else {
        releaseExtent();
        m_title->setStrip(false, m_smallWidth);
        m_holder->show();
        const int slot = Orientation() == Qt::Vertical ? 0 : 1;
        if (m_owner && m_fullExtent[slot] > 0)
            m_owner->resizeDocks({this}, {m_fullExtent[slot]},
                                 Orientation() == Qt::Vertical ? Qt::Horizontal : Qt::Vertical);
    }
    emit EndRolling(m_rolledUp);
}

int ucSideBar::extent() const
{
    return Orientation() == Qt::Vertical ? width() : height();
}

int ucSideBar::naturalExtent() const
{
    const QSize hint = m_content ? m_content->sizeHint() : QSize();
    int across = Orientation() == Qt::Vertical ? hint.width() : hint.height();
    if (across <= 0)
        across = FallbackContentExtent;
    return across + m_title->normalThickness();
}

void ucSideBar::fixExtent(int pixels)
{
    if (Orientation() == Qt::Vertical) {
        setMinimumSize(pixels, 0);
        setMaximumSize(pixels, QWIDGETSIZE_MAX);
    } else {
        setMinimumSize(0, pixels);
        setMaximumSize(QWIDGETSIZE_MAX, pixels);
    }
}

void ucSideBar::releaseExtent()
{
    setMinimumSize(0, 0);
    setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
}

void ucSideBar::syncControls()
{
    m_title->button()->setArrowType(arrowFor(m_align, m_rolledUp));
    // Pressed while rolled out; the click handler has already flipped it, this settles it.
    m_title->button()->setValue(!m_rolledUp);
    m_title->button()->setEnabled(m_enabled);
    m_actShow->setChecked(!m_rolledUp);
    m_actShow->setEnabled(m_enabled);
}
