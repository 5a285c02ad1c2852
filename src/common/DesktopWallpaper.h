#pragma once

#include <QString>

#include <memory>

// How the desktop lays its picture out.
enum class WallpaperStyle
{
    Centred,
    Stretched,
    Tiled
};

// Tells one kind of desktop which picture to show. Each desktop keeps its wallpaper in
// settings of its own; a platform adds its own kind and lets ForDesktop() pick it.
class DesktopWallpaper
{
public:
    virtual ~DesktopWallpaper() = default;

    // The desktop's name, for messages in the log.
    virtual QString Name() const = 0;
    // The layout, set on its own before the picture: a picture that then cannot be made
    // leaves the layout chosen.
    virtual bool WriteStyle(WallpaperStyle style, QString* reason) = 0;
    // Shows file (an absolute path) on the desktop.
    virtual bool SetPicture(const QString& file, QString* reason) = 0;

    // The kind for currentDesktop, the colon-separated list of XDG_CURRENT_DESKTOP; the first
    // name a kind knows wins, without regard to case. nullptr when no kind knows any of them.
    // On Windows, always the system's own wallpaper.
    static std::unique_ptr<DesktopWallpaper> ForDesktop(const QString& currentDesktop);
    // The same for the desktop this program runs on.
    static std::unique_ptr<DesktopWallpaper> ForThisDesktop();
};
