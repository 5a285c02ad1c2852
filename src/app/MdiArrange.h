#pragma once

#include <QList>
#include <QPoint>
#include <QRect>

// Where child windows go when the Window menu arranges them.
namespace MdiArrange {

// count cells filling area: Qt::Horizontal stacks full-width rows, Qt::Vertical puts
// full-height columns side by side.
QList<QRect> Tile(const QRect& area, int count, Qt::Orientation orientation);
// Places for count minimised windows of size icon, in rows from the bottom left of area.
QList<QPoint> IconPlaces(const QRect& area, const QSize& icon, int count);

} // namespace MdiArrange
