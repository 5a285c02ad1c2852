#include "browser/PictureListWindow.h"

#include "app/SettingsStore.h"
#include "browser/ucPictureList.h"
#include "common/AppGlobals.h"
#include "common/Formats.h"
#include "common/ucFolders.h"
#include "common/ucTxtAddress.h"
#include "common/Utilities.h"
#include "controls/ucSideBar.h"
#include "gallery/FilesFound.h"
#include "gallery/PictureMenu.h"
#include "gallery/PictureScan.h"
#include "gallery/ucCoolProg.h"
#include "viewing/PictureOpener.h"
#include "viewing/PreviewPane.h"
#include "viewing/ucImgPreview.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QComboBox>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLabel>
#include <QMdiSubWindow>
#include <QScopedValueRollback>
#include <QScopeGuard>
#include <QScrollBar>
#include <QSplitter>
#include <QStandardItemModel>
#include <QStorageInfo>
#include <QStyle>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

using namespace PictureListRules;

namespace {

SettingsStore& settings()
{
    return SettingsStore::global();
}

// The hourglass until the scope ends.
auto waitCursor()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    return qScopeGuard([] { QApplication::restoreOverrideCursor(); });
}

constexpr int DefaultSplitterTwips = 2340;
// The widths the detail columns start with, in twips.
constexpr std::array<int, 4> DesignWidths = {2700, 1200, 1050, 2550};

QString withoutTrailingSeparator(QString path)
{
    if (path.size() > 1 && path.endsWith(u'/') && !path.endsWith(QLatin1String(":/")))
        path.chop(1);
    return path;
}

QString withTrailingSeparator(QString path)
{
    if (!path.endsWith(u'/'))
        path += u'/';
    return path;
}

} // namespace

PictureListWindow::PictureListWindow(const Setup& setup, QWidget* parent)
    : QMainWindow(parent), m_setup(setup)
{
    setObjectName(setup.section);
    setWindowTitle(setup.title);
    buildWindow();
    buildToolbar();
    buildSideBar();
}

PictureListWindow::~PictureListWindow() = default;

void PictureListWindow::buildWindow()
{
    m_list = new ucPictureList(this);
    m_list->setObjectName(QStringLiteral("lv") + m_setup.stem);
    m_list->setCheckable(m_setup.checkBoxes);
    m_list->setFileSource([this](int row) { return PathOf(row); });
    setCentralWidget(m_list);

    connect(m_list, &ucPictureList::CurrentRowChanged, this, &PictureListWindow::selectionChanged);
    connect(m_list, &ucPictureList::RowClicked, this, &PictureListWindow::selectionChanged);
    connect(m_list, &ucPictureList::IconClicked, this, &PictureListWindow::OpenRow);
    connect(m_list, &ucPictureList::RowDoubleClicked, this,
            [this](int row) { listDoubleClicked(row); });
    connect(m_list, &ucPictureList::ColumnClicked, this, &PictureListWindow::columnClicked);
    connect(m_list, &ucPictureList::ColumnsResized, this, &PictureListWindow::checkColumnWidths);
    connect(m_list, &ucPictureList::KeyPressed, this, &PictureListWindow::keyPressed);
    // The picture menu every picture pane shares, for the mouse and the menu key alike.
    connect(m_list, &ucPictureList::ContextMenuRequested, this,
            [](int, const QPoint& at) { PictureMenu::ShowAt(at); });

    m_addressBar = new QToolBar(QStringLiteral("Address"), this);
    m_addressBar->setObjectName(QStringLiteral("tlbAddress"));
    m_addressBar->setMovable(false);
    m_address = new ucTxtAddress(m_setup.section, m_addressBar);
    m_address->setObjectName(QStringLiteral("ucTxtAddress"));
    m_address->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_folders = new ucFolders(m_addressBar);
    m_folders->setObjectName(QStringLiteral("ucFolders"));
    m_addressBar->addWidget(m_address);
    m_addressBar->addWidget(m_folders);
    connect(m_folders, &ucFolders::FolderChanged, m_address, &ucTxtAddress::setAddress);
    connect(m_address, &ucTxtAddress::NewAddress, this, &PictureListWindow::newAddress);
}

void PictureListWindow::buildToolbar()
{
    m_toolbar = new QToolBar(m_setup.title, this);
    m_toolbar->setObjectName(QStringLiteral("tlb") + m_setup.stem);
    m_toolbar->setMovable(false);
    addToolBar(Qt::TopToolBarArea, m_toolbar);
    addToolBarBreak();
    addToolBar(Qt::TopToolBarArea, m_addressBar);

    // The buttons run large icons, details, list; their shortcut digits follow the order
    // large icons, list, details.
    const struct
    {
        const char* text;
        const char* icon;
        Qt::Key digit;
    } buttons[] = {
        {"Large Icons (Ctrl+Shift+1)", ":/icons/view-large.svg", Qt::Key_1},
        {"Details (Ctrl+Shift+3)", ":/icons/view-details.svg", Qt::Key_3},
        {"List (Ctrl+Shift+2)", ":/icons/view-list.svg", Qt::Key_2},
    };
    auto* group = new QActionGroup(this);
    for (int i = 0; i < 3; ++i) {
        QAction* button = m_toolbar->addAction(QIcon(QString::fromLatin1(buttons[i].icon)),
                                               QString::fromLatin1(buttons[i].text));
        button->setObjectName(QStringLiteral("%1(%2)").arg(m_toolbar->objectName()).arg(i + 1));
        button->setCheckable(true);
        button->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | buttons[i].digit));
        button->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        // The window holds the shortcut too, so it works wherever the focus is in it.
        addAction(button);
        group->addAction(button);
        m_viewButtons[size_t(i)] = button;
        connect(button, &QAction::triggered, this, [this, i] {
            int n = i + 1;
            ViewType(n);
        });
    }
    m_toolbar->addSeparator();
    QAction* refresh = m_toolbar->addAction(QIcon(QStringLiteral(":/icons/refresh.svg")),
                                            QStringLiteral("Refresh"));
    refresh->setObjectName(QStringLiteral("refresh"));
    // F5 comes through the main window's Refresh, which calls RefreshMe.
    refresh->setToolTip(QStringLiteral("Refresh (F5)"));
    connect(refresh, &QAction::triggered, this, &PictureListWindow::RefreshMe);

    // The address bar's Back and Folder Up, wherever the focus is in the window.
    addAction(m_address->BackAction());
    addActions(m_folders->KeyActions());
}

void PictureListWindow::buildSideBar()
{
    m_sideBar = new ucSideBar(0, m_setup.section, this);
    m_sideBar->setObjectName(QStringLiteral("ucSideBar"));
    m_sideBar->setWindowTitle(QStringLiteral("Folders"));

    m_sideSplit = new QSplitter(Qt::Vertical);
    m_sideSplit->setObjectName(QStringLiteral("sideSplit"));
    m_sideSplit->setChildrenCollapsible(false);

    auto* folders = new QWidget(m_sideSplit);
    auto* column = new QVBoxLayout(folders);
    column->setContentsMargins(2, 2, 2, 2);
    column->setSpacing(2);
    m_drives = new QComboBox(folders);
    m_drives->setObjectName(QStringLiteral("drv") + m_setup.stem);
    m_drives->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_drives->setMinimumContentsLength(6);
    m_dirModel = new QFileSystemModel(this);
    m_dirModel->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    m_dirModel->setReadOnly(true);
    m_dirs = new QTreeView(folders);
    m_dirs->setObjectName(QStringLiteral("dir") + m_setup.stem);
    m_dirs->setModel(m_dirModel);
    m_dirs->setHeaderHidden(true);
    for (int c = 1; c < m_dirModel->columnCount(); ++c)
        m_dirs->setColumnHidden(c, true);
    column->addWidget(m_drives);
    column->addWidget(m_dirs, 1);
    fillDrives();

    m_previewPane = new PreviewPane(2, m_sideSplit);
    m_preview = m_previewPane->Preview();

    m_sideSplit->addWidget(folders);
    m_sideSplit->addWidget(m_previewPane);
    m_sideSplit->setStretchFactor(0, 1);
    m_sideSplit->setStretchFactor(1, 1);
    m_sideBar->setContentWidget(m_sideSplit);

    connect(m_drives, &QComboBox::activated, this, &PictureListWindow::driveChosen);
    connect(m_dirs->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &PictureListWindow::folderChosen);
    // The tree learns a folder's subfolders on a thread: as the folders above the one shown
    // arrive, rows move, and the one shown is scrolled into view again until its own parent
    // is in.
    connect(m_dirModel, &QFileSystemModel::directoryLoaded, this, [this](const QString& loaded) {
        if (m_folderToReveal.isEmpty() ||
            !(withTrailingSeparator(m_folderToReveal)).startsWith(withTrailingSeparator(loaded)))
            return;
        m_dirs->scrollTo(m_dirs->currentIndex());
        const QModelIndex current = m_dirs->currentIndex();
        if (SamePath(loaded, m_dirModel->filePath(current.parent())))
            m_folderToReveal.clear();
    });
    // Once the user scrolls the tree, it stays where the user put it.
    connect(m_dirs->verticalScrollBar(), &QScrollBar::actionTriggered, this,
            [this] { m_folderToReveal.clear(); });
    connect(m_sideSplit, &QSplitter::splitterMoved, this, [this] {
        settings().write(m_setup.dirHeight, Formats::pixelsToTwips(m_sideSplit->sizes().value(0)));
    });
}

void PictureListWindow::Load()
{
    double splitter = DefaultSplitterTwips;
    settings().readInto(m_setup.section, Keys::Splitter_Location.key,
                        QString::number(DefaultSplitterTwips), splitter);
    applySplitter(int(splitter));
    double dirHeight = 0;
    if (settings().readInto(m_setup.dirHeight, dirHeight) && dirHeight > 0) {
        m_pendingDirHeight = Formats::twipsToPixels(qint64(dirHeight));
        m_sideSplit->setSizes({m_pendingDirHeight, m_sideSplit->height()});
    }

    m_list->setHoverSelect(Globals().option(Opt::HoverSelect));

    int viewType = 3;
    settings().readInto(Keys::View_Type.in(m_setup.section), viewType);
    ViewType(viewType);

    // The list keeps the order last chosen with SortItems, by name at first.
    int sortation = NameColumn;
    settings().readInto(Keys::Sortation.in(m_setup.section), sortation);
    if (sortation < 0 || sortation >= ColumnCount)
        sortation = NameColumn;
    m_list->setSortState({sortation, Qt::AscendingOrder, true});

    m_address->setAddress(settings().read(Keys::BrowsePath.in(m_setup.section)));

    for (int c = 0; c < 4; ++c) {
        m_columnWidths[size_t(c)] = DesignWidths[size_t(c)];
        int width = DesignWidths[size_t(c)];
        settings().readInto(m_setup.section, Keys::Col_(c + 1).key,
                            QString::number(DesignWidths[size_t(c)]), width);
        m_list->setColumnWidth(c, Formats::twipsToPixels(width));
    }
}

// Operations ------------------------------------------------------------------------------

void PictureListWindow::RefreshMe()
{
    fillList();
}

void PictureListWindow::SortItems(int key)
{
    key = SortItemsKey(key);
    if (key < 0 || key >= ColumnCount)
        return;
    SortState state = m_list->sortState();
    state.key = key;
    state.on = true;
    m_list->setSortState(state);
    settings().write(Keys::Sortation.in(m_setup.section), key);
}

void PictureListWindow::ShowBar(int index, bool visible)
{
    switch (index) {
    case 1:
        m_toolbar->setVisible(visible);
        break;
    case 2:
        m_addressBar->setVisible(visible);
        break;
    case 3:
        m_previewPane->setVisible(visible);
        break;
    default:
        break;
    }
}

void PictureListWindow::SetStretch(bool stretch)
{
    m_preview->setStretchMode(stretch);
    if (!m_preview->FileName().isEmpty())
        m_preview->setFileName(m_preview->FileName());
}

void PictureListWindow::ViewType(int& n)
{
    const auto restore = waitCursor();
    n = ValidViewType(n);
    settings().write(Keys::View_Type.in(m_setup.section), n);
    for (int i = 0; i < 3; ++i)
        m_viewButtons[size_t(i)]->setChecked(i + 1 == n);
    m_list->setMode(ModeForViewType(n));
}

QAction* PictureListWindow::ViewButton(int index) const
{
    return index >= 1 && index <= 3 ? m_viewButtons[size_t(index - 1)] : nullptr;
}

// The list --------------------------------------------------------------------------------

void PictureListWindow::fillList()
{
    const auto restore = waitCursor();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    settings().write(Keys::Drive.in(m_setup.section), currentDrive());
    settings().write(Keys::Dir.in(m_setup.section), folderListPath());

    m_preview->setFileName({});
    m_previewPane->setCaption({});
    const QString lastSelected = settings().read(Keys::LastSelected.in(m_setup.section));
    if (m_setup.fillManagesControls)
        m_list->setMultiSelect(false);
    Utilities::SetStatus(Utilities::SpecialFolderName(m_path));
    FilesFound files;
    PictureScan::scanPath(files, m_path);

    // A view makes the first row current as rows arrive; that is no choice of the user's.
    QPersistentModelIndex toSelect;
    {
        const QScopedValueRollback quiet(m_changing, true);
        m_list->clear();
        m_remembered = QPersistentModelIndex();
        for (qsizetype i = 0; i < files.Count(); ++i) {
            const FoundFile& found = files.Found(i);
            qint64 bytes = 0;
            QDateTime modified;
            if (found.facts) {
                bytes = found.facts->size;
                modified = QDateTime::fromSecsSinceEpoch(found.facts->modifiedSecs);
            } else {
                const QFileInfo info(m_path + found.name);
                bytes = info.size();
                modified = info.lastModified();
            }
            const int row =
                m_list->addRow(RowTexts(found.name, bytes, modified, m_setup.upperCaseTypes));
            if (m_setup.rememberSelection && m_path + found.name == lastSelected)
                toSelect = m_list->model()->index(row, NameColumn);
            if (!m_setup.rememberSelection && row == 0) {
                SelectItem(row);
                QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
            }
        }
        m_list->resort();
        if (m_setup.rememberSelection)
            m_list->clearSelection();
        // The folder lists its files in no particular order, so the row chosen early may have
        // sorted away from the top: the top row is the one the user expects chosen.
        else if (m_list->count() > 0 && RememberedRow() != 0)
            SelectItem(0);
    }

    if (toSelect.isValid())
        SelectItem(toSelect.row());
    ShowCount();
    if (m_setup.fillManagesControls)
        m_list->setMultiSelect(true);
    listFilled();
}

int PictureListWindow::AddFileRow(const QString& name)
{
    const QFileInfo info(m_path + name);
    const auto texts = RowTexts(name, info.size(), info.lastModified(), m_setup.upperCaseTypes);
    int row = m_list->rowOf(name);
    if (row >= 0)
        m_list->setRowTexts(row, texts);
    else
        row = m_list->addRow(texts);
    return row;
}

void PictureListWindow::RemoveRow(int row)
{
    {
        const QScopedValueRollback quiet(m_changing, true);
        m_list->removeRow(row);
    }
    if (m_list->count() == 0) {
        m_preview->setFileName({});
        m_previewPane->setCaption({});
    }
}

void PictureListWindow::ShowCount()
{
    if (ucCoolProg* strip = Utilities::StatusStrip())
        strip->Panel(2)->setText(QStringLiteral("Images: ") + Formats::thousands(m_list->count()));
    if (m_setup.fillManagesControls)
        for (QAction* button : m_viewButtons)
            button->setEnabled(m_list->count() > 0);
}

void PictureListWindow::SelectItem(int row)
{
    selectRow(row, true);
}

void PictureListWindow::selectionChanged(int row)
{
    // The user's own change: the view has selected the row already.
    if (m_changing)
        return;
    selectRow(row, false);
}

void PictureListWindow::selectRow(int row, bool alone)
{
    if (row < 0 || row >= m_list->count())
        return;
    const QScopedValueRollback quiet(m_changing, true);
    const QString path = PathOf(row);
    if (path != m_preview->FileName()) {
        m_preview->setFileName(path);
        m_previewPane->setCaption(m_list->text(row));
    }
    m_remembered = QPersistentModelIndex(m_list->model()->index(row, NameColumn));
    settings().write(Keys::LastSelected.in(m_setup.section), path);
    if (alone)
        m_list->selectRow(row, true);
    else
        m_list->view()->scrollTo(m_remembered);
}

int PictureListWindow::RememberedRow() const
{
    return m_remembered.isValid() ? m_remembered.row() : -1;
}

QString PictureListWindow::PathOf(int row) const
{
    return m_path + m_list->text(row);
}

void PictureListWindow::OpenRow(int row)
{
    if (row < 0 || row >= m_list->count())
        return;
    const QString path = PathOf(row);
    // The two clicks of a double click on an icon open one window.
    if (path == m_lastOpened && m_lastOpenTime.isValid() &&
        m_lastOpenTime.elapsed() < QApplication::doubleClickInterval())
        return;
    m_lastOpened = path;
    m_lastOpenTime.start();
    PictureOpener::Open(path);
}

void PictureListWindow::listDoubleClicked(int row)
{
    OpenRow(row);
}

void PictureListWindow::columnClicked(int column)
{
    m_list->setSortState(AfterColumnClick(m_list->sortState(), column));
}

void PictureListWindow::checkColumnWidths()
{
    for (int c = 0; c < 4; ++c) {
        const int twips = int(Formats::pixelsToTwips(m_list->columnWidth(c)));
        if (twips != m_columnWidths[size_t(c)]) {
            m_columnWidths[size_t(c)] = twips;
            settings().write(Keys::Col_(c + 1).in(m_setup.section), twips);
        }
    }
}

void PictureListWindow::keyPressed(int key)
{
    if (key == Qt::Key_Delete) {
        deleteKeyPressed();
        return;
    }
    const int row = RememberedRow();
    if (row >= 0 && m_list->selectedRows().contains(row))
        PictureOpener::Open(PathOf(row));
}

// Drives and folders ----------------------------------------------------------------------

void PictureListWindow::fillDrives()
{
    QList<QStorageInfo> volumes = QStorageInfo::mountedVolumes();
    std::sort(volumes.begin(), volumes.end(), [](const QStorageInfo& a, const QStorageInfo& b) {
        return a.rootPath() < b.rootPath();
    });
    const QIcon icon = style()->standardIcon(QStyle::SP_DriveHDIcon);
    for (const QStorageInfo& volume : volumes) {
        if (!volume.isValid() || !volume.isReady() || m_drives->findData(volume.rootPath()) >= 0)
            continue;
        QString text = volume.rootPath();
        if (!volume.name().isEmpty() && volume.name() != text)
            text += QStringLiteral("  [") + volume.name() + u']';
        m_drives->addItem(icon, text, volume.rootPath());
    }
}

QString PictureListWindow::currentDrive() const
{
    return m_drive;
}

void PictureListWindow::showDrive(const QString& root)
{
    int index = m_drives->findData(root);
    if (index < 0) {
        m_drives->addItem(style()->standardIcon(QStyle::SP_DriveHDIcon), root, root);
        index = m_drives->count() - 1;
    }
    m_drive = root;
    m_changingFolder = true;
    m_drives->setCurrentIndex(index);
    m_dirs->setRootIndex(m_dirModel->setRootPath(root));
    m_changingFolder = false;
}

QString PictureListWindow::folderListPath() const
{
    const QModelIndex current = m_dirs->currentIndex();
    return current.isValid() ? withTrailingSeparator(m_dirModel->filePath(current)) : QString();
}

void PictureListWindow::showFolder(const QString& path)
{
    const QModelIndex index = m_dirModel->index(withoutTrailingSeparator(path));
    if (!index.isValid())
        return;
    m_changingFolder = true;
    m_dirs->setCurrentIndex(index);
    m_dirs->scrollTo(index);
    m_folderToReveal = m_dirModel->filePath(index);
    m_changingFolder = false;
}

void PictureListWindow::newAddress()
{
    const QString address = m_address->Address();
    settings().write(Keys::BrowsePath.in(m_setup.section), address);
    m_path = address;

    QStringList roots;
    for (int i = 0; i < m_drives->count(); ++i)
        roots.append(m_drives->itemData(i).toString());
    QString root = VolumeRootOf(address, roots);
    if (root.isEmpty())
        root = QStorageInfo(address).rootPath();
    if (!root.isEmpty() && root != currentDrive())
        showDrive(root);
    if (!SamePath(folderListPath(), address))
        showFolder(address);
    m_folders->setCurrentPath(address);
    fillList();
}

void PictureListWindow::folderChosen(const QModelIndex& current)
{
    if (m_changingFolder || !current.isValid())
        return;
    m_folderToReveal.clear();
    const QString path = withTrailingSeparator(m_dirModel->filePath(current));
    if (!SamePath(path, m_address->Address()))
        m_address->setAddress(path);
}

void PictureListWindow::driveChosen(int index)
{
    const QString root = m_drives->itemData(index).toString();
    QStringList roots;
    for (int i = 0; i < m_drives->count(); ++i)
        roots.append(m_drives->itemData(i).toString());
    if (!root.isEmpty() && VolumeRootOf(m_path, roots) != root)
        m_address->setAddress(root);
}

// Splitter, activation, closing -----------------------------------------------------------

void PictureListWindow::applySplitter(int twips)
{
    m_pendingSplitter = qMax(40, Formats::twipsToPixels(twips));
    resizeDocks({m_sideBar}, {m_pendingSplitter}, Qt::Horizontal);
}

int PictureListWindow::SplitterLocation() const
{
    return int(Formats::pixelsToTwips(m_sideBar->width()));
}

void PictureListWindow::activated()
{
    m_list->setMultiSelect(true);
    m_list->setHoverSelect(Globals().option(Opt::HoverSelect));
}

bool PictureListWindow::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::WindowActivate:
        activated();
        break;
    case QEvent::ParentChange:
        // Inside the main window the frame's activation is this window's.
        if (auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget()))
            connect(frame, &QMdiSubWindow::aboutToActivate, this, &PictureListWindow::activated,
                    Qt::UniqueConnection);
        break;
    default:
        break;
    }
    return QMainWindow::event(event);
}

void PictureListWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (m_shownOnce)
        return;
    m_shownOnce = true;
    // Dock and splitter sizes given before the window was laid out are taken again now.
    resizeDocks({m_sideBar}, {m_pendingSplitter}, Qt::Horizontal);
    if (m_pendingDirHeight > 0)
        m_sideSplit->setSizes(
            {m_pendingDirHeight, qMax(1, m_sideSplit->height() - m_pendingDirHeight)});
}

void PictureListWindow::closeEvent(QCloseEvent* event)
{
    m_path.clear();
    // A rolled-up side bar is no place for the splitter to come back to.
    if (!m_sideBar->isRolledUp())
        settings().write(Keys::Splitter_Location.in(m_setup.section), SplitterLocation());
    Utilities::SaveWindowState(parentWidget() ? parentWidget() : this);
    QMainWindow::closeEvent(event);
}

QLabel* PictureListWindow::lblSelected() const
{
    return m_previewPane->Caption();
}
