#pragma once

#include <QString>

class mdiMain;

// "ScreenShot!": a picture of the screen on the clipboard and in a bitmap file in the program
// folder, then shown in a picture window.
namespace ScreenShot {

// The file for the next screenshot in folder: "ScreenShot.bmp" while there is none, after that
// always "ScreenShot(1).bmp", which each new one replaces.
QString NextFileName(const QString& folder);

// Grabs the screen, puts the picture on the clipboard and writes it to the next file of the
// program folder. Returns the file's path; empty, with a reason unless the user refused the
// desktop's question, when there is no file.
QString Take(QString* reason = nullptr);

// Take(), then the file in a new picture window (and on the recent list), the main window
// coming back from the tray for it. A failure is told.
void TakeAndShow(mdiMain* main);

} // namespace ScreenShot
