#include "common/MdiPlacement.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace MdiPlacement {

void KeepInsideArea(QMdiSubWindow* window)
{
    if (!window || !window->mdiArea())
        return;
    const QSize room = window->mdiArea()->viewport()->size();
    window->move(qBound(0, window->x(), qMax(0, room.width() - window->width())),
                 qBound(0, window->y(), qMax(0, room.height() - window->height())));
}

} // namespace MdiPlacement
