#pragma once

#include <QDockWidget>
#include <QPointer>

class QAction;
class QMainWindow;
class QMimeData;
class QVariantAnimation;
class ucSideBarTitle;

// A panel docked on one side of its window (1 top, 2 bottom, 3 left, 4 right) that the user
// can roll up to a narrow strip and out again with the toggle button in its title bar, a
// click on the strip or its context menu. It cannot be closed or left floating: a drag that
// does not end on a side puts it back where it was.
//
// The on/off state (on = rolled out) lives in the owner's settings section under
// "ucSidebar|" + Identifier() and is read when the bar is made; the side the user drags it
// to is written under "SideBar_Align_" + Index().
class ucSideBar : public QDockWidget
{
    Q_OBJECT
    Q_PROPERTY(int Align READ Align WRITE Dock)
    Q_PROPERTY(Qt::Orientation Orientation READ Orientation)
    Q_PROPERTY(int Roll_SmallWidth READ Roll_SmallWidth WRITE setRoll_SmallWidth)
    Q_PROPERTY(bool ManualHide READ ManualHide WRITE setManualHide)
    Q_PROPERTY(bool Enabled READ Enabled WRITE setEnabledState)
    Q_PROPERTY(qulonglong hwnd READ hwnd)

public:
    enum Side
    {
        Top = 1,
        Bottom = 2,
        Left = 3,
        Right = 4
    };

    // index: the bar's number in its window (0..2); formName: the settings section of the
    // window that owns it. The bar starts docked on the left.
    ucSideBar(int index, const QString& formName, QMainWindow* owner);
    ~ucSideBar() override;

    // The bar owns content; content set earlier is deleted.
    void setContentWidget(QWidget* content);
    QWidget* contentWidget() const { return m_content; }

    int Index() const { return m_index; }
    QString Identifier() const;
    QString FormName() const { return m_formName; }

    int Align() const { return m_align; }
    // Docks the bar at that side of its owner; values outside 1..4 are ignored.
    void Dock(int side);
    // Vertical when docked left or right.
    Qt::Orientation Orientation() const;

    // Thickness of the strip left when rolled up, in pixels.
    int Roll_SmallWidth() const { return m_smallWidth; }
    void setRoll_SmallWidth(int pixels);

    // Set when the user rolls the bar up and cleared when the user rolls it out. While it is
    // set, RollOut() and ToggleRoll() from code leave the bar rolled up.
    bool ManualHide() const { return m_manualHide; }
    void setManualHide(bool manual) { m_manualHide = manual; }

    // Disabling greys the contents and the toggle; the bar can still be moved.
    bool Enabled() const { return m_enabled; }
    void setEnabledState(bool enabled);

    // The bar's own native window id; the first call makes the bar a native widget.
    qulonglong hwnd() const { return qulonglong(winId()); }

    // True from the moment a roll-up starts until a roll-out starts.
    bool isRolledUp() const { return m_rolledUp; }
    bool isRolling() const;
    // Animated (about 150 ms) while the bar is on screen, immediate otherwise. A roll asked
    // for while one is under way turns it round.
    void RollUp();
    void RollOut();
    void ToggleRoll();

    // A tooltip for the whole bar: title in bold, then text; "\r" in text breaks the line.
    void setHint(const QString& title, const QString& text);

    // What a click on the toggle button, the strip or the context menu's entry does: rolls
    // the bar the other way and writes the new on/off state. Ignored while disabled.
    void UserToggle();

Q_SIGNALS:
    void BeginRolling(bool rollingUp);
    void Rolling(int currentSize);
    void EndRolling(bool rolledUp);
    void DragModeChanged(bool dragging);
    void OLEDraggingOver(const QMimeData* data, QPoint pos);
    void OLEDrop(const QMimeData* data, QPoint pos);
    void ucMouseMove(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers, QPoint pos);
    void ucMouseDown(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers, QPoint pos);
    void Docked(int side);

protected:
    bool event(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void onTopLevelChanged(bool floating);
    void onDockLocationChanged(Qt::DockWidgetArea area);
    void applySide();
    void roll(bool up);
    void finishRoll();
    // The size across the bar: its width when docked left or right, else its height.
    int extent() const;
    int naturalExtent() const;
    void fixExtent(int pixels);
    void releaseExtent();
    void syncControls();

    QMainWindow* m_owner;
    const int m_index;
    const QString m_formName;
    ucSideBarTitle* m_title = nullptr;
    QWidget* m_body = nullptr;
    QWidget* m_holder = nullptr;
    QPointer<QWidget> m_content;
    QVariantAnimation* m_animation = nullptr;
    QAction* m_actShow = nullptr;

    int m_align = Left;
    int m_smallWidth = 10;
    // The rolled-out size, one for each orientation, 0 until known.
    int m_fullExtent[2] = {0, 0};
    bool m_rolledUp = false;
    bool m_manualHide = false;
    bool m_enabled = true;
    bool m_dockingByCode = false;
    bool m_userDragging = false;
};
