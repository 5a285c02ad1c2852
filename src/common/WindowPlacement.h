#pragma once

#include <QList>
#include <QRect>
#include <QString>

class QWidget;

// Where a window was and how large, kept across runs in the window's own settings section
// as "Left", "Top", "Width" and "Height" (twips). Top-level windows keep their frame's
// position on the desktop; child windows of the main window keep theirs inside it.
namespace WindowPlacement {

// Restores window's placement now, before it is shown, and saves it whenever the window is
// hidden or closed. A window that is maximised or minimised keeps the placement it last had
// in its normal state. Nothing is restored where nothing was saved.
void Keep(QWidget* window, const QString& section);

// Reads the saved placement of section; an empty rectangle when none was saved.
QRect Saved(const QString& section);
void Save(const QRect& placement, const QString& section);

// Where a saved placement may go within areas (the screens' available areas, or the main
// window's client area): no larger than the area that will hold it, and moved so that its
// top-left part can be reached when a screen it was on has gone. An empty result when there
// is no area.
QRect Fit(const QRect& saved, const QList<QRect>& areas);

} // namespace WindowPlacement
