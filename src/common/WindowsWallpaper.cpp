#include "common/WindowsWallpaper.h"

#ifdef Q_OS_WIN

#include "common/modRegistry.h"

#include <QDir>

#include <qt_windows.h>

bool WindowsWallpaper::WriteStyle(WallpaperStyle style, QString* reason)
{
    Q_UNUSED(reason);
    // Centred is both values empty; both are always written, empty or not.
    const QString wallpaperStyle =
        style == WallpaperStyle::Stretched ? QStringLiteral("2") : QString();
    const QString tileWallpaper = style == WallpaperStyle::Tiled ? QStringLiteral("1") : QString();
    const QString key = QStringLiteral("Control Panel\\Desktop");
    HKEY root = nullptr;
    modRegistry::RegWriteString(root, key, QStringLiteral("WallpaperStyle"), wallpaperStyle);
    modRegistry::RegWriteString(root, key, QStringLiteral("TileWallpaper"), tileWallpaper);
    return true;
}

bool WindowsWallpaper::SetPicture(const QString& file, QString* reason)
{
    QByteArray path = QDir::toNativeSeparators(file).toLocal8Bit();
    // 20 sets the desktop wallpaper; 3 stores it in the user's profile and tells every window.
    if (SystemParametersInfoA(SPI_SETDESKWALLPAPER, 0, path.data(),
                              SPIF_UPDATEINIFILE | SPIF_SENDCHANGE))
        return true;
    if (reason)
        *reason = QStringLiteral("SystemParametersInfo refused the picture");
    return false;
}

#endif
