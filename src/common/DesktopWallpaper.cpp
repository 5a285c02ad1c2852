#include "common/DesktopWallpaper.h"

#include "common/GSettingsWallpaper.h"
#include "common/PlasmaWallpaper.h"
#include "common/XfceWallpaper.h"

#ifdef Q_OS_WIN
#include "common/WindowsWallpaper.h"
#endif

#include <QStringList>

std::unique_ptr<DesktopWallpaper> DesktopWallpaper::ForDesktop(const QString& currentDesktop)
{
#ifdef Q_OS_WIN
    Q_UNUSED(currentDesktop);
    return std::make_unique<WindowsWallpaper>();
#else
    for (const QString& entry : currentDesktop.split(u':', Qt::SkipEmptyParts)) {
        const QString name = entry.trimmed().toUpper();
        // Budgie and Unity draw their desktops with GNOME's settings.
        if (name == QLatin1String("GNOME") || name == QLatin1String("UBUNTU") ||
            name == QLatin1String("BUDGIE") || name == QLatin1String("UNITY") ||
            name == QLatin1String("GNOME-CLASSIC") || name == QLatin1String("GNOME-FLASHBACK"))
            return GSettingsWallpaper::Gnome();
        if (name == QLatin1String("X-CINNAMON") || name == QLatin1String("CINNAMON"))
            return GSettingsWallpaper::Cinnamon();
        if (name == QLatin1String("MATE"))
            return GSettingsWallpaper::Mate();
        if (name == QLatin1String("KDE"))
            return std::make_unique<PlasmaWallpaper>();
        if (name == QLatin1String("XFCE"))
            return std::make_unique<XfceWallpaper>();
    }
    return nullptr;
#endif
}

std::unique_ptr<DesktopWallpaper> DesktopWallpaper::ForThisDesktop()
{
    return ForDesktop(qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
}
