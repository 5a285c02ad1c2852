#pragma once

#include "common/DesktopWallpaper.h"

#include <QString>

class MainMenus;
class QWidget;

// "Set As Wallpaper!": a bitmap copy of the picture in the per-user backgrounds folder, shown
// by the desktop in the style ticked in the wallpaper menu.
namespace Wallpaper {

inline const QString SetText = QStringLiteral("OK!  Desktop wallpaper set - Enjoy!");
inline const QString FailTitle = QStringLiteral("Lumbra - wallpaper not set");
inline const QString FailText = QStringLiteral("Sorry, having a problem setting that picture as "
                                               "your wallpaper.  Try a different picture maybe.");

// The copy's path: folder, then the source's file name without its last four characters (the
// extension with its dot, or simply the last four), upper-cased, then ".BMP". The folders keep
// their case.
QString TargetPath(const QString& folder, const QString& source);
// The question asked before another file of that name is replaced.
QString OverwriteQuestion(const QString& target);

// The ticked entry of the style menu: 3 centred, 4 stretched, 5 tiled; 2 when none is.
int TickedStyle(const MainMenus& menus);
// The desktop's style for a style entry; none ticked is centred.
WallpaperStyle StyleOf(int styleEntry);

// Sets path (the current picture when empty) as the wallpaper in the style of styleEntry.
// Without quiet the user is told it worked; a failure is always told. False when the picture
// is not the wallpaper afterwards.
bool SetAsWallpaper(QWidget* parent, const QString& path, bool quiet, int styleEntry);

} // namespace Wallpaper
