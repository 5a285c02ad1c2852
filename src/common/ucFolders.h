#pragma once

#include <QWidget>

class QAction;
class QToolBar;

// A small toolbar for going one folder up or to the desktop, documents or pictures folder.
// It keeps the folder its host last told it and reports each button's folder through
// FolderChanged; the host then sets its address from it.
class ucFolders : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString CurrentPath READ CurrentPath WRITE setCurrentPath)

public:
    explicit ucFolders(QWidget* parent = nullptr);

    QString CurrentPath() const { return m_currentPath; }
    // "Folder Up" is enabled exactly when the path is not empty.
    void setCurrentPath(const QString& path);

    QToolBar* tlbFolders() const { return m_bar; }
    // The button at index 1..5 (1 "Folder Up", 2 a separator, 3 "Desktop", 4 "My Documents",
    // 5 "My Pictures"); null outside that range.
    QAction* Button(int index) const;
    // The buttons' keys (Alt+Up for "Folder Up"); the host window holds them, so they work
    // wherever the focus is in the window.
    QList<QAction*> KeyActions() const;

signals:
    void FolderChanged(const QString& path);

private:
    void buttonClicked(QAction* button);

    QToolBar* m_bar;
    QString m_currentPath;
};
