#include "app/MdiArrange.h"

#include <QMdiArea>
#include <QMdiSubWindow>
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

void Arrange(QMdiArea* area, int arrangement)
{
    QList<QMdiSubWindow*> normal;
    QList<QMdiSubWindow*> minimised;
    for (QMdiSubWindow* sub : area->subWindowList())
        (sub->isMinimized() ? minimised : normal).append(sub);
    const QRect space = area->viewport()->rect();

    if (arrangement == 0) {
        area->cascadeSubWindows();
    } else if (arrangement == 1 || arrangement == 2) {
        const QList<QRect> cells =
            Tile(space, int(normal.size()), arrangement == 1 ? Qt::Horizontal : Qt::Vertical);
        for (qsizetype i = 0; i < normal.size(); ++i) {
            normal[i]->showNormal();
            normal[i]->setGeometry(cells[i]);
        }
    } else if (arrangement == 3 && !minimised.isEmpty()) {
        const QList<QPoint> places = IconPlaces(space, minimised.first()->size(), int(minimised.size()));
        for (qsizetype i = 0; i < minimised.size(); ++i)
            minimised[i]->move(places[i]);
    }
}

} // namespace MdiArrange
