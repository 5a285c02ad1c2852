#pragma once

#include <QCache>
#include <QFont>
#include <QImage>
#include <QList>
#include <QPixmap>
#include <QString>
#include <QUrl>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

// picFrame: the viewport onto the gallery's canvas picThumb(0). The canvas is virtual: the
// widget paints only the cells that show, at the gallery's layout positions less the scroll
// offset, so a folder of any size costs one screenful per paint. Each cell behaves as a
// graphical check box (chkThumb(i)); its check, caption and removal are plain data here.
class QMimeData;

class ThumbGrid : public QWidget
{
    Q_OBJECT

public:
    explicit ThumbGrid(QWidget* parent = nullptr);

    // Hands out the thumbnail of a cell at paint time, already fitted into the inner box in
    // device pixels with its devicePixelRatio set; a null image while it is not ready.
    void setPictureSource(std::function<QImage(int)> source);
    // The file of a cell, for dragging pictures out to a file manager; no drags without it.
    void setFileSource(std::function<QString(int)> fileOf);
    // What a drag that starts on the cell carries: every checked cell when that cell is
    // checked, else that cell alone; in the forms file managers read, as a copy.
    std::unique_ptr<QMimeData> MakeDragData(int pressedIndex) const;

    void setBox(int box);
    int box() const { return m_box; }
    void setColumns(int columns);
    int columns() const { return m_columns; }
    // A new set of cells: captions empty, nothing checked, nothing removed.
    void setCount(int count);
    int count() const { return m_count; }

    void setCaption(int index, const QString& caption);
    QString caption(int index) const;
    // chkThumb(i).Value. A removed cell cannot be checked.
    void setChecked(int index, bool checked);
    bool isChecked(int index) const;
    int checkedCount() const { return m_checkedCount; }
    // A removed cell is neither drawn nor hit, and loses its check.
    void setCellHidden(int index, bool hidden);
    bool isCellHidden(int index) const;

    // Canvas row shown at the viewport's top; driven by the host's sbSlide.
    void setScrollTop(int top);
    int scrollTop() const { return m_scrollTop; }

    // The shown cell under a point of this widget, or -1.
    int IndexAt(const QPoint& widgetPos) const;
    QRectF cellRect(int index) const;
    void updateCell(int index);
    // First and last index of the rows in view, (-1, -1) when none.
    std::pair<int, int> visibleRange() const { return m_visible; }

    // The cell the keys move from and the focus frame marks: the host's current picture.
    void setCurrent(int index);
    int current() const { return m_current; }
    // Where the keys start and the focus frame shows: the current cell, else the first cell
    // in view; -1 when no cell shows.
    int focusCell() const;

Q_SIGNALS:
    // After a left click has toggled the cell's check, as a check box's Click comes after
    // its value changed.
    void CellClicked(int index);
    // The pointer entered a cell with no button held.
    void CellHovered(int index);
    // A right click on a cell, or the menu key or Shift+F10 on the current one.
    void CellContextMenu(int index, const QPoint& globalPos);
    // A navigation key asks for the cell index to become current, with the modifiers held
    // (Shift extends the selection, Ctrl moves without changing it).
    void KeyMoved(int index, Qt::KeyboardModifiers modifiers);
    // Enter or Return on the current cell.
    void CellActivated(int index);
    // Space on the current cell: its check box turns over.
    void CellToggled(int index);
    // The wheel's turn in canvas pixels, signed as Qt's wheel deltas: positive when the wheel
    // turns away from the user, so the host subtracts it from its scroll bar's value.
    void WheelScrolled(int pixelDelta);
    void VisibleRangeChanged(int first, int last);
    void FilesDropped(const QList<QUrl>& files);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    bool isValid(int index) const { return index >= 0 && index < m_count; }
    QRect paintRect(int index) const;
    void paintCell(QPainter& painter, int index);
    void paintPicture(QPainter& painter, const QRect& cell, int index);
    void paintCaption(QPainter& painter, const QRect& cell, int index);
    void paintFocus(QPainter& painter, int index);
    QPixmap makeCaptionStrip(const QString& caption, qreal dpr) const;

    // The frame of a cell in one of its states, drawn by the style once and then blitted:
    // the style's button panel costs far more than copying a pixmap, cell after cell.
    struct CellLook
    {
        QPixmap panel;   // under the picture
        QPixmap overlay; // over it: the selection tint or the hot frame
    };
    const CellLook& lookFor(bool checked, bool hot, qreal dpr);
    CellLook makeLook(bool checked, bool hot, qreal dpr) const;
    void setHot(int index);
    void refreshVisibleRange();
    void updateCaptionFont();

    void startDrag(int index);

    std::function<QImage(int)> m_source;
    std::function<QString(int)> m_fileOf;
    QPoint m_pressPos;
    int m_box = 40;
    int m_columns = 1;
    int m_count = 0;
    int m_scrollTop = 0;
    QList<QString> m_captions;
    std::vector<bool> m_checked;
    std::vector<bool> m_hidden;
    int m_checkedCount = 0;
    int m_hot = -1;
    int m_pressed = -1;
    int m_current = -1;
    std::pair<int, int> m_visible{-1, -1};
    QFont m_captionFont;
    std::array<CellLook, 4> m_looks;
    qreal m_looksDpr = 0; // 0 while the looks need drawing again
    // Caption strips of recently painted cells, drawn once: shaping text and clipping it to
    // the cell on every paint would cost more than all the rest of a cell. Costed in bytes.
    QCache<int, QPixmap> m_captionStrips{8 * 1024 * 1024};
};
