// The main window's commands: what each menu entry and toolbar button does, by the index it
// has in its menu. Commands for a child window reach the active one by name (see ChildOps).
#include "app/mdiMain.h"

#include "app/ChildOps.h"
#include "app/MainMenus.h"
#include "app/MdiArrange.h"
#include "app/MenuTable.h"
#include "app/PictureFiles.h"
#include "app/RestoreDefaults.h"
#include "app/ScreenShot.h"
#include "app/SettingsStore.h"
#include "app/UndoLog.h"
#include "app/Wallpaper.h"
#include "app/ZipPictures.h"
#include "app/frmAbout.h"
#include "app/frmHelp.h"
#include "app/frmOptions.h"
#include "app/frmSplash.h"
#include "app/frmSysTray.h"
#include "browser/FileUndo.h"
#include "common/AppGlobals.h"
#include "common/MsgBox.h"
#include "common/WindowKeys.h"
#include "controls/ucSideBar.h"
#include "gallery/AlbumCommands.h"
#include "gallery/ThumbGrid.h"
#include "gallery/frmThumbnails.h"
#include "viewing/PictureOpener.h"
#include "viewing/PicturePrinter.h"
#include "viewing/PictureWindows.h"
#include "viewing/frmImageProps.h"
#include "viewing/frmPageSetup.h"
#include "viewing/frmWorkshop.h"

#include <QAction>
#include <QDesktopServices>
#include <QMdiArea>
#include <QMenu>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>

namespace {

SettingsStore& settings()
{
    return SettingsStore::global();
}

} // namespace

void mdiMain::OnMenuClicked(const QString& array, int index)
{
    using Handler = void (mdiMain::*)(int);
    static const QHash<QString, Handler> handlers = {
        {QStringLiteral("mnuFile"), &mdiMain::mnuFile_Click},
        {QStringLiteral("mnuEdit"), &mdiMain::mnuEdit_Click},
        {QStringLiteral("mnuView_Controls"), &mdiMain::mnuView_Controls_Click},
        {QStringLiteral("mnuTools"), &mdiMain::mnuTools_Click},
        {QStringLiteral("mnuStuff"), &mdiMain::mnuStuff_Click},
        {QStringLiteral("mnuWallpaper"), &mdiMain::mnuWallpaper_Click},
        {QStringLiteral("mnuWindow"), &mdiMain::mnuWindow_Click},
        {QStringLiteral("mnuHelp"), &mdiMain::mnuHelp_Click},
        {QStringLiteral("mnuSys"), &mdiMain::mnuSys_Click},
        {QStringLiteral("mnuPopup_ImageOptions"), &mdiMain::mnuPopup_ImageOptions_Click},
        {QStringLiteral("mnuSort_By"), &mdiMain::mnuSort_By_Click},
        {QStringLiteral("mnuImageOptions_SetAs"), &mdiMain::mnuImageOptions_SetAs_Click},
        {QStringLiteral("mnuImgPreview_Options"), &mdiMain::mnuImgPreview_Options_Click},
        {QStringLiteral("mnuAlbums"), &mdiMain::mnuAlbums_Click},
    };
    if (const Handler handler = handlers.value(array))
        (this->*handler)(index);
}

void mdiMain::OpenWorkshop()
{
    const QString picture = Globals().CurrentPicture;
    if (picture.isEmpty()) {
        MsgBox::Tell(this, QStringLiteral("Lumbra - Workshop"),
                     QStringLiteral("Choose a picture first: the workshop edits the picture you are looking at."));
        return;
    }
    auto* workshop = qobject_cast<frmWorkshop*>(m_workshop.data());
    // A workshop busy with unsaved edits of another picture keeps them.
    if (!workshop || (workshop->Edited() && workshop->FileName() != picture)) {
        workshop = new frmWorkshop(this);
        m_workshop = workshop;
    }
    if (workshop->FileName() != picture)
        workshop->OpenPicture(picture);
    workshop->show();
    workshop->raise();
    workshop->activateWindow();
}

QWidget* mdiMain::NewGallery()
{
    auto* gallery = new frmThumbnails;
    QAction* albums = gallery->tlbThumbs()->addAction(QIcon(MenuTable::IconResource(QStringLiteral("Thumbs"))),
                                                      QStringLiteral("Albums"));
    albums->setObjectName(QStringLiteral("albums"));
    albums->setToolTip(QStringLiteral("Photo Albums"));
    albums->setMenu(m_menus->Menu(QStringLiteral("mnuAlbums")));
    if (auto* button = qobject_cast<QToolButton*>(gallery->tlbThumbs()->widgetForAction(albums)))
        button->setPopupMode(QToolButton::InstantPopup);
    // The button drops its menu without triggering; only the key triggers it.
    WindowKeys::Give(gallery, albums, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_A));
    connect(albums, &QAction::triggered, gallery, [gallery, albums] {
        QWidget* button = gallery->tlbThumbs()->widgetForAction(albums);
        if (button && button->isVisible())
            albums->menu()->popup(button->mapToGlobal(QPoint(0, button->height())));
        else
            albums->menu()->popup(gallery->picFrame()->mapToGlobal(QPoint(0, 0)));
    });
    return gallery;
}

QStringList mdiMain::ChosenPictures() const
{
    QStringList files;
    QWidget* child = ActiveChild();
    if (ChildOps::Has<>(child, "SelectedFiles"))
        QMetaObject::invokeMethod(child, "SelectedFiles", Qt::DirectConnection, Q_RETURN_ARG(QStringList, files));
    if (files.isEmpty() && !Globals().CurrentPicture.isEmpty())
        files << Globals().CurrentPicture;
    return files;
}

void mdiMain::RefreshChild()
{
    QWidget* child = ActiveChild();
    if (!ChildOps::Call(child, "RefreshMe", false))
        ChildOps::Call(child, "RefreshMe");
}

void mdiMain::tlbMain_ButtonClick(int index)
{
    switch (index) {
    case MenuTable::MyImagesButton:
    case MenuTable::ThumbnailsButton:
    case MenuTable::SlideshowButton:
        OpenChild(index);
        settings().write(Keys::Last_Used, index);
        break;
    case 6:
        mnuFile_Click(1);
        break;
    case 7:
        mnuFile_Click(2);
        break;
    case 8:
        CallChild("DeleteItems");
        break;
    case 9:
        RefreshChild();
        break;
    case 11:
        mnuFile_Click(9);
        break;
    case 12:
        if (auto* action = m_toolbar->findChild<QAction*>(QStringLiteral("tlbMain(12)")))
            if (QWidget* button = m_toolbar->widgetForAction(action))
                m_menus->Menu(QStringLiteral("mnuTools"))->popup(button->mapToGlobal(QPoint(0, button->height())));
        break;
    case 13:
        mnuStuff_Click(1);
        break;
    case 14:
        mnuWallpaper_Click(1);
        break;
    case 15:
        mnuView_Controls_Click(5);
        break;
    case 17:
        mnuHelp_Click(1);
        break;
    default:
        break;
    }
}

void mdiMain::mnuFile_Click(int index)
{
    switch (index) {
    case 1:
        PictureFiles::OpenPictures(this);
        break;
    case 2:
        m_area->closeActiveSubWindow();
        break;
    case 3:
        m_area->closeAllSubWindows();
        break;
    case 5:
        // Edits waiting in the workshop are what Save saves; otherwise it saves a copy.
        if (m_workshop && m_workshop->property("Edited").toBool())
            ChildOps::Call(m_workshop.data(), "SaveEdits");
        else
            PictureFiles::SaveAsBitmap(this, {});
        break;
    case 6:
        PictureFiles::SaveAsBitmap(this, {});
        break;
    case 8:
        frmPageSetup::ShowDialog(this);
        break;
    case 9:
        PicturePrinter::PrintCurrent(this);
        break;
    case 11:
        frmImageProps::ShowCurrent(this);
        break;
    case 13:
    case 14:
    case 15:
    case 16:
    case 17:
        PictureOpener::Open(m_recent.Item(index - 13));
        break;
    case 19:
        Shutdown();
        break;
    default:
        if (!MainMenus::IsTitle(QStringLiteral("mnuFile"), index))
            Q_EMIT CommandRequested(QStringLiteral("mnuFile"), index);
        break;
    }
}

void mdiMain::mnuEdit_Click(int index)
{
    switch (index) {
    case 1: {
        const UndoLog::Outcome outcome = UndoLog::global().Undo();
        if (!outcome.report.isEmpty())
            MsgBox::Tell(this, FileUndo::UndoTitle(), outcome.report,
                         outcome.ok ? QMessageBox::Information : QMessageBox::Warning);
        break;
    }
    case 3:
    case 4:
        ChildOps::Call(ActiveChild(), "CutCopy", index == 3);
        break;
    case 5:
        CallChild("PasteImages");
        break;
    default:
        Q_EMIT CommandRequested(QStringLiteral("mnuEdit"), index);
        break;
    }
}

void mdiMain::mnuView_Controls_Click(int index)
{
    if (index >= 1 && index <= 3) {
        QWidget* child = ActiveChild();
        QAction* action = m_menus->Action(QStringLiteral("mnuView_Controls"), index);
        if (!child || !action)
            return;
        // The entry shows the bar's state for the child; a click turns it over.
        const bool visible = !child->property(QStringLiteral("View_%1").arg(index).toLatin1()).toBool();
        child->setProperty(QStringLiteral("View_%1").arg(index).toLatin1(), visible);
        action->setCheckable(true);
        action->setChecked(visible);
        ChildOps::Call(child, "ShowBar", index, visible);
        settings().writeBool(Keys::View_(index).in(child->objectName()), visible);
        return;
    }
    if (index == 5)
        PictureWindows::FullScreen();
}

void mdiMain::mnuTools_Click(int index)
{
    switch (index) {
    case 1:
    case 3:
    case 5:
        tlbMain_ButtonClick(index - 1);
        break;
    case 7:
        OpenWorkshop();
        break;
    case 9:
        frmOptions::ShowDialog(this);
        break;
    default:
        break;
    }
}

void mdiMain::mnuStuff_Click(int index)
{
    if (index == 1)
        ScreenShot::TakeAndShow(this);
    else if (index == 5 && RestoreDefaults::Confirm(this))
        RestoreAllDefaults();
}

void mdiMain::RestoreAllDefaults()
{
    // Windows write their settings as they close: they go first, so nothing is written back.
    m_area->closeAllSubWindows();
    PictureWindows::CloseAll();
    RestoreDefaults::Reset(settings(), Globals());

    const AppGlobals& globals = Globals();
    statusBar()->setVisible(globals.option(Opt::StatusBar));
    m_sideBars[0]->setVisible(globals.option(Opt::SideBar));
    if (globals.option(Opt::SideBar))
        m_sideBars[0]->Dock(3);
    m_tray->SetIconVisible(globals.option(Opt::TrayIcon));
    ApplyWallpaperTicks(2);
    MainMenu_View(0);
    m_recent.Load(settings(), Section);
    RebuildRecentMenu();
    SetMinToTrayMinutes(10);
    settings().readInto(Keys::MinToTray_Minutes, m_minToTrayMinutes);
}

void mdiMain::mnuWallpaper_Click(int index)
{
    if (index >= 2) {
        ApplyWallpaperTicks(index);
        settings().write(Keys::Wallpaper_Style, index);
    } else if (index == 1) {
        Wallpaper::SetAsWallpaper(this, {}, false, Wallpaper::TickedStyle(*m_menus));
    }
}

void mdiMain::mnuWindow_Click(int index)
{
    MdiArrange::Arrange(m_area, MenuTable::WindowArrangement(index));
}

void mdiMain::mnuHelp_Click(int index)
{
    switch (index) {
    case 1:
    case 10: {
        if (!m_help)
            m_help = new frmHelp(this);
        auto* help = static_cast<frmHelp*>(m_help.data());
        help->ShowTopic(index == 10 ? QStringLiteral("about") : QString());
        help->show();
        help->raise();
        break;
    }
    case 2:
        ShowTipOfTheDay();
        break;
    case 7:
        if (!m_about) {
            m_about = new frmAbout(this);
            m_about->setAttribute(Qt::WA_DeleteOnClose);
        }
        m_about->show();
        m_about->raise();
        break;
    case 8:
        (new frmSplash(false))->Start();
        break;
    case 11:
        QDesktopServices::openUrl(QUrl(QStringLiteral("mailto:") + QStringLiteral(LUMBRA_SUPPORT_EMAIL)));
        break;
    default:
        break;
    }
}

void mdiMain::mnuSys_Click(int index)
{
    switch (index) {
    case 1:
        ShowMain();
        break;
    case 2:
        ScreenShot::TakeAndShow(this);
        break;
    case 4:
        mnuHelp_Click(7);
        break;
    case 6:
        Shutdown();
        break;
    default:
        break;
    }
}

void mdiMain::mnuPopup_ImageOptions_Click(int index)
{
    switch (index) {
    case 0:
        PictureWindows::FullScreen();
        break;
    case 4:
        RefreshChild();
        break;
    case 6:
        ZipPictures::Run(this, ChosenPictures());
        break;
    case 9:
    case 10:
        ChildOps::Call(ActiveChild(), "CutCopy", index == 9);
        break;
    case 11:
        CallChild("PasteImages");
        break;
    case 13:
        CallChild("RenameImage");
        break;
    case 14:
        PictureFiles::SaveAsBitmap(this, {});
        break;
    case 15:
        PicturePrinter::PrintCurrent(this);
        break;
    case 16:
        CallChild("DeleteItems");
        break;
    case 18:
        frmImageProps::ShowCurrent(this);
        break;
    default:
        Q_EMIT CommandRequested(QStringLiteral("mnuPopup_ImageOptions"), index);
        break;
    }
}

void mdiMain::mnuSort_By_Click(int index)
{
    ChildOps::Call(ActiveChild(), "SortItems", index);
}

void mdiMain::mnuImageOptions_SetAs_Click(int index)
{
    if (index == 0)
        mnuWallpaper_Click(1);
}

void mdiMain::mnuImgPreview_Options_Click(int index)
{
    QWidget* child = ActiveChild();
    if ((index == 0 || index == 1) && child) {
        const bool stretch = index == 0;
        settings().writeBool(Keys::Sel_Stretch.in(child->objectName()), stretch);
        ChildOps::Call(child, "SetStretch", stretch);
    } else if (index == 6) {
        frmImageProps::ShowCurrent(this);
    }
}

void mdiMain::mnuAlbums_Click(int index)
{
    switch (index) {
    case 2:
        AlbumCommands::RenameCurrent(this, Gallery());
        break;
    case 3:
        AlbumCommands::DeleteCurrent(this, Gallery());
        break;
    case 5:
        AlbumCommands::ShowProperties(this, Gallery());
        break;
    default:
        break;
    }
}

frmThumbnails* mdiMain::Gallery()
{
    return qobject_cast<frmThumbnails*>(OpenChild(MenuTable::ThumbnailsButton));
}
