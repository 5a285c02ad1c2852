#include "app/MdiArrange.h"

#include <QSize>

namespace MdiArrange {

QList<QRect> Tile(const QRect& area, int count, Qt::Orientation orientation)
{
    QList<QRect> cells;
    if (count <= 0 || area.isEmpty())
        return cells;
    const bool rows = orientation == Qt::Horizontal;
    const int length = rows ? area.height() : area.width();
    for (int i = 0; i < count; ++i) {
        // Spread the remainder so the cells cover the area exactly.
        const int start = length * i / count;
        const int end = length * (i + 1) / count;
        cells.append(rows ? QRect(area.left(), area.top() + start, area.width(), end - start)
                          : QRect(area.left() + start, area.top(), end - start, area.height()));
    }
    return cells;
}

QList<QPoint> IconPlaces(const QRect& area, const QSize& icon, int count)
{
    QList<QPoint> places;
    if (count <= 0 || icon.isEmpty())
        return places;
    const int perRow = qMax(1, area.width() / icon.width());
    for (int i = 0; i < count; ++i) {
        const int row = i / perRow;
        const int column = i % perRow;
        places.append(QPoint(area.left() + column * icon.width(),
                             area.bottom() + 1 - (row + 1) * icon.height()));
    }
    return places;
}

} // namespace MdiArrange
