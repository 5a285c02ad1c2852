#pragma once

#include <QString>

#include <optional>

class QLineEdit;
class QWidget;
class ucCoolProg;

// Small routines many windows call: size texts, paths, special folders, window state, waits.
// Paths use "/" on every platform; a "folder ends with the separator" rule means "/".
namespace Utilities {

// "999 Bytes", "2 KB", "1,000 KB", "3 MB": steps of 1000, ties to even. Empty when the file
// cannot be read.
std::optional<QString> FileSizeText(const QString& filePath);
// The size text for a byte count, as FileSizeText gives it for a file of that length.
QString SizeText(qint64 bytes);

// "2": every supported platform belongs to the modern branch. With wantName, the system's
// own name.
QString WindowsVersionName(bool wantName);

// The main window's state at the last save: 0 normal, 1 minimised, 2 maximised.
int WindowStateNumber(const QWidget* window);
// Remembers window's state in the program-wide value and stores it as "General"/"WindowState".
void SaveWindowState(const QWidget* window);

// Waits amount milliseconds (seconds when inMilliseconds is false; amount receives the
// milliseconds) while processing events. Handlers may run again during the wait.
void Pause(int& amount, bool inMilliseconds);

// The smallest integer not less than value.
int RoundUp(double value);

// The folder that takes the desktop wallpaper copy, ending with "/".
QString WindowsFolder();
// What follows the last "/" (the whole text when there is none).
QString FileNameOf(const QString& path);
// folder + "/" + name, with no doubled separator.
QString JoinPath(const QString& folder, const QString& name);
// Gives the box the focus and selects its whole text.
void SelectAllText(QLineEdit* box);

// The program folder: $LUMBRA_HOME, else the executable's folder when writable, else the
// per-user data folder. Created when missing.
QString ProgramFolder();

// Shell folder numbers kept from the program's origins: 5 documents, 25 desktop; and the
// pictures folder, which the program calls "My Pictures".
enum SpecialFolder { Documents = 5, Desktop = 25, Pictures = 39 };
// The folder's path, ending with "/"; empty when the platform has none.
QString SpecialFolderPath(SpecialFolder folder);
// "My Documents", "My Pictures" or "Desktop" for those folders; any other path unchanged.
QString SpecialFolderName(const QString& path);

// The main window's status strip, reachable from any window. The main window registers its
// strip; without one (no main window, or it is gone) the routines do nothing.
void SetStatusStrip(ucCoolProg* strip);
ucCoolProg* StatusStrip();
// Puts text in the status strip's caption panel.
void SetStatus(const QString& text);

// Keeps a top-level window above others, or lets it go.
void SetAlwaysOnTop(QWidget* window, bool onTop);
// The system's alert sound.
void Beep();

} // namespace Utilities
