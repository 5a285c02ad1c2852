#pragma once

#include <QPointer>

class QMenu;
class QPoint;

// The picture context menu that every picture pane shares: the main window hands it over,
// and a right-button release on a picture shows it at the pointer.
namespace PictureMenu {

void SetMenu(QMenu* menu);
// Shows the menu when button is the right one (Qt::RightButton); returns whether it did.
bool ButtonReleased(int button);
// Shows the menu at a point of the screen: where the menu key asked for it.
bool ShowAt(const QPoint& globalPos);

} // namespace PictureMenu
