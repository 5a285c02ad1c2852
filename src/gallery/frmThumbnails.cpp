#include "gallery/frmThumbnails.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "app/UndoLog.h"
#include "browser/FileUndo.h"
#include "common/AppGlobals.h"
#include "common/Formats.h"
#include "common/MsgBox.h"
#include "common/Utilities.h"
#include "common/WindowKeys.h"
#include "common/modBrowseForFolder.h"
#include "common/ucFolders.h"
#include "common/ucTxtAddress.h"
#include "controls/ucSideBar.h"
#include "gallery/GalleryLayout.h"
#include "gallery/PictureMenu.h"
#include "gallery/PictureScan.h"
#include "gallery/SortKeys.h"
#include "gallery/ThumbGrid.h"
#include "gallery/ThumbPipeline.h"
#include "gallery/frmThumbSize.h"
#include "gallery/ucCoolProg.h"
#include "imaging/PictureLoader.h"
#include "viewing/PictureOpener.h"
#include "viewing/PreviewPane.h"
#include "viewing/ucImgPreview.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QToolBar>
#include <QtConcurrent/QtConcurrentRun>
#include <QVBoxLayout>

namespace {

const QString Section = QStringLiteral("frmThumbnails");

SettingsStore& settings()
{
    return SettingsStore::global();
}

constexpr int KeyShift = 16;
constexpr int KeyControl = 17;

// Thumbnail windows may not get narrower than this, in twips.
constexpr int MinimumWidthTwips = 5000;

QString explanation()
{
    const QChar cr(u'\r');
    return QStringLiteral("You are about to remove a thumbnail from this collection.  This does NOT delete ") + cr +
           QStringLiteral("the file from ") +
           QStringLiteral("your computer.  Renaming, cut and paste, delete, and other file-related") + cr +
           QStringLiteral("options are more easily done in 'My Images'.   ") + cr + cr +
           QStringLiteral("However if you'd still like to delete old photos here you may do so by holding the ") + cr +
           QStringLiteral("SHIFT key down.  ") + cr + cr +
           QStringLiteral("At this time the thumbnail will be removed from the current collection only, NOT ") + cr +
           QStringLiteral("deleted from your computer.  Hitting the Refresh button or F5 will show the picture ") + cr +
           QStringLiteral("in question once more.") + cr + cr + QStringLiteral("Continue?");
}

QString notRecognised()
{
    const QChar cr(u'\r');
    return QStringLiteral("I'm sorry, I didn't recognize that file.  Be sure it was one of the ") + cr +
           QStringLiteral("following photo types: ") + cr + cr + QStringLiteral(".JPG") + cr + QStringLiteral(".BMP") + cr +
           QStringLiteral(".GIF") + cr + QStringLiteral(".ICO") + cr + QStringLiteral(".CUR") + cr +
           QStringLiteral(".TIF") + cr + QStringLiteral(".DIB");
}

// The caption under a thumbnail: the name without its extension's four characters.
QString captionOf(const QString& name)
{
    return name.size() >= 4 ? name.left(name.size() - 4) : name;
}

} // namespace

frmThumbnails::frmThumbnails(QWidget* parent) : QMainWindow(parent)
{
    setObjectName(Section);
    setWindowTitle(QStringLiteral("My Thumbnails"));
    setMinimumWidth(Formats::twipsToPixels(MinimumWidthTwips));

    const std::pair<QTimer*, int> timers[] = {
        {&tmrLoadScroll, 20}, {&tmrResize, 2}, {&tmrRefresh, 2000}, {&tmrHotTracking, 1200}, {&tmrDblClick, 6}};
    for (const auto& [timer, interval] : timers) {
        timer->setSingleShot(true);
        timer->setInterval(interval);
        // Coarse timers may run 5% late; the F5 hold-off and hot tracking are felt in whole seconds.
        timer->setTimerType(Qt::PreciseTimer);
    }
    connect(&tmrLoadScroll, &QTimer::timeout, this, &frmThumbnails::setUpScrollBar);
    connect(&tmrResize, &QTimer::timeout, this, &frmThumbnails::layOutWindow);
    connect(&m_listing, &QFutureWatcher<FolderListing>::finished, this, &frmThumbnails::listed);

    m_pipeline = new ThumbPipeline(this);
    buildWindow();
    buildToolbar();
    qApp->installEventFilter(this);
    loadSettings();
}

frmThumbnails::~frmThumbnails()
{
    qApp->removeEventFilter(this);
    // The pipeline's signals must not reach a half-destroyed window.
    disconnect(m_pipeline, nullptr, this, nullptr);
    m_grid->setPictureSource({});
    m_grid->setFileSource({});
}

void frmThumbnails::buildWindow()
{
    auto* central = new QWidget(this);
    auto* row = new QHBoxLayout(central);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);

    m_grid = new ThumbGrid(central);
    m_grid->setObjectName(QStringLiteral("picFrame"));
    m_grid->setPictureSource([this](int index) { return m_pipeline->Picture(index); });
    m_grid->setFileSource([this](int index) { return FileOf(index); });
    m_grid->installEventFilter(this);
    m_grid->setFocusPolicy(Qt::StrongFocus);
    row->addWidget(m_grid, 1);

    m_scroll = new QScrollBar(Qt::Vertical, central);
    m_scroll->setObjectName(QStringLiteral("sbSlide"));
    m_scroll->setAutoFillBackground(true);
    row->addWidget(m_scroll);
    setCentralWidget(central);

    connect(m_scroll, &QScrollBar::valueChanged, m_grid, &ThumbGrid::setScrollTop);
    connect(m_grid, &ThumbGrid::WheelScrolled, this,
            [this](int delta) { m_scroll->setValue(m_scroll->value() - delta); });
    connect(m_grid, &ThumbGrid::CellClicked, this, &frmThumbnails::cellClicked);
    connect(m_grid, &ThumbGrid::CellHovered, this, &frmThumbnails::cellHovered);
    connect(m_grid, &ThumbGrid::CellContextMenu, this, [this](int index, const QPoint& at) {
        if (index != m_current)
            select(index);
        PictureMenu::ShowAt(at);
    });
    connect(m_grid, &ThumbGrid::KeyMoved, this, &frmThumbnails::keyMoved);
    connect(m_grid, &ThumbGrid::CellActivated, this, [this](int index) {
        if (index != m_current)
            select(index);
        openPicture();
    });
    connect(m_grid, &ThumbGrid::CellToggled, this, [this](int index) {
        // As a Ctrl+click: the check turns over, the others keep theirs.
        m_grid->setChecked(index, !m_grid->isChecked(index));
        const int key = std::exchange(m_lastKey, KeyControl);
        select(index);
        m_lastKey = key;
    });
    connect(m_grid, &ThumbGrid::FilesDropped, this, &frmThumbnails::DroppedOLE);
    connect(m_grid, &ThumbGrid::VisibleRangeChanged, m_pipeline, &ThumbPipeline::SetVisible);

    connect(m_pipeline, &ThumbPipeline::Made, m_grid, &ThumbGrid::updateCell);
    connect(m_pipeline, &ThumbPipeline::Progress, this, [this](int finished, int) {
        if (ucCoolProg* strip = Utilities::StatusStrip())
            strip->setValue(finished);
        if (Globals().Cancel)
            m_pipeline->Cancel();
    });
    connect(m_pipeline, &ThumbPipeline::Done, this, &frmThumbnails::passFinished);

    // The preview and the name of the picture in it live in the side bar at the grid's left.
    m_sideBar = new ucSideBar(0, Section, this);
    m_sideBar->setObjectName(QStringLiteral("ucSideBar"));
    m_sideBar->setWindowTitle(QStringLiteral("Preview"));
    m_previewPane = new PreviewPane(4);
    m_preview = m_previewPane->Preview();
    m_sideBar->setContentWidget(m_previewPane);

    m_addressBar = addToolBar(QStringLiteral("Address"));
    m_addressBar->setObjectName(QStringLiteral("tlbAddress"));
    m_addressBar->setMovable(false);
    m_address = new ucTxtAddress(Section, m_addressBar);
    m_address->setObjectName(QStringLiteral("ucTxtAddress"));
    m_folders = new ucFolders(m_addressBar);
    m_folders->setObjectName(QStringLiteral("ucFolders"));
    m_addressBar->addWidget(m_address);
    m_addressBar->addWidget(m_folders);
    m_address->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(m_folders, &ucFolders::FolderChanged, m_address, &ucTxtAddress::setAddress);
    connect(m_address, &ucTxtAddress::NewAddress, this, &frmThumbnails::newAddress);
}

void frmThumbnails::buildToolbar()
{
    m_toolbar = new QToolBar(QStringLiteral("Thumbnails"), this);
    m_toolbar->setObjectName(QStringLiteral("tlbThumbs"));
    m_toolbar->setMovable(false);
    m_toolbar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    addToolBar(Qt::TopToolBarArea, m_toolbar);
    insertToolBarBreak(m_addressBar);

    QAction* browse = m_toolbar->addAction(QIcon(QStringLiteral(":/icons/open.svg")), QStringLiteral("Browse..."));
    browse->setObjectName(QStringLiteral("browse"));
    browse->setToolTip(QStringLiteral("Choose a folder to thumbnail"));
    connect(browse, &QAction::triggered, this, &frmThumbnails::BrowseFolder);
    WindowKeys::Give(this, browse, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O));

    QAction* size = m_toolbar->addAction(QIcon(QStringLiteral(":/icons/thumbs.svg")), QStringLiteral("Size..."));
    size->setObjectName(QStringLiteral("size"));
    size->setToolTip(QStringLiteral("Thumbnail size and captions"));
    connect(size, &QAction::triggered, this, &frmThumbnails::ChooseSize);
    WindowKeys::Give(this, size, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_T));

    // F5, which the gallery answers itself (see keyEvent).
    QAction* refresh = m_toolbar->addAction(QIcon(QStringLiteral(":/icons/refresh.svg")), QStringLiteral("Refresh"));
    refresh->setObjectName(QStringLiteral("refresh"));
    refresh->setToolTip(QStringLiteral("Refresh (F5)"));
    connect(refresh, &QAction::triggered, this, [this] { RefreshMe(false); });

    QAction* collection = m_toolbar->addAction(QStringLiteral("Collection"));
    collection->setObjectName(QStringLiteral("collection"));
    collection->setCheckable(true);
    collection->setToolTip(QStringLiteral("On: the pictures you gathered here. Off: the folder in the address bar."));
    connect(collection, &QAction::toggled, this, &frmThumbnails::setCollectionMode);
    WindowKeys::Give(this, collection, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_L));

    // The address bar's Back and Folder Up, wherever the focus is in the gallery.
    addAction(m_address->BackAction());
    addActions(m_folders->KeyActions());
}

void frmThumbnails::loadSettings()
{
    long width = 6300;
    long height = 5445;
    settings().readInto(Keys::Width, width);
    settings().readInto(Keys::Height, height);
    resize(qMax(Formats::twipsToPixels(width), minimumWidth()), Formats::twipsToPixels(height));

    long splitter = 0;
    if (settings().readInto(Keys::Splitter_Location.in(Section), splitter) && splitter > 0)
        applySplitter(int(splitter));

    SizeThumbs();

    QString browsePath = settings().read(Keys::BrowsePath.in(Section));
    if (!settings().contains(Section, Keys::BrowsePath.key))
        browsePath = Utilities::SpecialFolderPath(Utilities::Pictures);
    if (browsePath == QLatin1String(" ")) {
        // The user gathered a collection last time: start empty rather than reload a folder.
        setCollectionMode(true);
        load(true);
    } else {
        m_address->setAddress(browsePath);
    }
    tmrLoadScroll.start();
    QCoreApplication::processEvents();
}

void frmThumbnails::setCollectionMode(bool collection)
{
    m_collection = collection;
    if (QAction* toggle = m_toolbar->findChild<QAction*>(QStringLiteral("collection"))) {
        const QSignalBlocker block(toggle);
        toggle->setChecked(collection);
    }
}

void frmThumbnails::SizeThumbs()
{
    long scale = 1;
    settings().readInto(Keys::ThumbSizeForGallery, scale);
    const int box = GalleryLayout::BoxForScale(int(scale));
    if (box != m_box) {
        m_box = box;
        m_grid->setBox(box);
    }
}

void frmThumbnails::RefreshMe(bool keepList)
{
    m_clickSuppressed = true;
    load(keepList);
    m_clickSuppressed = false;
}

void frmThumbnails::SortItems(int index)
{
    settings().write(Keys::Sortation.in(Section), index);
    load(true);
}

void frmThumbnails::ShowFolder(const QString& folder)
{
    setCollectionMode(false);
    if (QFileInfo(folder).isDir()) {
        const QString before = m_address->Address();
        m_address->setAddress(folder);
        // A new address has loaded itself; the same one again is loaded anew here.
        if (m_address->Address() != before)
            return;
        m_path = m_address->Address();
    } else {
        // A folder that is gone still gets its load, which finds nothing.
        m_path = folder;
    }
    load(false);
}

void frmThumbnails::ShowPictures(const QStringList& pictures)
{
    setCollectionMode(true);
    m_files = std::make_shared<FilesFound>();
    for (const QString& picture : pictures)
        m_files->AddFile(QFileInfo(picture).absoluteFilePath());
    m_path.clear();
    load(true);
}

QString frmThumbnails::FileOf(int index) const
{
    return index >= 0 && index < int(m_cells.size()) ? m_cells[size_t(index)].path : QString();
}

QStringList frmThumbnails::SelectedFiles() const
{
    QStringList files;
    for (int i = 0; i < int(m_cells.size()) && i < m_grid->count(); ++i)
        if (m_grid->isChecked(i) && !m_grid->isCellHidden(i))
            files << m_cells[size_t(i)].path;
    return files;
}

QStringList frmThumbnails::CollectionFiles() const
{
    QStringList files;
    for (int i = 0; i < int(m_cells.size()) && i < m_grid->count(); ++i)
        if (!m_grid->isCellHidden(i))
            files << m_cells[size_t(i)].path;
    return files;
}

bool frmThumbnails::PassRunning() const
{
    return m_loading || m_pipeline->Running();
}

void frmThumbnails::newAddress()
{
    m_path = m_address->Address();
    m_folders->setCurrentPath(m_path);
    setCollectionMode(false);
    load(false);
}

void frmThumbnails::load(bool keepList)
{
    // The pass of the last load ends here, quietly.
    m_pipeline->Start({}, QSize(1, 1));
    m_cells.clear();
    m_count = 0;
    m_grid->setCount(0);
    m_loading = true;
    // A collection is no folder: refreshing it rebuilds from the pictures gathered.
    const bool rescan = !m_collection && (!keepList || m_listStale);
    std::shared_ptr<FilesFound> files;
    if (rescan) {
        Utilities::SetStatus(Utilities::SpecialFolderName(m_path));
        m_listStale = true;
    } else {
        // The worker sorts its own copy; the window may add to m_files meanwhile.
        files = m_files ? std::make_shared<FilesFound>(*m_files) : std::make_shared<FilesFound>();
    }
    // Setting a new future drops the signals still queued from the one it replaces.
    m_listing.setFuture(QtConcurrent::run(&frmThumbnails::listFolder, std::move(files), m_path,
                                          SortKeys::storedSortation(Section)));
}

frmThumbnails::FolderListing frmThumbnails::listFolder(std::shared_ptr<FilesFound> files, const QString& path,
                                                       int sortation)
{
    if (!files) {
        files = std::make_shared<FilesFound>();
        PictureScan::scanPath(*files, path);
    }
    // The cells follow the list in the stored order; the list itself keeps scan order.
    const std::vector<qsizetype> order = SortKeys::sortedOrder(*files, sortation);
    FolderListing listing;
    listing.cells.reserve(order.size());
    for (const qsizetype index : order) {
        const FoundFile& found = files->Found(index);
        Cell cell;
        cell.path = files->Path() + found.name;
        if (found.facts) {
            cell.size = found.facts->size;
            cell.mtime = found.facts->modifiedSecs;
        }
        listing.cells.push_back(std::move(cell));
    }
    // The pipeline's copy of the cells, made here: on the UI thread copying a hundred thousand
    // paths stalls it for milliseconds.
    listing.jobs.reserve(listing.cells.size());
    for (const Cell& cell : listing.cells)
        listing.jobs.push_back({cell.path, cell.size, cell.mtime});
    listing.files = std::move(files);
    return listing;
}

void frmThumbnails::finishListing()
{
    if (!m_loading)
        return;
    m_listing.waitForFinished();
    listed();
}

void frmThumbnails::listed()
{
    if (!m_loading || !m_listing.isFinished() || m_listing.isCanceled())
        return;
    // Taken, not copied: a folder of a hundred thousand cells is milliseconds of copying.
    FolderListing listing = m_listing.future().takeResult();
    m_listing.setFuture({});
    const bool rescanned = m_listStale;
    m_listStale = false;
    m_files = std::move(listing.files);
    if (rescanned && !m_collection)
        m_path = m_files->Path();
    m_cells = std::move(listing.cells);
    m_count = int(m_cells.size());

    m_grid->setCount(0);
    m_current = -1;
    m_anchor = -1;
    m_scroll->setValue(0);
    sizeCanvas();

    if (m_count < 1) {
        m_preview->setFileName({});
        m_previewPane->setCaption(QStringLiteral("-"));
        if (ucCoolProg* strip = Utilities::StatusStrip())
            strip->setMax(0);
        Utilities::SetStatus(QStringLiteral("No Images"));
        m_loading = false;
        setUpScrollBar();
        return;
    }

    m_preview->setFileName({});
    m_previewPane->setCaption(QStringLiteral("..."));
    if (ucCoolProg* strip = Utilities::StatusStrip())
        strip->setMax(m_count);

    m_grid->setCount(int(m_cells.size()));
    if (Globals().option(Opt::Captions))
        for (int i = 0; i < int(m_cells.size()); ++i)
            m_grid->setCaption(i, captionOf(Utilities::FileNameOf(m_cells[size_t(i)].path)));
    if (!m_collection)
        settings().write(Keys::BrowsePath.in(Section), m_path);
    m_loading = false;
    layOutWindow();
    startPass(std::move(listing.jobs));
}

void frmThumbnails::startPass(std::vector<ThumbJob> jobs)
{
    if (jobs.size() != m_cells.size()) {
        jobs.clear();
        jobs.reserve(m_cells.size());
        for (const Cell& cell : m_cells)
            jobs.push_back({cell.path, cell.size, cell.mtime});
    }
    const qreal ratio = devicePixelRatioF();
    const int inner = qMax(1, qRound((m_box - 2) * ratio));
    m_pipeline->Start(std::move(jobs), QSize(inner, inner));
    // Thumbnails still in memory are ready at once, without a Made of their own.
    m_grid->update();
    const auto [first, last] = m_grid->visibleRange();
    if (first >= 0)
        m_pipeline->SetVisible(first, last);
}

void frmThumbnails::passFinished(bool cancelled)
{
    if (m_loading || m_cells.empty())
        return;
    if (ucCoolProg* strip = Utilities::StatusStrip())
        strip->setValue(strip->Max());
    showImagesCount();
    setUpScrollBar();
    Q_EMIT PassFinished(cancelled);
}

void frmThumbnails::showImagesCount()
{
    Utilities::SetStatus(QStringLiteral("Images: ") + Formats::thousands(m_count));
}

int frmThumbnails::sideBarWidth() const
{
    if (!m_sideBar->isVisible() || m_sideBar->Orientation() != Qt::Vertical)
        return 0;
    return m_sideBar->width();
}

int frmThumbnails::computeColumns() const
{
    return GalleryLayout::Columns(m_box, width(), sideBarWidth());
}

void frmThumbnails::sizeCanvas()
{
    m_grid->setColumns(m_columns);
}

void frmThumbnails::setUpScrollBar()
{
    const double canvas = GalleryLayout::CanvasHeight(int(m_cells.size()), m_columns, m_box);
    const GalleryLayout::ScrollSetup setup = GalleryLayout::ScrollFor(canvas, m_grid->height(), m_box);
    m_scroll->setEnabled(setup.enabled);
    QPalette palette = m_scroll->palette();
    const QColor background = setup.enabled ? Formats::colorFromBgr(0x80FFFF) : QApplication::palette().color(QPalette::Button);
    palette.setColor(QPalette::Window, background);
    palette.setColor(QPalette::Base, background);
    m_scroll->setPalette(palette);
    m_scroll->setValue(0);
    if (setup.enabled) {
        m_scroll->setRange(0, setup.max);
        m_scroll->setPageStep(setup.largeChange);
        m_scroll->setSingleStep(setup.smallChange);
    } else {
        m_scroll->setRange(0, 0);
    }
}

void frmThumbnails::layOutWindow()
{
    if (m_loading)
        return;
    const int columns = computeColumns();
    if (columns != m_columns)
        m_columns = columns;
    sizeCanvas();
    setUpScrollBar();
}

void frmThumbnails::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    tmrResize.start();
}

// Selection -----------------------------------------------------------------------------

void frmThumbnails::cellClicked(int index)
{
    m_openedByClick = false;
    if (m_clickSuppressed)
        return;
    if (m_lastKey == 0) {
        // A click with a modifier held counts as the key being down, even when the key press
        // itself went to another window.
        const Qt::KeyboardModifiers modifiers = QGuiApplication::keyboardModifiers();
        if (modifiers & Qt::ShiftModifier)
            m_lastKey = KeyShift;
        else if (modifiers & Qt::ControlModifier)
            m_lastKey = KeyControl;
    }
    if (tmrDblClick.isActive() && !m_busy) {
        tmrDblClick.stop();
        openPicture();
        m_openedByClick = true;
        return;
    }
    tmrDblClick.start();
    select(index);
    if (!(QGuiApplication::keyboardModifiers() & (Qt::ShiftModifier | Qt::ControlModifier)))
        m_lastKey = 0;
}

void frmThumbnails::select(int index)
{
    if (m_busy)
        return;
    m_busy = true;
    const int cells = m_grid->count();
    if (m_lastKey != KeyShift && m_lastKey != KeyControl) {
        for (int i = 0; i < cells; ++i)
            if (m_grid->isChecked(i) != (i == index))
                m_grid->setChecked(i, i == index);
    }
    if (index >= 0 && index < cells && !m_grid->isCellHidden(index)) {
        const QString path = m_cells[size_t(index)].path;
        m_current = index;
        m_grid->setCurrent(index);
        // A selection made afresh is where Shift and the keys extend it from.
        if (m_lastKey != KeyShift && m_lastKey != KeyControl)
            m_anchor = index;
        m_previewPane->setCaption(Utilities::FileNameOf(path) + QStringLiteral(" (Item ") +
                                  QString::number(index + 1) + QLatin1Char(')'));
        m_preview->setFileName(path);
    }
    m_busy = false;
    countSelected();
}

void frmThumbnails::keyMoved(int index, Qt::KeyboardModifiers modifiers)
{
    if (modifiers & Qt::ShiftModifier) {
        // Shift selects the run from where the selection began; with Ctrl too, what was
        // selected outside the run stays so.
        const int anchor = m_anchor >= 0 && m_anchor < m_grid->count() ? m_anchor : index;
        const int low = qMin(anchor, index);
        const int high = qMax(anchor, index);
        const bool keepOthers = modifiers & Qt::ControlModifier;
        for (int i = 0; i < m_grid->count(); ++i)
            if ((i >= low && i <= high) || !keepOthers)
                m_grid->setChecked(i, i >= low && i <= high);
    }
    // Ctrl moves the current picture alone; a plain key selects it as a click does.
    const int key = std::exchange(m_lastKey, modifiers & Qt::ShiftModifier     ? KeyShift
                                             : modifiers & Qt::ControlModifier ? KeyControl
                                                                               : 0);
    select(index);
    m_lastKey = key;
    scrollIntoView(index);
}

void frmThumbnails::scrollIntoView(int index)
{
    const double top = GalleryLayout::CellPos(index, m_columns, m_box).y();
    const int wanted = GalleryLayout::ScrollToShow(top, m_box, m_scroll->value(), m_grid->height());
    m_scroll->setValue(qBound(m_scroll->minimum(), wanted, m_scroll->maximum()));
}

void frmThumbnails::countSelected()
{
    const int checked = m_grid->checkedCount();
    Utilities::SetStatus((checked == 0 ? QStringLiteral("No") : QString::number(checked)) +
                         QStringLiteral(" Photos Selected"));
}

void frmThumbnails::openPicture()
{
    const QString path = FileOf(m_current);
    if (!path.isEmpty())
        PictureOpener::Open(path);
}

void frmThumbnails::cellHovered(int index)
{
    if (!Globals().option(Opt::HoverSelect) || tmrHotTracking.isActive() || m_clickSuppressed)
        return;
    if (QGuiApplication::mouseButtons() != Qt::NoButton || m_lastKey != 0 ||
        QGuiApplication::keyboardModifiers() != Qt::NoModifier)
        return;
    select(index);
    tmrHotTracking.start();
}

// Commands ------------------------------------------------------------------------------

void frmThumbnails::DeleteItems()
{
    const int index = m_current;
    if (index < 0 || index >= m_grid->count() || m_grid->isCellHidden(index))
        return;
    bool explained = false;
    settings().readInto(Keys::Explain_Delete, explained);
    if (!explained) {
        const auto answer =
            MsgBox::Ask(this, QStringLiteral("Remove Thumbnail - Lumbra"), explanation(), QMessageBox::Information,
                        QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
        if (answer != QMessageBox::Yes)
            return;
    }
    settings().write(Keys::Explain_Delete, QStringLiteral("TRUE"));

    // Whether SHIFT was down when the command came, before any question takes the keys.
    const bool shift = m_lastKey == KeyShift;
    const QString file = m_cells[size_t(index)].path;
    m_grid->setCellHidden(index, true);
    m_grid->setChecked(index, false);
    m_current = -1;
    m_grid->setCurrent(-1);

    m_previewPane->setCaption({});
    for (int next = index + 1; m_previewPane->Caption()->text().isEmpty() && next <= 100; ++next)
        select(next);
    m_count = qMax(0, m_count - 1);
    showImagesCount();
    UndoLog::global().Record(QStringLiteral("Remove Thumbnail"), [gallery = QPointer(this), file] {
        if (!gallery)
            return UndoLog::Outcome{false, QStringLiteral("The gallery that showed ") +
                                               Utilities::FileNameOf(file) +
                                               QStringLiteral(" has been closed.")};
        gallery->showRemoved(file);
        return UndoLog::Outcome{};
    });
    QCoreApplication::processEvents();

    if (shift && Globals().option(Opt::ConfirmChanges)) {
        const auto answer = MsgBox::Ask(this, QStringLiteral("Delete Thumbnail - SHIFT Key Pressed"),
                                        QStringLiteral("Are you SURE you want to permenantly delete this file from your computer?"),
                                        QMessageBox::Critical, QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
        if (answer == QMessageBox::Yes && !QFile::remove(file))
            MsgBox::Tell(this, QStringLiteral("Lumbra - Delete Files"),
                         QStringLiteral("The file could not be deleted:\r") + QDir::toNativeSeparators(file),
                         QMessageBox::Warning);
        else if (answer == QMessageBox::Yes)
            UndoLog::global().Forget(QStringLiteral("Nothing to undo: a file deleted for good cannot be brought back."));
    }
    m_lastKey = 0;
}

void frmThumbnails::RenameImage()
{
    const QString full = FileOf(m_current);
    if (full.isEmpty())
        return;
    const int slash = full.lastIndexOf(QLatin1Char('/'));
    const QString folder = full.left(slash + 1);
    const QString name = full.mid(slash + 1);
    const bool dotted = name.size() >= 4 && name.at(name.size() - 4) == QLatin1Char('.');
    const QString offered = dotted ? name.left(name.size() - 4) : name;

    bool ok = false;
    const QString answer =
        QInputDialog::getText(this, QStringLiteral("Lumbra"), QStringLiteral("Rename Picture:"), QLineEdit::Normal, offered, &ok);
    if (!ok || answer.isEmpty())
        return;
    const QString target = folder + answer + name.right(4);
    if (target == full)
        return;
    // QFile::rename never replaces an existing file, so a clash keeps both pictures.
    QFile source(full);
    if (!source.rename(target)) {
        MsgBox::Tell(this, QStringLiteral("Lumbra - Rename Item"),
                     QStringLiteral("Could not rename ") + name + QStringLiteral(" to ") + Utilities::FileNameOf(target) +
                         QStringLiteral(":\r") + source.errorString(),
                     QMessageBox::Warning);
        return;
    }
    FileUndo::Renamed(folder, name, Utilities::FileNameOf(target),
                      [gallery = QPointer(this), target](const QString& restored) {
                          if (gallery)
                              gallery->cellRenamed(target, restored);
                      });
    cellRenamed(full, target);
}

void frmThumbnails::cellRenamed(const QString& from, const QString& to)
{
    for (size_t i = 0; i < m_cells.size(); ++i) {
        if (m_cells[i].path != from)
            continue;
        m_cells[i].path = to;
        if (Globals().option(Opt::Captions))
            m_grid->setCaption(int(i), captionOf(Utilities::FileNameOf(to)));
        if (int(i) == m_current)
            select(m_current);
    }
}

void frmThumbnails::showRemoved(const QString& path)
{
    // After a reload the picture shows anyway; only a cell still hidden needs bringing back.
    for (size_t i = 0; i < m_cells.size(); ++i) {
        if (m_cells[i].path == path && m_grid->isCellHidden(int(i))) {
            m_grid->setCellHidden(int(i), false);
            ++m_count;
            showImagesCount();
            select(int(i));
            return;
        }
    }
}

void frmThumbnails::DroppedOLE(const QList<QUrl>& files)
{
    QStringList paths;
    for (const QUrl& url : files)
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    if (paths.isEmpty())
        return;
    // The drop adds to the list a load in progress is still making.
    finishListing();

    if (!m_collection) {
        setCollectionMode(true);
        settings().write(Keys::BrowsePath.in(Section), QStringLiteral(" "));
    }
    if (!m_files)
        m_files = std::make_shared<FilesFound>();

    bool refused = false;
    for (const QString& path : paths) {
        const QFileInfo info(path);
        if (!info.isFile() || !PictureLoader::IsPictureFile(path)) {
            refused = true;
            break;
        }
        // The list is relative to its folder; a picture from elsewhere is kept by its full path.
        const QString absolute = info.absoluteFilePath();
        m_files->AddFile(m_files->Path().isEmpty() ? absolute : QDir(m_files->Path()).relativeFilePath(absolute));
        Cell cell;
        cell.path = absolute;
        cell.size = info.size();
        cell.mtime = info.lastModified().toSecsSinceEpoch();
        m_cells.push_back(std::move(cell));
        ++m_count;
    }

    const int before = m_grid->count();
    const int after = int(m_cells.size());
    if (after > before) {
        // The cells there keep their checks and removals; the new ones follow them.
        std::vector<std::pair<bool, bool>> kept(static_cast<size_t>(before));
        for (int i = 0; i < before; ++i)
            kept[size_t(i)] = {m_grid->isChecked(i), m_grid->isCellHidden(i)};
        m_grid->setCount(after);
        for (int i = 0; i < after; ++i) {
            if (i < before) {
                m_grid->setChecked(i, kept[size_t(i)].first);
                m_grid->setCellHidden(i, kept[size_t(i)].second);
            }
            if (Globals().option(Opt::Captions))
                m_grid->setCaption(i, captionOf(Utilities::FileNameOf(m_cells[size_t(i)].path)));
        }
        sizeCanvas();
        setUpScrollBar();
        if (ucCoolProg* strip = Utilities::StatusStrip())
            strip->setMax(after);
        startPass();
    }
    if (refused)
        MsgBox::Tell(this, QStringLiteral("No-Can-Do"), notRecognised(), QMessageBox::Information);
}

void frmThumbnails::BrowseFolder()
{
    QString start = m_path;
    if (start.isEmpty())
        start = settings().read(Section, Keys::BrowsePath.key, QDir::rootPath());
    if (!start.endsWith(QLatin1Char('/')))
        start += QLatin1Char('/');
    QString answer = BrowseForFolder(this, QStringLiteral("What folder would you like to thumbnail??"), start);
    if (answer.isEmpty() || !QFileInfo(answer).isDir())
        return;
    if (!answer.endsWith(QLatin1Char('/')))
        answer += QLatin1Char('/');
    m_address->setAddress(answer);
}

void frmThumbnails::ChooseSize()
{
    frmThumbSize dialog(this, this);
    dialog.exec();
}

void frmThumbnails::ShowBar(int index, bool visible)
{
    switch (index) {
    case 1:
        m_toolbar->setVisible(visible);
        break;
    case 2:
        m_addressBar->setVisible(visible);
        break;
    case 3:
        m_sideBar->setVisible(visible);
        tmrResize.start();
        break;
    default:
        break;
    }
}

// Splitter ------------------------------------------------------------------------------

void frmThumbnails::applySplitter(int twips)
{
    const int width = qMax(40, Formats::twipsToPixels(twips));
    resizeDocks({m_sideBar}, {width}, Qt::Horizontal);
}

void frmThumbnails::splitterReleased()
{
    tmrHotTracking.stop();
    if (m_current >= 0)
        select(m_current);
    settings().write(Keys::Splitter_Location.in(Section), Formats::pixelsToTwips(m_sideBar->width()));
    layOutWindow();
}

bool frmThumbnails::event(QEvent* event)
{
    // The side bar's edge is the window's own separator: a drag of it is the splitter.
    if (event->type() == QEvent::MouseButtonPress) {
        m_splitterPressWidth = m_sideBar->width();
    } else if (event->type() == QEvent::MouseMove && m_splitterPressWidth >= 0) {
        tmrHotTracking.start();
    }
    const bool handled = QMainWindow::event(event);
    if (event->type() == QEvent::MouseButtonRelease && m_splitterPressWidth >= 0) {
        const bool moved = m_sideBar->width() != m_splitterPressWidth;
        m_splitterPressWidth = -1;
        if (moved)
            splitterReleased();
    }
    return handled;
}

// Keys ----------------------------------------------------------------------------------

bool frmThumbnails::keyEvent(QWidget* target, QKeyEvent* event, bool down)
{
    if (!down) {
        m_lastKey = 0;
        return false;
    }
    const int key = event->key();
    if (event->modifiers() & Qt::ShiftModifier || key == Qt::Key_Shift)
        m_lastKey = KeyShift;
    else if (key == Qt::Key_Control)
        m_lastKey = KeyControl;
    else
        m_lastKey = key;

    if (!ownKey(target, event))
        return false;
    switch (key) {
    case Qt::Key_Delete:
        DeleteItems();
        return true;
    case Qt::Key_F2:
        RenameImage();
        return true;
    case Qt::Key_F4:
        Utilities::SelectAllText(m_address->txtAddress());
        return true;
    case Qt::Key_F5:
        if (!tmrRefresh.isActive()) {
            tmrRefresh.start();
            RefreshMe(false);
        }
        return true;
    default:
        return false;
    }
}

bool frmThumbnails::ownKey(QWidget* target, const QKeyEvent* event)
{
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    // A text box keeps its own Delete; F2 there renames nothing.
    const bool typing = qobject_cast<QLineEdit*>(target) != nullptr;
    switch (event->key()) {
    case Qt::Key_Delete:
        // Shift is part of the gallery's Delete: it deletes the file for good.
        return !typing && !(modifiers & ~Qt::ShiftModifier);
    case Qt::Key_F2:
        return !typing && modifiers == Qt::NoModifier;
    case Qt::Key_F4:
    case Qt::Key_F5:
        return modifiers == Qt::NoModifier;
    default:
        return false;
    }
}

bool frmThumbnails::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::ShortcutOverride) {
        // The keys the gallery answers itself are not the main window's: its F5 would reload
        // at once, past the two seconds' hold-off, and Shift+Delete would cut instead.
        auto* widget = qobject_cast<QWidget*>(watched);
        const bool ours = widget && (widget == this || isAncestorOf(widget));
        if (ours && ownKey(widget, static_cast<QKeyEvent*>(event)))
            event->accept();
        return false;
    }
    if (type == QEvent::KeyPress || type == QEvent::KeyRelease) {
        // The window sees its keys before any of its controls does.
        auto* widget = qobject_cast<QWidget*>(watched);
        if (widget && (widget == this || isAncestorOf(widget)))
            return keyEvent(widget, static_cast<QKeyEvent*>(event), type == QEvent::KeyPress);
        return false;
    }
    // The side bar rolling out or being dragged narrows the grid without resizing the window:
    // the columns must follow or the last one is cut off.
    if (watched == m_grid && type == QEvent::Resize)
        tmrResize.start();
    if (watched == m_grid && type == QEvent::MouseButtonDblClick) {
        // A double click opens the picture under it, unless its second press, coming within
        // tmrDblClick, has opened it already.
        auto* mouse = static_cast<QMouseEvent*>(event);
        const int index = m_grid->IndexAt(mouse->position().toPoint());
        if (mouse->button() == Qt::LeftButton && index >= 0 && !m_clickSuppressed && !m_openedByClick) {
            tmrDblClick.stop();
            if (index != m_current)
                select(index);
            openPicture();
        }
        m_openedByClick = false;
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmThumbnails::closeEvent(QCloseEvent* event)
{
    m_pipeline->Cancel();
    if (!isMinimized() && !isMaximized()) {
        const QWidget* frame = parentWidget() ? parentWidget() : this;
        settings().write(Keys::Width, Formats::pixelsToTwips(frame->width()));
        settings().write(Keys::Height, Formats::pixelsToTwips(frame->height()));
    }
    Utilities::SaveWindowState(parentWidget() ? parentWidget() : this);
    QMainWindow::closeEvent(event);
}

QLabel* frmThumbnails::lblSelected() const
{
    return m_previewPane->Caption();
}
