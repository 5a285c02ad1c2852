#pragma once

#ifdef Q_OS_WIN

#include "common/DesktopWallpaper.h"

// The Windows desktop: the style as two values under "Control Panel\Desktop", the picture
// through SystemParametersInfo, which also tells every window of the change.
class WindowsWallpaper : public DesktopWallpaper
{
public:
    QString Name() const override { return QStringLiteral("Windows"); }
    bool WriteStyle(WallpaperStyle style, QString* reason) override;
    bool SetPicture(const QString& file, QString* reason) override;
};

#endif
