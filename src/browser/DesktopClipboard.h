#pragma once

#include <QStringList>

#include <memory>
#include <optional>

class QMimeData;

// File lists on the desktop clipboard in the forms file managers exchange: GNOME's
// x-special/gnome-copied-files (and its older text/plain form), KDE's uri-list with a cut
// marker, and plain uri-lists.
namespace DesktopClipboard {

struct Contents
{
    QStringList paths; // absolute local paths, in clipboard order
    bool cut = false;
};

// Paths in every form file managers read, marked as cut or copied; for the clipboard and for
// drags to a file manager alike.
std::unique_ptr<QMimeData> Pack(const QStringList& paths, bool cut);
// Puts paths on the clipboard, marked as cut or copied.
void Put(const QStringList& paths, bool cut);
// The local files data names, or nothing when it names none.
std::optional<Contents> Read(const QMimeData* data);
// Empties the clipboard once a cut has been pasted, so it cannot be pasted twice; a clipboard
// that holds anything but a cut file list is left alone.
void ClearAfterCutPaste();

} // namespace DesktopClipboard
