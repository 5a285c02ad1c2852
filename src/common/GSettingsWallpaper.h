#pragma once

#include "common/DesktopWallpaper.h"

#include <QStringList>

// Desktops that keep their wallpaper in GSettings, written through the gsettings program:
// the GNOME family (GNOME, Ubuntu, Budgie, Unity), Cinnamon and MATE.
class GSettingsWallpaper : public DesktopWallpaper
{
public:
    static std::unique_ptr<GSettingsWallpaper> Gnome();
    static std::unique_ptr<GSettingsWallpaper> Cinnamon();
    static std::unique_ptr<GSettingsWallpaper> Mate();

    QString Name() const override { return m_name; }
    bool WriteStyle(WallpaperStyle style, QString* reason) override;
    bool SetPicture(const QString& file, QString* reason) override;

    // A text as GVariant text format writes a string: in single quotes, with backslash escapes.
    static QString Quoted(const QString& text);

private:
    GSettingsWallpaper(QString name, QString schema, QStringList uriKeys, QStringList pathKeys);
    bool set(const QString& key, const QString& value, QString* reason) const;

    QString m_name;
    QString m_schema;
    QStringList m_uriKeys;  // keys that take a file URI
    QStringList m_pathKeys; // keys that take a plain path
};
