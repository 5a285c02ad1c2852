#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

class QMenu;
class QSystemTrayIcon;

// Owns the tray icon: shows balloons on it and turns its clicks into the two messages the main
// window answers, a right-button release (517) that opens the tray menu and a double click (515)
// that restores the window.
class frmSysTray : public QObject
{
    Q_OBJECT
public:
    enum Message { RightButtonUp = 517, LeftDoubleClick = 515 };

    frmSysTray(QMenu* trayMenu, QObject* parent = nullptr);
    ~frmSysTray() override;

    // Shows or removes the icon (the "show icon in system tray" option).
    void SetIconVisible(bool visible);
    bool IconVisible() const;
    // True when a tray exists now and our icon is in it: only then may the main window hide.
    bool CanHideToTray() const;

    // A balloon on the icon; without a tray the text goes to BalloonUnshown instead.
    void ShowBalloon(const QString& title, const QString& text);

    // Answers one mouse message of the icon.
    void TrayMessage(int message);

    QTimer tmrPause;
    QTimer tmrPopup_Bug;

Q_SIGNALS:
    void RestoreRequested();
    void BalloonUnshown(const QString& title, const QString& text);
    void MenuShown();

private:
    QPointer<QMenu> m_menu;
    QSystemTrayIcon* m_icon = nullptr;
};
