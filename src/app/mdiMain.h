#pragma once

#include "app/RecentList.h"

#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <array>
#include <memory>

class MainMenus;
class QMdiArea;
class QMdiSubWindow;
class QToolBar;
class frmSysTray;
class ucSideBar;
class WindowBalloon;
class ucCoolProg;
class frmThumbnails;

// The main window: a frame of child windows with the menus, the toolbar, the side bar, the
// status strip and the tray icon. It routes commands to the active child window by name.
class mdiMain : public QMainWindow
{
    Q_OBJECT
    Q_PROPERTY(QObject* MyEnabled READ MyEnabled WRITE setMyEnabled)
public:
    static inline const QString Section = QStringLiteral("mdiMain");

    explicit mdiMain(QWidget* parent = nullptr);
    ~mdiMain() override;

    // Runs the load steps: menus, side bar, status strip, ticks, recent list, greeting.
    void Load();

    // Brings the window back from the tray.
    Q_INVOKABLE void ShowMain();
    // Sends the window to the tray (minimises it where there is no tray).
    Q_INVOKABLE void SendToTray();
    // 0 toolbar and menus, 1 menus only, 2 toolbar only.
    Q_INVOKABLE void MainMenu_View(int view);
    // Opens, or brings forward, the child window of toolbar button index (0, 2 or 4).
    Q_INVOKABLE QWidget* OpenChild(int toolbarIndex);
    // Puts text in panel 1 of the status strip.
    Q_INVOKABLE void SetStatusText(const QString& text);
    // Ends the program: hides, says goodbye, saves the window state and quits.
    Q_INVOKABLE void Shutdown();
    // Offers a picture path to the recent list and rebuilds its menu entries.
    void ProposeRecent(const QString& path);

    QObject* MyEnabled() const { return m_myEnabled; }
    void setMyEnabled(QObject* object);

    // The handlers of the menu arrays and the toolbar, each taking the entry's index.
    void tlbMain_ButtonClick(int index);
    void mnuFile_Click(int index);
    void mnuEdit_Click(int index);
    void mnuView_Controls_Click(int index);
    void mnuTools_Click(int index);
    void mnuStuff_Click(int index);
    void mnuWallpaper_Click(int index);
    void mnuWindow_Click(int index);
    void mnuHelp_Click(int index);
    void mnuSys_Click(int index);
    void mnuPopup_ImageOptions_Click(int index);
    void mnuSort_By_Click(int index);
    void mnuImageOptions_SetAs_Click(int index);
    void mnuImgPreview_Options_Click(int index);
    void mnuAlbums_Click(int index);

    QWidget* ActiveChild() const;
    MainMenus* Menus() const { return m_menus; }
    QMdiArea* Area() const { return m_area; }
    frmSysTray* Tray() const { return m_tray; }
    ucSideBar* SideBar(int index) const;
    WindowBalloon* Balloon() const { return m_balloon; }
    ucCoolProg* StatusStrip() const { return m_statusStrip; }
    const RecentList& Recent() const { return m_recent; }
    int IdleTicks() const { return m_idleTicks; }
    int MinToTrayMinutes() const { return m_minToTrayMinutes; }
    // A new idle time counts from now, so a shorter one cannot be passed already.
    void SetMinToTrayMinutes(int minutes)
    {
        m_minToTrayMinutes = minutes;
        m_idleTicks = 0;
    }
    bool StartingUp() const { return m_startingUp; }
    bool HiddenToTray() const { return m_hiddenToTray; }
    QString Greeting() const { return m_greeting; }

    std::array<QTimer, 5> tmrMain;

Q_SIGNALS:
    // The tip of the day is wanted (at start with its option on, or from the Help menu).
    void TipWindowRequested();
    // A command of a feature that answers it elsewhere: the array and the entry's index.
    void CommandRequested(const QString& array, int index);
    // A picture to open in a window of its own (double clicks on pictures, recent entries).
    void OpenPictureRequested(const QString& path);
    // The window has unloaded at the end of the run.
    void Unloaded();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void tmrMain_Timer(int index);
    void DeferredStartUp();
    void ShowTipOfTheDay();
    void RebuildRecentMenu();
    void UpdateCommandStates();
    void UpdateUndoEntry();
    void RestoreAllDefaults();
    // Opens the workshop on the current picture.
    void OpenWorkshop();
    // The gallery, opened when it is not.
    frmThumbnails* Gallery();
    // A gallery with the albums menu on its toolbar.
    QWidget* NewGallery();
    // The selected pictures of the active window, else the current picture.
    QStringList ChosenPictures() const;
    void RestoreChildCommands();
    void LeaveCloseKeysToTheMenu();
    void ApplyWallpaperTicks(int style);
    void CreateToolbar();
    void CreateSideBar();
    bool CallChild(const char* operation);
    void RefreshChild();
    void OnMenuClicked(const QString& array, int index);

    QMdiArea* m_area = nullptr;
    MainMenus* m_menus = nullptr;
    QToolBar* m_toolbar = nullptr;
    ucCoolProg* m_statusStrip = nullptr;
    frmSysTray* m_tray = nullptr;
    std::array<ucSideBar*, 1> m_sideBars{};
    WindowBalloon* m_balloon = nullptr;
    QPointer<QWidget> m_help;
    QPointer<QWidget> m_about;
    QPointer<QWidget> m_workshop;
    RecentList m_recent;
    QPointer<QObject> m_myEnabled;
    QString m_greeting;
    int m_idleTicks = 0;
    int m_minToTrayMinutes = 10;
    int m_width = 0;
    int m_height = 0;
    bool m_startingUp = false;
    bool m_hiddenToTray = false;
    bool m_unloading = false;
};
