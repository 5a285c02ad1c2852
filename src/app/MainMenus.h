#pragma once

#include <QHash>
#include <QObject>
#include <QString>

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

// The menu arrays of the menu table made into menus and actions. Every click reports the
// array's name and the entry's index through one signal, so each array has one handler.
class MainMenus : public QObject
{
    Q_OBJECT
public:
    explicit MainMenus(QWidget* owner);

    // Adds the seven bar titles with their menus.
    void FillMenuBar(QMenuBar* bar) const;
    // The menu that shows an array's entries (the pop-ups and the tray menu too).
    QMenu* Menu(const QString& array) const { return m_menus.value(array); }
    // The action of entry index; nullptr where the array has a gap.
    QAction* Action(const QString& array, int index) const;

    // Caption-only entries that title their menu; they carry no command.
    static bool IsTitle(const QString& array, int index);

Q_SIGNALS:
    void Clicked(const QString& array, int index);

private:
    QMenu* build(const QString& array, QWidget* owner);
    static void applyKeys(QAction* action, const QString& arrayName, int index, QWidget* owner);

    QHash<QString, QMenu*> m_menus;
    QHash<QString, QHash<int, QAction*>> m_actions;
};
