#include "app/frmSysTray.h"

#include <QCursor>
#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

frmSysTray::frmSysTray(QMenu* trayMenu, QObject* parent) : QObject(parent), m_menu(trayMenu)
{
    tmrPause.setInterval(600);
    tmrPopup_Bug.setInterval(800);
    for (QTimer* timer : {&tmrPause, &tmrPopup_Bug})
        connect(timer, &QTimer::timeout, timer, &QTimer::stop);
    tmrPause.start();

    m_icon = new QSystemTrayIcon(QIcon(QStringLiteral(":/icons/lumbra.svg")), this);
    m_icon->setToolTip(QStringLiteral("Lumbra"));
    connect(m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Context)
            TrayMessage(RightButtonUp);
        else if (reason == QSystemTrayIcon::DoubleClick)
            TrayMessage(LeftDoubleClick);
    });
    // Some trays send a second context request as the menu closes; ignore it for a moment.
    if (m_menu)
        connect(m_menu, &QMenu::aboutToHide, &tmrPopup_Bug, qOverload<>(&QTimer::start));
}

frmSysTray::~frmSysTray() = default;

void frmSysTray::SetIconVisible(bool visible)
{
    m_icon->setVisible(visible);
}

bool frmSysTray::IconVisible() const
{
    return m_icon->isVisible();
}

bool frmSysTray::CanHideToTray() const
{
    return QSystemTrayIcon::isSystemTrayAvailable() && m_icon->isVisible();
}

void frmSysTray::ShowBalloon(const QString& title, const QString& text)
{
    if (CanHideToTray() && QSystemTrayIcon::supportsMessages())
        m_icon->showMessage(title, text, QSystemTrayIcon::Information, 8000);
    else
        Q_EMIT BalloonUnshown(title, text);
}

void frmSysTray::TrayMessage(int message)
{
    switch (message) {
    case RightButtonUp:
        if (tmrPopup_Bug.isActive() || !m_menu)
            return;
        m_menu->popup(QCursor::pos());
        Q_EMIT MenuShown();
        break;
    case LeftDoubleClick:
        Q_EMIT RestoreRequested();
        break;
    default:
        break;
    }
}
