#include "browser/ucPictureList.h"

#include "browser/DesktopClipboard.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QListView>
#include <QMetaProperty>
#include <QMimeData>
#include <QMouseEvent>
#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <QTreeView>

using namespace PictureListRules;

namespace {

// Every cell sorts by its text, without regard to case and whatever the locale.
class ListItem : public QStandardItem
{
public:
    using QStandardItem::QStandardItem;
    bool operator<(const QStandardItem& other) const override
    {
        return TextLess(text(), other.text());
    }
    QStandardItem* clone() const override { return new ListItem(*this); }
};

// The views with the two things the control needs of their protected side: the style
// option their items are drawn with, and whether a label is being edited.
template <class Base> class PictureView : public Base
{
public:
    using Base::Base;
    QStyleOptionViewItem itemOption() const
    {
        QStyleOptionViewItem option;
        this->initViewItemOption(&option);
        return option;
    }
    bool editing() const { return this->state() == QAbstractItemView::EditingState; }
};

class ListDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    std::function<void(int, const QString&)> rename;

    // Where the item's icon is drawn within option.rect.
    QRect iconRect(QStyleOptionViewItem option, const QModelIndex& index,
                   const QWidget* widget) const
    {
        initStyleOption(&option, index);
        if (!(option.features & QStyleOptionViewItem::HasDecoration))
            return {};
        const QStyle* style = widget ? widget->style() : QApplication::style();
        return style->subElementRect(QStyle::SE_ItemViewItemDecoration, &option, widget);
    }

    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override
    {
        if (index.column() != NameColumn) {
            QStyledItemDelegate::setModelData(editor, model, index);
            return;
        }
        const QMetaProperty property = editor->metaObject()->userProperty();
        const QString typed = property.read(editor).toString();
        if (typed != index.data().toString() && rename)
            rename(index.row(), typed);
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.siblingAtColumn(NameColumn).data(ucPictureList::GhostRole).toBool())
            option->state &= ~QStyle::State_Enabled;
    }
};

using IconListView = PictureView<QListView>;
using DetailsView = PictureView<QTreeView>;

const QIcon& pictureIcon()
{
    static const QIcon icon(QStringLiteral(":/icons/picture-file.svg"));
    return icon;
}

// How long the pointer rests on a row before hover selection takes it.
constexpr int HoverMilliseconds = 400;

// The rows' model. Rows dragged out carry the files they stand for, and only as copies: a
// move would have the file manager take the files away and the view drop their rows.
class PictureModel : public QStandardItemModel
{
public:
    using QStandardItemModel::QStandardItemModel;

    // Null while rows only move within the list.
    std::function<QString(int)> fileOf;

    QStringList mimeTypes() const override
    {
        return fileOf ? QStringList{QStringLiteral("text/uri-list")} : QStandardItemModel::mimeTypes();
    }
    Qt::DropActions supportedDragActions() const override
    {
        return fileOf ? Qt::CopyAction : QStandardItemModel::supportedDragActions();
    }
    QMimeData* mimeData(const QModelIndexList& indexes) const override
    {
        if (!fileOf)
            return QStandardItemModel::mimeData(indexes);
        QStringList paths;
        QList<int> rows;
        for (const QModelIndex& index : indexes)
            if (!rows.contains(index.row()))
                rows.append(index.row());
        std::sort(rows.begin(), rows.end());
        for (const int row : rows)
            if (const QString path = fileOf(row); !path.isEmpty())
                paths << path;
        return paths.isEmpty() ? nullptr : DesktopClipboard::Pack(paths, false).release();
    }
};

} // namespace

ucPictureList::ucPictureList(QWidget* parent)
    : QStackedWidget(parent), m_model(new PictureModel(0, ColumnCount, this)),
      m_list(new IconListView(this)), m_tree(new DetailsView(this))
{
    m_model->setItemPrototype(new ListItem);
    m_model->setHorizontalHeaderLabels(Captions());

    for (QAbstractItemView* view :
         {static_cast<QAbstractItemView*>(m_list), static_cast<QAbstractItemView*>(m_tree)}) {
        view->setModel(m_model);
        // A delegate each: an editor's commit goes to every view its delegate serves.
        view->setItemDelegate(new ListDelegate(view));
        view->setEditTriggers(QAbstractItemView::EditKeyPressed);
        view->setSelectionMode(QAbstractItemView::ExtendedSelection);
        view->setSelectionBehavior(QAbstractItemView::SelectRows);
        view->setMouseTracking(true);
        view->setToolTip(QStringLiteral("Click icon to open picture seperately"));
        view->installEventFilter(this);
        view->viewport()->installEventFilter(this);
        connect(view, &QAbstractItemView::clicked, this,
                [this](const QModelIndex& index) { Q_EMIT RowClicked(index.row()); });
        connect(view, &QAbstractItemView::entered, this, [this](const QModelIndex& index) {
            m_hoverRow = index.row();
            if (m_hoverSelect)
                tmrHover.start();
        });
        addWidget(view);
    }
    // One selection for both views, so a change of view keeps it.
    QItemSelectionModel* own = m_tree->selectionModel();
    m_tree->setSelectionModel(m_list->selectionModel());
    delete own;
    // A row counts as chosen when it is current and selected, whichever of the two comes
    // last: a click makes the row current before selecting it, the keys select it first, and
    // the focus coming in makes the first row current without selecting it.
    QItemSelectionModel* selection = m_list->selectionModel();
    connect(selection, &QItemSelectionModel::currentChanged, this,
            [this, selection](const QModelIndex& current) {
                if (current.isValid() && selection->isSelected(current))
                    Q_EMIT CurrentRowChanged(current.row());
            });
    connect(selection, &QItemSelectionModel::selectionChanged, this,
            [this, selection](const QItemSelection& selected) {
                const QModelIndex current = selection->currentIndex();
                if (current.isValid() && selected.contains(current))
                    Q_EMIT CurrentRowChanged(current.row());
            });

    m_list->setLayoutMode(QListView::Batched);
    m_list->setBatchSize(200);
    m_list->setMovement(QListView::Static);
    m_list->setResizeMode(QListView::Adjust);

    m_tree->setRootIsDecorated(false);
    m_tree->setItemsExpandable(false);
    m_tree->setUniformRowHeights(true);
    m_tree->setAllColumnsShowFocus(true);
    QHeaderView* header = m_tree->header();
    header->setStretchLastSection(false);
    header->setSectionsClickable(true);
    header->setSectionsMovable(false);
    // The key columns are there to sort by, not to read.
    m_tree->setColumnHidden(SizeKeyColumn, true);
    m_tree->setColumnHidden(DateKeyColumn, true);
    connect(header, &QHeaderView::sectionClicked, this,
            [this](int logical) { Q_EMIT ColumnClicked(logical + 1); });
    connect(header, &QHeaderView::sectionResized, this, [this](int logical) {
        if (!m_settingWidths && logical < SizeKeyColumn)
            Q_EMIT ColumnsResized();
    });

    tmrHover.setSingleShot(true);
    tmrHover.setInterval(HoverMilliseconds);
    connect(&tmrHover, &QTimer::timeout, this, &ucPictureList::hoverTimeout);

    setMode(ReportView);
}

QAbstractItemView* ucPictureList::view() const
{
    return m_mode == ReportView ? static_cast<QAbstractItemView*>(m_tree)
                                : static_cast<QAbstractItemView*>(m_list);
}

void ucPictureList::setMode(ListMode mode)
{
    m_mode = mode;
    if (mode == ReportView) {
        setCurrentWidget(m_tree);
    } else {
        const bool icons = mode == LargeIconsView;
        m_list->setViewMode(icons ? QListView::IconMode : QListView::ListMode);
        m_list->setFlow(icons ? QListView::LeftToRight : QListView::TopToBottom);
        m_list->setWrapping(true);
        m_list->setWordWrap(icons);
        m_list->setIconSize(icons ? QSize(32, 32) : QSize(16, 16));
        m_list->setGridSize(icons ? QSize(100, 72) : QSize());
        m_list->setSpacing(icons ? 0 : 2);
        m_list->setMovement(QListView::Static);
        m_list->setResizeMode(QListView::Adjust);
        // A static list view refuses drags; a reorderable list takes them back.
        applyReorderable();
        setCurrentWidget(m_list);
    }
    const QModelIndex current = m_list->selectionModel()->currentIndex();
    if (current.isValid())
        view()->scrollTo(current);
}

// Rows ------------------------------------------------------------------------------------

QStandardItem* ucPictureList::item(int row, int column) const
{
    return m_model->item(row, column);
}

int ucPictureList::count() const
{
    return m_model->rowCount();
}

void ucPictureList::clear()
{
    tmrHover.stop();
    m_model->removeRows(0, m_model->rowCount());
}

int ucPictureList::addRow(const std::array<QString, ColumnCount>& texts)
{
    QList<QStandardItem*> cells;
    cells.reserve(ColumnCount);
    for (const QString& text : texts) {
        auto* cell = new ListItem(text);
        cell->setEditable(false);
        cells.append(cell);
    }
    QStandardItem* name = cells[NameColumn];
    name->setIcon(pictureIcon());
    name->setEditable(true);
    name->setToolTip(texts[TypeColumn]);
    if (m_checkable) {
        name->setCheckable(true);
        name->setCheckState(Qt::Unchecked);
    }
    cells[SizeColumn]->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_model->appendRow(cells);
    return m_model->rowCount() - 1;
}

void ucPictureList::setRowTexts(int row, const std::array<QString, ColumnCount>& texts)
{
    for (int column = 0; column < ColumnCount; ++column)
        if (QStandardItem* cell = item(row, column))
            cell->setText(texts[size_t(column)]);
    if (QStandardItem* name = item(row))
        name->setToolTip(texts[TypeColumn]);
}

void ucPictureList::removeRow(int row)
{
    m_model->removeRow(row);
}

QString ucPictureList::text(int row, int column) const
{
    const QStandardItem* cell = item(row, column);
    return cell ? cell->text() : QString();
}

void ucPictureList::setText(int row, const QString& text)
{
    if (QStandardItem* cell = item(row))
        cell->setText(text);
}

int ucPictureList::rowOf(const QString& name) const
{
    for (int row = 0; row < count(); ++row)
        if (item(row)->text() == name)
            return row;
    return -1;
}

bool ucPictureList::isChecked(int row) const
{
    const QStandardItem* cell = item(row);
    return cell && cell->checkState() == Qt::Checked;
}

void ucPictureList::setChecked(int row, bool checked)
{
    if (QStandardItem* cell = item(row))
        cell->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
}

void ucPictureList::setReorderable(bool reorderable)
{
    m_reorderable = reorderable;
    applyReorderable();
}

void ucPictureList::setFileSource(std::function<QString(int row)> fileOf)
{
    m_fileOf = std::move(fileOf);
    applyReorderable();
}

void ucPictureList::applyReorderable()
{
    const bool dragsOut = !m_reorderable && m_fileOf;
    static_cast<PictureModel*>(m_model)->fileOf = dragsOut ? m_fileOf : nullptr;
    for (QAbstractItemView* view :
         {static_cast<QAbstractItemView*>(m_list), static_cast<QAbstractItemView*>(m_tree)}) {
        view->setDragDropMode(m_reorderable ? QAbstractItemView::InternalMove
                              : dragsOut    ? QAbstractItemView::DragOnly
                                            : QAbstractItemView::NoDragDrop);
        view->setDragEnabled(m_reorderable || dragsOut);
        view->viewport()->setAcceptDrops(m_reorderable);
        view->setDropIndicatorShown(m_reorderable);
        view->setDefaultDropAction(m_reorderable ? Qt::MoveAction : Qt::CopyAction);
    }
}

bool ucPictureList::ownDrop(const QDropEvent* drop) const
{
    // Only rows dragged within this list: a drag from another program has no source here,
    // and one from another list of this program carries that list's rows.
    const QObject* source = drop->source();
    return (source == m_list || source == m_tree) && drop->mimeData() &&
           drop->mimeData()->hasFormat(m_model->mimeTypes().value(0));
}

bool ucPictureList::isGhosted(int row) const
{
    const QStandardItem* cell = item(row);
    return cell && cell->data(GhostRole).toBool();
}

void ucPictureList::setGhosted(int row, bool ghosted)
{
    if (QStandardItem* cell = item(row))
        cell->setData(ghosted ? QVariant(true) : QVariant(), GhostRole);
}

// Sorting ---------------------------------------------------------------------------------

void ucPictureList::setSortState(const SortState& state)
{
    m_sort = state;
    // An order the user made by hand shows no sort arrow.
    if (!m_sort.on)
        showSortIndicator();
    resort();
}

void ucPictureList::resort()
{
    if (!m_sort.on)
        return;
    m_model->sort(m_sort.key, m_sort.order);
    showSortIndicator();
    const QModelIndex current = m_list->selectionModel()->currentIndex();
    if (current.isValid())
        view()->scrollTo(current);
}

void ucPictureList::showSortIndicator()
{
    QHeaderView* header = m_tree->header();
    header->setSortIndicatorShown(m_sort.on);
    header->setSortIndicator(HeaderColumnFor(m_sort.key), m_sort.order);
}

// Selection -------------------------------------------------------------------------------

int ucPictureList::currentRow() const
{
    const QModelIndex current = m_list->selectionModel()->currentIndex();
    return current.isValid() ? current.row() : -1;
}

QList<int> ucPictureList::selectedRows() const
{
    QList<int> rows;
    for (const QModelIndex& index : m_list->selectionModel()->selectedRows())
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void ucPictureList::selectRow(int row, bool alone)
{
    const QModelIndex index = m_model->index(row, NameColumn);
    if (!index.isValid())
        return;
    const auto how = (alone ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::Select) |
                     QItemSelectionModel::Rows;
    m_list->selectionModel()->setCurrentIndex(index, how);
    view()->scrollTo(index);
}

void ucPictureList::clearSelection()
{
    m_list->selectionModel()->clear();
}

void ucPictureList::setMultiSelect(bool multiple)
{
    const auto mode =
        multiple ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection;
    m_list->setSelectionMode(mode);
    m_tree->setSelectionMode(mode);
}

bool ucPictureList::isMultiSelect() const
{
    return m_list->selectionMode() == QAbstractItemView::ExtendedSelection;
}

void ucPictureList::editRow(int row)
{
    const QModelIndex index = m_model->index(row, NameColumn);
    if (index.isValid())
        view()->edit(index);
}

bool ucPictureList::isEditing() const
{
    return static_cast<IconListView*>(m_list)->editing() ||
           static_cast<DetailsView*>(m_tree)->editing();
}

int ucPictureList::columnWidth(int column) const
{
    return m_tree->columnWidth(column);
}

void ucPictureList::setColumnWidth(int column, int pixels)
{
    m_settingWidths = true;
    m_tree->setColumnWidth(column, pixels);
    m_settingWidths = false;
}

void ucPictureList::setHoverSelect(bool on)
{
    m_hoverSelect = on;
    if (!on)
        tmrHover.stop();
}

void ucPictureList::setRenameHandler(std::function<void(int, const QString&)> handler)
{
    static_cast<ListDelegate*>(m_list->itemDelegate())->rename = handler;
    static_cast<ListDelegate*>(m_tree->itemDelegate())->rename = std::move(handler);
}

// Mouse and keys --------------------------------------------------------------------------

int ucPictureList::rowAt(QAbstractItemView* view, const QPoint& pos) const
{
    const QModelIndex index = view->indexAt(pos);
    return index.isValid() ? index.row() : -1;
}

bool ucPictureList::onIcon(QAbstractItemView* view, const QPoint& pos) const
{
    const QModelIndex index = view->indexAt(pos);
    if (!index.isValid() || index.column() != NameColumn)
        return false;
    QStyleOptionViewItem option = view == m_tree ? static_cast<DetailsView*>(m_tree)->itemOption()
                                                 : static_cast<IconListView*>(m_list)->itemOption();
    option.rect = view->visualRect(index);
    const auto* delegate = static_cast<ListDelegate*>(view->itemDelegate());
    return delegate->iconRect(option, index, view).contains(pos);
}

QRect ucPictureList::iconRect(int row) const
{
    QAbstractItemView* shown = view();
    const QModelIndex index = m_model->index(row, NameColumn);
    if (!index.isValid())
        return {};
    QStyleOptionViewItem option = shown == m_tree
                                      ? static_cast<DetailsView*>(m_tree)->itemOption()
                                      : static_cast<IconListView*>(m_list)->itemOption();
    option.rect = shown->visualRect(index);
    return static_cast<ListDelegate*>(shown->itemDelegate())->iconRect(option, index, shown);
}

void ucPictureList::hoverTimeout()
{
    QAbstractItemView* shown = view();
    const QPoint pos = shown->viewport()->mapFromGlobal(QCursor::pos());
    const int row = rowAt(shown, pos);
    if (!m_hoverSelect || row < 0 || row != m_hoverRow || row == currentRow() || isEditing())
        return;
    if (QGuiApplication::mouseButtons() != Qt::NoButton ||
        QGuiApplication::keyboardModifiers() != Qt::NoModifier)
        return;
    selectRow(row, true);
}

bool ucPictureList::eventFilter(QObject* watched, QEvent* event)
{
    QAbstractItemView* owner = nullptr;
    bool onViewport = false;
    for (QAbstractItemView* view :
         {static_cast<QAbstractItemView*>(m_list), static_cast<QAbstractItemView*>(m_tree)}) {
        if (watched == view || watched == view->viewport()) {
            owner = view;
            onViewport = watched == view->viewport();
        }
    }
    if (!owner)
        return QStackedWidget::eventFilter(watched, event);

    switch (event->type()) {
    case QEvent::ShortcutOverride: {
        // Delete is the list's, with Shift too: the main window's keys must not take it.
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (!onViewport && key == Qt::Key_Delete && !isEditing() && owner->hasFocus())
            event->accept();
        break;
    }
    case QEvent::ContextMenu: {
        // The mouse asks over a row of the viewport, the menu key on the current row.
        const auto* request = static_cast<QContextMenuEvent*>(event);
        const bool keyboard = request->reason() != QContextMenuEvent::Mouse;
        if (onViewport == keyboard)
            break;
        const QModelIndex current = owner->currentIndex();
        const bool currentChosen = current.isValid() && owner->selectionModel()->isSelected(current);
        const int row = keyboard ? (currentChosen ? current.row() : -1) : rowAt(owner, request->pos());
        if (row < 0)
            break;
        const QPoint at = keyboard
                              ? owner->viewport()->mapToGlobal(owner->visualRect(current).center())
                              : request->globalPos();
        Q_EMIT ContextMenuRequested(row, at);
        return true;
    }
    case QEvent::KeyPress: {
        const auto* press = static_cast<QKeyEvent*>(event);
        const int key = press->key();
        // Shift+F10 is the menu key of keyboards without one.
        const bool shiftF10 = key == Qt::Key_F10 && press->modifiers() == Qt::ShiftModifier;
        if (!onViewport && shiftF10 && !isEditing()) {
            QContextMenuEvent request(QContextMenuEvent::Keyboard, QPoint(),
                                      owner->mapToGlobal(QPoint()));
            QCoreApplication::sendEvent(owner, &request);
            return true;
        }
        const bool wanted = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Delete;
        // Keys an open label editor passes on are the editor's, not the list's.
        if (!onViewport && wanted && !isEditing() && owner->hasFocus()) {
            Q_EMIT KeyPressed(key);
            return true;
        }
        break;
    }
    case QEvent::MouseButtonPress:
        if (onViewport) {
            const QPoint pos = static_cast<QMouseEvent*>(event)->position().toPoint();
            m_pressedRow = rowAt(owner, pos);
            m_pressedOnIcon = onIcon(owner, pos);
        }
        break;
    case QEvent::MouseButtonRelease:
        if (onViewport) {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            const QPoint pos = mouse->position().toPoint();
            const int row = rowAt(owner, pos);
            if (mouse->button() == Qt::LeftButton && mouse->modifiers() == Qt::NoModifier &&
                m_pressedOnIcon && row >= 0 && row == m_pressedRow && onIcon(owner, pos))
                Q_EMIT IconClicked(row);
            m_pressedRow = -1;
            m_pressedOnIcon = false;
        }
        break;
    case QEvent::MouseButtonDblClick:
        if (onViewport) {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            const int row = rowAt(owner, mouse->position().toPoint());
            if (mouse->button() == Qt::LeftButton && row >= 0)
                Q_EMIT RowDoubleClicked(row);
        }
        break;
    case QEvent::Leave:
        if (onViewport)
            tmrHover.stop();
        break;
    case QEvent::Drop:
        if (onViewport && m_reorderable) {
            auto* drop = static_cast<QDropEvent*>(event);
            if (!ownDrop(drop))
                break;
            const int target = rowAt(owner, drop->position().toPoint());
            // The rows stay where they are until the window moves them: a drop that reports
            // a move would have the dragging view remove them.
            drop->setDropAction(Qt::IgnoreAction);
            drop->accept();
            // The view never hears of the drop; leaving ends its drag state and indicator.
            QDragLeaveEvent leave;
            QCoreApplication::sendEvent(owner->viewport(), &leave);
            Q_EMIT RowsDropped(target);
            return true;
        }
        break;
    default:
        break;
    }
    return QStackedWidget::eventFilter(watched, event);
}
