#include "app/MainMenus.h"

#include "app/MenuTable.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

MainMenus::MainMenus(QWidget* owner) : QObject(owner)
{
    for (const MenuTable::Array& array : MenuTable::Arrays())
        if (array.name != QLatin1String("mnuTopMenus") && array.name != MenuTable::Popups)
            build(array.name, owner);
}

bool MainMenus::IsTitle(const QString& array, int index)
{
    if (array == QLatin1String("mnuFile"))
        return index == 0 || index == 4 || index == 7 || index == 12;
    if (array == QLatin1String("mnuWindow") || array == QLatin1String("mnuSort_By") ||
        array == QLatin1String("mnuImageOptions_SetAs") ||
        array == QLatin1String("mnuPopup_ImageOptions") ||
        array == QLatin1String("mnuImgPreview_Options"))
        return false;
    return index == 0;
}

QMenu* MainMenus::build(const QString& arrayName, QWidget* owner)
{
    if (QMenu* done = m_menus.value(arrayName))
        return done;
    const MenuTable::Array* array = MenuTable::Find(arrayName);
    auto* menu = new QMenu(owner);
    menu->setObjectName(arrayName);
    m_menus.insert(arrayName, menu);
    auto& actions = m_actions[arrayName];

    for (const MenuTable::Entry& entry : array->entries) {
        QAction* action = nullptr;
        if (entry.caption == QLatin1String("-")) {
            action = menu->addSeparator();
        } else if (!entry.submenu.isEmpty()) {
            QMenu* sub = build(entry.submenu, owner);
            sub->setTitle(entry.caption);
            action = menu->addMenu(sub);
        } else {
            action = menu->addAction(entry.caption);
            if (IsTitle(arrayName, entry.index)) {
                QFont bold = action->font();
                bold.setBold(true);
                action->setFont(bold);
                action->setEnabled(false);
            }
            connect(action, &QAction::triggered, this,
                    [this, arrayName, index = entry.index] { Q_EMIT Clicked(arrayName, index); });
            applyKeys(action, arrayName, entry.index, owner);
        }
        action->setObjectName(QStringLiteral("%1(%2)").arg(arrayName).arg(entry.index));
        actions.insert(entry.index, action);
    }
    return menu;
}

void MainMenus::applyKeys(QAction* action, const QString& arrayName, int index, QWidget* owner)
{
    const QList<QKeySequence> keys = MenuTable::Shortcuts(arrayName, index);
    if (keys.isEmpty())
        return;
    action->setShortcuts(keys);
    // Pop-up menus show their keys too: they are how the user learns them.
    action->setShortcutVisibleInContextMenu(true);
    // Held by the window as well, the keys work while the menu bar is hidden ("View Toolbar
    // Only") and for entries that only a pop-up menu shows.
    if (MenuTable::MainWindowKeys(arrayName, index))
        owner->addAction(action);
}

void MainMenus::FillMenuBar(QMenuBar* bar) const
{
    for (const MenuTable::Entry& top : MenuTable::Find(QStringLiteral("mnuTopMenus"))->entries) {
        QMenu* menu = m_menus.value(top.submenu);
        menu->setTitle(top.caption);
        bar->addMenu(menu);
    }
}

QAction* MainMenus::Action(const QString& array, int index) const
{
    return m_actions.value(array).value(index);
}
