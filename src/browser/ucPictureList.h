#pragma once

#include "browser/PictureListRules.h"

#include <QStackedWidget>
#include <QTimer>

#include <array>
#include <functional>

class QAbstractItemView;
class QDropEvent;
class QListView;
class QStandardItem;
class QStandardItemModel;
class QTreeView;

// The picture list of the browser and the slideshow builder: one model of six columns shown
// as large icons or a list by a QListView, or as details by a QTreeView. Both views share
// the model and one selection, so switching views keeps both.
//
// The control knows nothing about files: the window fills it with the texts of each row and
// hears about clicks, label edits and keys through signals.
class ucPictureList : public QStackedWidget
{
    Q_OBJECT

public:
    // A row whose file was cut is drawn greyed until it is pasted.
    static constexpr int GhostRole = Qt::UserRole + 1;

    explicit ucPictureList(QWidget* parent = nullptr);

    QStandardItemModel* model() const { return m_model; }
    QListView* listView() const { return m_list; }
    QTreeView* treeView() const { return m_tree; }
    // The view on screen.
    QAbstractItemView* view() const;

    PictureListRules::ListMode mode() const { return m_mode; }
    void setMode(PictureListRules::ListMode mode);

    // Rows --------------------------------------------------------------------------------
    int count() const;
    void clear();
    // Appends a row; new rows are not sorted in until resort().
    int addRow(const std::array<QString, PictureListRules::ColumnCount>& texts);
    void setRowTexts(int row, const std::array<QString, PictureListRules::ColumnCount>& texts);
    void removeRow(int row);
    QString text(int row, int column = PictureListRules::NameColumn) const;
    void setText(int row, const QString& text);
    // The row whose name is exactly name, or -1.
    int rowOf(const QString& name) const;

    // New rows carry a check box, unticked.
    void setCheckable(bool checkable) { m_checkable = checkable; }
    bool isCheckable() const { return m_checkable; }
    bool isChecked(int row) const;
    void setChecked(int row, bool checked);

    // The user may drag rows onto another row; the drop is reported by RowsDropped and the
    // move is left to the window, which knows what the order means.
    void setReorderable(bool reorderable);
    bool isReorderable() const { return m_reorderable; }

    // Unless the list is reorderable, its selected rows can be dragged out to a file manager
    // or another program as copies of the files that fileOf(row) names.
    void setFileSource(std::function<QString(int row)> fileOf);

    bool isGhosted(int row) const;
    void setGhosted(int row, bool ghosted);

    // Sorting -----------------------------------------------------------------------------
    PictureListRules::SortState sortState() const { return m_sort; }
    // Takes the state and sorts by it when it is on.
    void setSortState(const PictureListRules::SortState& state);
    // Sorts again by the present state, for rows added or renamed since.
    void resort();

    // Selection ---------------------------------------------------------------------------
    int currentRow() const;
    // The selected rows, top to bottom.
    QList<int> selectedRows() const;
    // Makes row current and selected (alone, or added to the selection), scrolled into view.
    void selectRow(int row, bool alone);
    void clearSelection();
    void setMultiSelect(bool multiple);
    bool isMultiSelect() const;

    // Starts editing the label of row.
    void editRow(int row);
    bool isEditing() const;

    // Widths of the detail columns 0..3, in pixels.
    int columnWidth(int column) const;
    void setColumnWidth(int column, int pixels);

    // Where the icon of row is drawn in the shown view's viewport; empty when it is not.
    QRect iconRect(int row) const;

    // Pointing at a row for a moment selects it.
    void setHoverSelect(bool on);
    bool hoverSelect() const { return m_hoverSelect; }

    // Called when the user finishes editing a label with a text that differs from the old
    // one. The row keeps its text unless the handler changes it.
    void setRenameHandler(std::function<void(int row, const QString& typed)> handler);

Q_SIGNALS:
    // Another row became the current, selected one, by the user or by the program.
    void CurrentRowChanged(int row);
    void RowClicked(int row);
    // A left click that pressed and released on a row's icon.
    void IconClicked(int row);
    void RowDoubleClicked(int row);
    // A header click, 1-based as the user counts columns.
    void ColumnClicked(int column);
    // The user changed the width of a detail column.
    void ColumnsResized();
    // Enter or Delete pressed on the list (not while a label is edited).
    void KeyPressed(int key);
    // The picture menu is wanted for row: a right click on it, or the menu key on the
    // current, selected row; at is where on the screen.
    void ContextMenuRequested(int row, const QPoint& at);
    // Rows of this list were dropped on targetRow, or below the last row (-1). The dragged
    // rows are the selected ones.
    void RowsDropped(int targetRow);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QStandardItem* item(int row, int column = PictureListRules::NameColumn) const;
    int rowAt(QAbstractItemView* view, const QPoint& pos) const;
    bool onIcon(QAbstractItemView* view, const QPoint& pos) const;
    void hoverTimeout();
    void showSortIndicator();
    void applyReorderable();
    bool ownDrop(const QDropEvent* drop) const;

    QStandardItemModel* m_model;
    QListView* m_list;
    QTreeView* m_tree;
    PictureListRules::ListMode m_mode = PictureListRules::ReportView;
    PictureListRules::SortState m_sort;
    bool m_checkable = false;
    bool m_reorderable = false;
    std::function<QString(int)> m_fileOf;
    bool m_hoverSelect = false;
    bool m_settingWidths = false;
    int m_pressedRow = -1;
    bool m_pressedOnIcon = false;
    int m_hoverRow = -1;
    QTimer tmrHover;
};
