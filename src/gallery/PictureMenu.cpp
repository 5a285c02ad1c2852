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
    if (button != Qt::RightButton || !menu())
        return false;
    menu()->popup(QCursor::pos());
    return true;
}

} // namespace PictureMenu
