#include "gallery/PictureMenu.h"

#include <QCursor>
#include <QMenu>

namespace PictureMenu {

namespace {

QPointer<QMenu>& menu()
{
    static QPointer<QMenu> current;
    return current;
}

} // namespace

void SetMenu(QMenu* newMenu)
{
    menu() = newMenu;
}

bool ButtonReleased(int button)
{
    return button == Qt::RightButton && ShowAt(QCursor::pos());
}

bool ShowAt(const QPoint& globalPos)
{
    if (!menu())
        return false;
    menu()->popup(globalPos);
    return true;
}

} // namespace PictureMenu
