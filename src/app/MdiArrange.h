#pragma once

#include <QList>
#include <QPoint>
#include <QRect>

class QMdiArea;

// Where child windows go when the Window menu arranges them.
namespace MdiArrange {

// count cells filling area: Qt::Horizontal stacks full-width rows, Qt::Vertical puts
// full-height columns side by side.
QList<QRect> Tile(const QRect& area, int count, Qt::Orientation orientation);
// Places for count minimised windows of size icon, in rows from the bottom left of area.
QList<QPoint> IconPlaces(const QRect& area, const QSize& icon, int count);

// Arranges the child windows of area: 0 cascade, 1 tile horizontally, 2 tile vertically,
// 3 line up the minimised ones.
void Arrange(QMdiArea* area, int arrangement);

} // namespace MdiArrange
