#pragma once

#include <QString>
#include <QStringList>

class QMdiArea;
class QWidget;
class frmFullScreen;
class frmViewImage;

// The picture windows of the run: one per file, with the file's path as its caption and key,
// and the full-screen view of the current picture.
//
// Paths are keys without regard to letter case, so two spellings of one file share a window.
// Asking again for a file that already has a window shows the current picture full screen.
namespace PictureWindows {

// The frame picture windows open in, and the main window that gives way to full screen.
// Until a frame is set, Open() does nothing.
void SetHost(QMdiArea* area, QWidget* mainWindow);

// Opens path in a new picture window, or shows the current picture full screen when the path
// has a window already. Returns the new window, if one was made.
frmViewImage* Open(const QString& path);
// Shows the current picture full screen; without a current picture it does nothing.
frmFullScreen* FullScreen();
// The full-screen view while it is open.
frmFullScreen* FullScreenWindow();

// The paths that have a window now, in the spelling they were opened with.
QStringList OpenPaths();
// How many windows were opened this run: the count only grows.
int WindowsOpened();

// The main window given to SetHost.
QWidget* MainWindow();
// Closes the frame's current child window when it is a picture window.
void CloseActivePictureWindow();

// The main window gives way to full screen (entering) or comes back (leaving).
void PrepareMainForFullScreen(bool entering);
// Brings a top-level window to the front and gives it the focus.
void KeepAbove(QWidget* window);
// Shows window full screen on the screen the main window is on, covering it also where no
// window manager carries out the full-screen request.
void ShowFullScreen(QWidget* window);

// For the picture window: its file no longer has a window.
void Forget(const QString& path);
// For tests and the end of the run: closes every picture window and the full-screen view.
void CloseAll();

} // namespace PictureWindows
