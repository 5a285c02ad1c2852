#pragma once

#include "common/DesktopWallpaper.h"

// KDE Plasma: every desktop's image wallpaper, set by a script the shell runs
// (org.kde.PlasmaShell.evaluateScript on the session bus).
class PlasmaWallpaper : public DesktopWallpaper
{
public:
    QString Name() const override { return QStringLiteral("Plasma"); }
    bool WriteStyle(WallpaperStyle style, QString* reason) override;
    bool SetPicture(const QString& file, QString* reason) override;

    // text as a string literal of the script language, in double quotes; everything but
    // letters, digits and a few safe marks is written as a \u escape, so no file name can end
    // the literal or the script.
    static QString ScriptString(const QString& text);
    // The script that sets what it is given for every desktop: lines of the image wallpaper's
    // configuration, one per desktop, each starting "d.".
    static QString ScriptForAllDesktops(const QString& body);

private:
    bool run(const QString& script, QString* reason);
};
