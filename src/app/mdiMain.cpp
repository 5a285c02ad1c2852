#include "app/mdiMain.h"

#include "app/ChildOps.h"
#include "app/MainMenus.h"
#include "app/MenuTable.h"
#include "app/UndoLog.h"
#include "app/SettingsStore.h"
#include "app/Wallpaper.h"
#include "app/WindowBalloon.h"
#include "app/frmGoodbye.h"
#include "app/frmSplash.h"
#include "app/frmSysTray.h"
#include "app/frmTip.h"
#include "browser/frmMyImages.h"
#include "browser/frmSlideshow.h"
#include "common/AppGlobals.h"
#include "common/Formats.h"
#include "common/MdiPlacement.h"
#include "common/Utilities.h"
#include "common/WindowKeys.h"
#include "common/WindowPlacement.h"
#include "controls/ucSideBar.h"
#include "gallery/AlbumCommands.h"
#include "gallery/PictureMenu.h"
#include "gallery/ThumbGrid.h"
#include "gallery/frmThumbnails.h"
#include "gallery/ucCoolProg.h"
#include "viewing/PictureOpener.h"
#include "viewing/PictureWindows.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QRandomGenerator>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

SettingsStore& settings()
{
    return SettingsStore::global();
}

const QString HintText = QStringLiteral(
    "Lumbra's toolbars are fully customizable dock them on the left to \r"
    " right, to or bottom, or click the toggle button in upper corner to hide \r"
    "or show the control.  Try it - its easy!");

const QString GreetingText = QStringLiteral(
    "You can easily access Lumbra by clicking its icon here in the taskbar tray.  "
    "If you like, you can change this feature in Options.  Have fun!");

} // namespace

mdiMain::mdiMain(QWidget* parent) : QMainWindow(parent)
{
    setObjectName(Section);
    setWindowTitle(QStringLiteral("Lumbra"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/lumbra.svg")));
    resize(1024, 720);

    m_area = new QMdiArea(this);
    m_area->setObjectName(QStringLiteral("mdiArea"));
    m_area->setBackground(QColor(0x80, 0x80, 0x80));
    setCentralWidget(m_area);
    connect(m_area, &QMdiArea::subWindowActivated, this, [this] {
        LeaveCloseKeysToTheMenu();
        tmrMain[2].start();
    });

    m_menus = new MainMenus(this);
    m_menus->FillMenuBar(menuBar());
    connect(m_menus, &MainMenus::Clicked, this, &mdiMain::OnMenuClicked);

    CreateToolbar();
    m_statusStrip = new ucCoolProg(this);
    statusBar()->addWidget(m_statusStrip, 1);

    m_tray = new frmSysTray(m_menus->Menu(QStringLiteral("mnuSys")), this);
    connect(m_tray, &frmSysTray::RestoreRequested, this, &mdiMain::ShowMain);
    m_balloon = new WindowBalloon(this);
    connect(m_tray, &frmSysTray::BalloonUnshown, m_balloon, [this](const QString& title, const QString& text) {
        m_balloon->ShowMessage(title, text);
    });

    CreateSideBar();

    // Every picture pane shares the picture menu and the one way to open a picture.
    PictureMenu::SetMenu(m_menus->Menu(QStringLiteral("mnuPopup_ImageOptions")));
    PictureOpener::SetHandler([this](const QString& path) { Q_EMIT OpenPictureRequested(path); });
    PictureWindows::SetHost(m_area, this);
    connect(this, &mdiMain::OpenPictureRequested, this, [this](const QString& path) {
        if (PictureWindows::Open(path))
            ProposeRecent(path);
    });

    const int intervals[] = {65000, 2100, 100, 150, 2000};
    for (int i = 0; i < int(tmrMain.size()); ++i) {
        tmrMain[i].setInterval(intervals[i]);
        connect(&tmrMain[i], &QTimer::timeout, this, [this, i] { tmrMain_Timer(i); });
    }

    // Entries that only make sense on the desktop the program was first written for.
    m_menus->Action(QStringLiteral("mnuStuff"), 4)->setVisible(false);
    m_menus->Action(QStringLiteral("mnuImageOptions_SetAs"), 1)->setVisible(false);
    m_menus->Action(QStringLiteral("mnuHelp"), 11)->setVisible(!QStringLiteral(LUMBRA_SUPPORT_EMAIL).isEmpty());

    // The albums there are follow the fixed entries of the albums menu, which the gallery's
    // toolbar offers.
    auto* albums = m_menus->Menu(QStringLiteral("mnuAlbums"));
    connect(albums, &QMenu::aboutToShow, this, [this, albums] {
        AlbumCommands::AddEntries(albums, this, [this] { return Gallery(); });
    });

    auto* windows = m_menus->Menu(QStringLiteral("mnuWindow"));
    connect(windows, &QMenu::aboutToShow, this, [this, windows] {
        // The open child windows follow the arrangement entries, as in any document frame.
        for (QAction* action : windows->actions())
            if (action->property("childWindow").isValid())
                delete action;
        const auto list = m_area->subWindowList();
        if (!list.isEmpty())
            windows->addSeparator()->setProperty("childWindow", true);
        int number = 1;
        for (QMdiSubWindow* sub : list) {
            QAction* action = windows->addAction(MenuTable::NumberedCaption(number++, sub->windowTitle()));
            action->setProperty("childWindow", true);
            action->setCheckable(true);
            action->setChecked(sub == m_area->activeSubWindow());
            connect(action, &QAction::triggered, this, [this, sub] { m_area->setActiveSubWindow(sub); });
        }
    });
    m_menus->Menu(QStringLiteral("mnuEdit"))->setToolTipsVisible(true);
    connect(&UndoLog::global(), &UndoLog::Changed, this, &mdiMain::UpdateUndoEntry);
    UpdateUndoEntry();
    UpdateCommandStates();
}

mdiMain::~mdiMain()
{
    PictureOpener::SetHandler({});
    PictureWindows::CloseAll();
    PictureWindows::SetHost(nullptr, nullptr);
    // Child windows announce activation changes while the frame tears them down; by then our
    // own members are gone, so stop listening first.
    m_area->disconnect(this);
    for (QTimer& timer : tmrMain)
        timer.stop();
}

void mdiMain::CreateToolbar()
{
    m_toolbar = addToolBar(QStringLiteral("tlbMain"));
    m_toolbar->setObjectName(QStringLiteral("tlbMain"));
    m_toolbar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    m_toolbar->setIconSize(QSize(24, 24));
    for (const MenuTable::ToolButton& button : MenuTable::ToolbarButtons()) {
        QAction* action = nullptr;
        if (button.text == QLatin1String("-")) {
            action = m_toolbar->addSeparator();
        } else {
            action = m_toolbar->addAction(QIcon(MenuTable::IconResource(button.iconKey)), button.text);
            action->setToolTip(button.toolTip);
            connect(action, &QAction::triggered, this, [this, index = button.index] { tlbMain_ButtonClick(index); });
        }
        action->setObjectName(QStringLiteral("tlbMain(%1)").arg(button.index));
        action->setData(button.index);
        if (button.index == 12)
            action->setMenu(m_menus->Menu(QStringLiteral("mnuTools")));
    }
    if (auto* tools = qobject_cast<QToolButton*>(m_toolbar->widgetForAction(m_toolbar->findChild<QAction*>(QStringLiteral("tlbMain(12)")))))
        tools->setPopupMode(QToolButton::InstantPopup);
}

void mdiMain::CreateSideBar()
{
    auto* bar = new ucSideBar(0, Section, this);
    auto* panel = new QWidget(bar);
    auto* layout = new QBoxLayout(QBoxLayout::TopToBottom, panel);
    layout->setContentsMargins(4, 4, 4, 4);
    const struct
    {
        QString text;
        QString icon;
        int button;
    } items[] = {
        {QStringLiteral("My Images"), QStringLiteral("My Images"), MenuTable::MyImagesButton},
        {QStringLiteral("Thumbnails"), QStringLiteral("Thumbs"), MenuTable::ThumbnailsButton},
        {QStringLiteral("Slide Show"), QStringLiteral("Slideshow"), MenuTable::SlideshowButton},
        {QStringLiteral("Screenshot!"), QStringLiteral("Screenshot"), 13},
        {QStringLiteral("Wallpaper"), QStringLiteral("Wallpaper"), 14},
        {QStringLiteral("Help"), QStringLiteral("Help"), 17},
    };
    for (const auto& item : items) {
        auto* button = new QToolButton(panel);
        button->setText(item.text);
        button->setIcon(QIcon(MenuTable::IconResource(item.icon)));
        button->setIconSize(QSize(32, 32));
        button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        button->setAutoRaise(true);
        button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        connect(button, &QToolButton::clicked, this, [this, index = item.button] { tlbMain_ButtonClick(index); });
        layout->addWidget(button);
    }
    layout->addStretch(1);
    connect(bar, &ucSideBar::Docked, panel, [layout](int side) {
        const bool across = side == 1 || side == 2;
        layout->setDirection(across ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    });
    bar->setContentWidget(panel);
    m_sideBars[0] = bar;
}

ucSideBar* mdiMain::SideBar(int index) const
{
    return index >= 0 && index < int(m_sideBars.size()) ? m_sideBars[size_t(index)] : nullptr;
}

void mdiMain::Load()
{
    const AppGlobals& globals = Globals();
    m_startingUp = true;
    WindowPlacement::Keep(this, Section);

    for (const MenuTable::Picture& picture : MenuTable::Pictures())
        if (QAction* action = m_menus->Action(picture.array, picture.index))
            action->setIcon(QIcon(MenuTable::IconResource(picture.key)));

    if (!globals.option(Opt::SideBar)) {
        m_sideBars[0]->hide();
    } else {
        int align = 3;
        settings().readInto(Keys::SideBar_Align, align);
        m_sideBars[0]->Dock(align);
    }

    statusBar()->setVisible(globals.option(Opt::StatusBar));
    // Child windows reach the strip through Utilities, without knowing this window.
    Utilities::SetStatusStrip(m_statusStrip);

    int style = 2;
    settings().readInto(Keys::Wallpaper_Style, style);
    ApplyWallpaperTicks(style);

    m_recent.Load(settings(), Section);
    RebuildRecentMenu();

    settings().readInto(Keys::MinToTray_Minutes, m_minToTrayMinutes);

    static const QString greetings[] = {QStringLiteral("Howdy"), QStringLiteral("Welcome"),
                                        QStringLiteral("Hi there"), QStringLiteral("Greetings"),
                                        QStringLiteral("Hola")};
    const int pick = int(5 * QRandomGenerator::global()->generateDouble() + 1);
    m_greeting = greetings[pick - 1];

    m_tray->SetIconVisible(globals.option(Opt::TrayIcon));
    m_tray->ShowBalloon(QStringLiteral("Lumbra\u00A9  -  ") + m_greeting + u'!', GreetingText);

    for (int i = 0; i < 3; ++i)
        m_sideBars[0]->setHint(QStringLiteral("Helpful Hints"), HintText);

    // The menu appearance chosen in the options stays chosen from one run to the next.
    int view = 0;
    if (settings().readInto(Keys::MainMenu_View, view))
        MainMenu_View(view);

    tmrMain[0].start();
    if (globals.option(Opt::TrayAtStart))
        QTimer::singleShot(0, this, &mdiMain::SendToTray);
}

void mdiMain::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    if (!isMinimized() && !m_hiddenToTray) {
        settings().write(Keys::Dimensions(0), Formats::pixelsToTwips(width()));
        settings().write(Keys::Dimensions(1), Formats::pixelsToTwips(height()));
    }
    if (m_startingUp)
        tmrMain[3].start();
}

void mdiMain::tmrMain_Timer(int index)
{
    if (index != 0)
        tmrMain[size_t(index)].stop();
    switch (index) {
    case 0:
        if (m_idleTicks != m_minToTrayMinutes)
            ++m_idleTicks;
        else if (Globals().option(Opt::MinimizeToTray))
            SendToTray();
        break;
    case 2:
        UpdateCommandStates();
        RestoreChildCommands();
        break;
    case 3:
        DeferredStartUp();
        break;
    case 4:
        ShowTipOfTheDay();
        break;
    default:
        break;
    }
}

void mdiMain::DeferredStartUp()
{
    tmrMain[3].stop();
    const AppGlobals& globals = Globals();
    if (globals.option(Opt::ReopenLastWindow)) {
        int lastUsed = 1;
        settings().readInto(Keys::Last_Used, lastUsed);
        if (lastUsed > 0)
            tlbMain_ButtonClick(lastUsed);
    }
    if (globals.option(Opt::OnTop))
        Utilities::SetAlwaysOnTop(this, true);
    if (globals.option(Opt::TipsAtStart))
        ShowTipOfTheDay();
    m_startingUp = false;
}

void mdiMain::ShowTipOfTheDay()
{
    frmTip::Open(this);
    Q_EMIT TipWindowRequested();
}

QWidget* mdiMain::OpenChild(int toolbarIndex)
{
    QCoreApplication::processEvents();
    m_idleTicks = 0;

    const char* name = nullptr;
    switch (toolbarIndex) {
    case MenuTable::MyImagesButton:
        name = "frmMyImages";
        break;
    case MenuTable::ThumbnailsButton:
        name = "frmThumbnails";
        break;
    case MenuTable::SlideshowButton:
        name = "frmSlideshow";
        break;
    default:
        return nullptr;
    }

    QMdiSubWindow* found = nullptr;
    for (QMdiSubWindow* sub : m_area->subWindowList())
        if (sub->widget() && sub->widget()->objectName() == QLatin1String(name))
            found = sub;
    if (!found) {
        QWidget* child = nullptr;
        if (toolbarIndex == MenuTable::MyImagesButton)
            child = new frmMyImages;
        else if (toolbarIndex == MenuTable::ThumbnailsButton)
            child = NewGallery();
        else
            child = new frmSlideshow;
        child->setAttribute(Qt::WA_DeleteOnClose);
        found = m_area->addSubWindow(child);
        found->setWindowIcon(windowIcon());
        // A child that keeps its own size (in its settings) has set it already.
        if (child->testAttribute(Qt::WA_Resized))
            found->resize(child->size());
        else
            found->resize(qMax(child->minimumWidth(), m_area->width() * 3 / 4), m_area->height() * 3 / 4);
        WindowPlacement::Keep(found, child->objectName());
    }
    found->show();
    found->widget()->show();
    MdiPlacement::KeepInsideArea(found);
    m_area->setActiveSubWindow(found);
    SetStatusText(QStringLiteral("Ready"));
    return found->widget();
}

void mdiMain::SetStatusText(const QString& text)
{
    m_statusStrip->setCaption(text);
}

QWidget* mdiMain::ActiveChild() const
{
    QMdiSubWindow* sub = m_area->activeSubWindow();
    if (!sub && !m_area->subWindowList().isEmpty())
        sub = m_area->currentSubWindow();
    return sub ? sub->widget() : nullptr;
}

bool mdiMain::CallChild(const char* operation)
{
    return ChildOps::Call(ActiveChild(), operation);
}

void mdiMain::LeaveCloseKeysToTheMenu()
{
    // Each child window's own menu closes it with the same keys as File > Close; two owners
    // of one key make it fire for neither.
    for (QMdiSubWindow* sub : m_area->subWindowList())
        if (QMenu* own = sub->systemMenu())
            for (QAction* action : own->actions())
                if (!action->shortcuts().isEmpty())
                    action->setShortcuts({});
}

void mdiMain::setMyEnabled(QObject* object)
{
    m_myEnabled = object;
    UpdateCommandStates();
}

void mdiMain::UpdateCommandStates()
{
    // Commands aimed at a child window need one; a dialog may hand over an object whose
    // enabled state the commands follow while it is open.
    const auto* follow = qobject_cast<QWidget*>(m_myEnabled.data());
    const bool child = ActiveChild() != nullptr && (!follow || follow->isEnabled());
    const struct
    {
        const char* array;
        std::initializer_list<int> entries;
    } needChild[] = {
        {"mnuFile", {2, 3}},
        {"mnuEdit", {3, 4, 5}},
        {"mnuView_Controls", {1, 2, 3}},
        {"mnuWindow", {0, 1, 2, 4}},
    };
    for (const auto& group : needChild)
        for (int index : group.entries)
            if (QAction* action = m_menus->Action(QLatin1String(group.array), index))
                action->setEnabled(child);
    for (int index : {7, 8, 9})
        if (auto* action = m_toolbar->findChild<QAction*>(QStringLiteral("tlbMain(%1)").arg(index)))
            action->setEnabled(child);
}

void mdiMain::UpdateUndoEntry()
{
    const UndoLog& log = UndoLog::global();
    QAction* undo = m_menus->Action(QStringLiteral("mnuEdit"), 1);
    undo->setEnabled(log.CanUndo());
    undo->setToolTip(log.CanUndo() ? QStringLiteral("Undo ") + log.What() : log.WhyNot());
}

void mdiMain::RestoreChildCommands()
{
    // The windows with a picture pane bring the View and picture-pane menus in line with
    // their own settings when they become active.
    QWidget* child = ActiveChild();
    static const QStringList withPane = {QStringLiteral("frmMyImages"), QStringLiteral("frmViewImage"),
                                         QStringLiteral("frmSlideshow")};
    if (!child || !withPane.contains(child->objectName()))
        return;
    const QString section = child->objectName();
    for (int bar = 1; bar <= 3; ++bar) {
        bool shown = true;
        settings().readInto(Keys::ViewRestore(bar).in(section), shown);
        if (QAction* action = m_menus->Action(QStringLiteral("mnuView_Controls"), bar)) {
            action->setCheckable(true);
            action->setChecked(shown);
        }
    }
    bool stretch = false;
    settings().readInto(Keys::Sel_Stretch.in(section), stretch);
    for (int entry : {0, 1})
        if (QAction* action = m_menus->Action(QStringLiteral("mnuImgPreview_Options"), entry)) {
            action->setCheckable(true);
            action->setChecked((entry == 0) == stretch);
        }
    ChildOps::Call(child, "SetStretch", stretch);
}

void mdiMain::ApplyWallpaperTicks(int style)
{
    for (int i = 3; i <= 5; ++i) {
        QAction* action = m_menus->Action(QStringLiteral("mnuWallpaper"), i);
        action->setCheckable(true);
        action->setChecked(i == style);
    }
}

void mdiMain::ProposeRecent(const QString& path)
{
    m_recent.Propose(path);
    RebuildRecentMenu();
}

void mdiMain::RebuildRecentMenu()
{
    if (!m_startingUp)
        m_recent.Save(settings(), Section);
    for (int i = 0; i < RecentList::Capacity; ++i) {
        QAction* action = m_menus->Action(QStringLiteral("mnuFile"), 13 + i);
        const QString item = m_recent.Item(i);
        action->setVisible(!item.isEmpty());
        action->setText(MenuTable::NumberedCaption(i + 1, Utilities::FileNameOf(item)));
        action->setToolTip(item);
    }
    // The caption above the entries only shows when there is something under it.
    m_menus->Action(QStringLiteral("mnuFile"), 12)->setVisible(!m_recent.Item(0).isEmpty());
}

void mdiMain::MainMenu_View(int view)
{
    menuBar()->setVisible(view != 2);
    m_toolbar->setVisible(view != 1);
}

void mdiMain::SendToTray()
{
    m_idleTicks = 0;
    tmrMain[0].stop();
    showMinimized();
    // Hide only where the tray icon really is, or the window could not be found again.
    if (m_tray->CanHideToTray())
        hide();
}

void mdiMain::ShowMain()
{
    m_hiddenToTray = false;
    showNormal();
    raise();
    activateWindow();
    m_idleTicks = 0;
    tmrMain[0].start();
}

void mdiMain::closeEvent(QCloseEvent* event)
{
    if (m_unloading) {
        event->accept();
        return;
    }
    event->ignore();
    if (isMinimized()) {
        Shutdown();
        return;
    }
    if (!isMaximized()) {
        m_width = width();
        m_height = height();
    } else {
        showNormal();
    }
    m_hiddenToTray = true;
    SendToTray();
}

void mdiMain::Shutdown()
{
    if (m_unloading)
        return;
    m_unloading = true;
    hide();
    frmGoodbye::ShowBriefly();
    // Child windows keep their own settings as they close.
    m_area->closeAllSubWindows();
    Utilities::SaveWindowState(this);
    for (QTimer& timer : tmrMain)
        timer.stop();
    m_tray->SetIconVisible(false);
    close();
    // Everything the windows stored on the way out is on disk before the program ends.
    settings().flush();
    Q_EMIT Unloaded();
}
