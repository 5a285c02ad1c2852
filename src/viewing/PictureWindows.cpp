#include "viewing/PictureWindows.h"

#include "common/AppGlobals.h"
#include "viewing/frmFullScreen.h"
#include "viewing/frmViewImage.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QHash>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QScreen>

#include <memory>
#include <vector>

namespace PictureWindows {

namespace {

struct State
{
    QPointer<QMdiArea> area;
    QPointer<QWidget> main;
    // Case-folded path to the path as opened; made on the first open.
    std::unique_ptr<QHash<QString, QString>> open;
    // One slot per window ever opened; a closed window leaves its slot empty.
    std::vector<QPointer<frmViewImage>> windows;
    QPointer<frmFullScreen> fullScreen;
};

State& state()
{
    static State current;
    return current;
}

QString keyOf(const QString& path)
{
    return path.toCaseFolded();
}

} // namespace

void SetHost(QMdiArea* area, QWidget* mainWindow)
{
    State& s = state();
    s.area = area;
    s.main = mainWindow;
    if (!area || area->findChild<QObject*>(QStringLiteral("PictureWindowsHook"), Qt::FindDirectChildrenOnly))
        return;
    // The picture window the user turns to holds the picture that full screen, properties and
    // printing act on.
    auto* hook = new QObject(area);
    hook->setObjectName(QStringLiteral("PictureWindowsHook"));
    QObject::connect(area, &QMdiArea::subWindowActivated, hook, [](QMdiSubWindow* sub) {
        if (auto* window = sub ? qobject_cast<frmViewImage*>(sub->widget()) : nullptr)
            if (!window->File().isEmpty())
                Globals().CurrentPicture = window->File();
    });
}

frmViewImage* Open(const QString& path)
{
    State& s = state();
    if (path.isEmpty() || !s.area)
        return nullptr;
    if (!s.open)
        s.open = std::make_unique<QHash<QString, QString>>();
    const QString key = keyOf(path);
    if (s.open->contains(key)) {
        FullScreen();
        return nullptr;
    }
    s.open->insert(key, path);

    s.windows.emplace_back();
    auto* window = new frmViewImage;
    s.windows.back() = window;
    window->setFile(path);
    window->setAttribute(Qt::WA_DeleteOnClose);
    QMdiSubWindow* sub = s.area->addSubWindow(window);
    if (s.main)
        sub->setWindowIcon(s.main->windowIcon());
    window->Load();
    return window;
}

frmFullScreen* FullScreen()
{
    State& s = state();
    if (Globals().CurrentPicture.isEmpty())
        return nullptr;
    PrepareMainForFullScreen(true);
    if (!s.fullScreen) {
        s.fullScreen = new frmFullScreen;
        s.fullScreen->setAttribute(Qt::WA_DeleteOnClose);
        s.fullScreen->Load();
    }
    s.fullScreen->setImageFile(Globals().CurrentPicture);
    return s.fullScreen;
}

frmFullScreen* FullScreenWindow()
{
    return state().fullScreen;
}

QStringList OpenPaths()
{
    State& s = state();
    return s.open ? s.open->values() : QStringList();
}

int WindowsOpened()
{
    return int(state().windows.size());
}

QWidget* MainWindow()
{
    return state().main;
}

void CloseActivePictureWindow()
{
    QMdiArea* area = state().area;
    // While another top-level window has the focus the frame has no active child, only a
    // current one.
    QMdiSubWindow* sub = area ? area->currentSubWindow() : nullptr;
    if (sub && qobject_cast<frmViewImage*>(sub->widget()))
        sub->close();
}

void PrepareMainForFullScreen(bool entering)
{
    QWidget* main = state().main;
    if (!main)
        return;
    // Out of the way rather than underneath: a main window kept on top would otherwise cover
    // the full-screen view on some desktops.
    if (entering)
        main->hide();
    else
        main->show();
}

void ShowFullScreen(QWidget* window)
{
    QScreen* screen = QGuiApplication::primaryScreen();
    if (QWidget* main = MainWindow(); main && main->screen())
        screen = main->screen();
    if (screen)
        window->setGeometry(screen->geometry());
    window->showFullScreen();
}

void KeepAbove(QWidget* window)
{
    if (!window)
        return;
    window->raise();
    window->activateWindow();
}

void Forget(const QString& path)
{
    if (State& s = state(); s.open)
        s.open->remove(keyOf(path));
}

void CloseAll()
{
    State& s = state();
    if (s.fullScreen)
        s.fullScreen->close();
    for (const QPointer<frmViewImage>& window : s.windows)
        if (window) {
            if (auto* sub = qobject_cast<QMdiSubWindow*>(window->parentWidget()))
                sub->close();
            else
                window->close();
        }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace PictureWindows
