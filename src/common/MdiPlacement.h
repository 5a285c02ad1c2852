#pragma once

class QMdiSubWindow;

namespace MdiPlacement {

// Moves a window of the main window's frame back inside the frame's visible area: the frame
// places each new window beside the last one, where a large window runs off the edge.
void KeepInsideArea(QMdiSubWindow* window);

} // namespace MdiPlacement
