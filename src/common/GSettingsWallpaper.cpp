#include "common/GSettingsWallpaper.h"

#include "common/ExternalProgram.h"

#include <QUrl>

GSettingsWallpaper::GSettingsWallpaper(QString name, QString schema, QStringList uriKeys,
                                       QStringList pathKeys)
    : m_name(std::move(name)), m_schema(std::move(schema)), m_uriKeys(std::move(uriKeys)),
      m_pathKeys(std::move(pathKeys))
{
}

std::unique_ptr<GSettingsWallpaper> GSettingsWallpaper::Gnome()
{
    // GNOME 42 and later show picture-uri-dark with the dark style: both must change.
    return std::unique_ptr<GSettingsWallpaper>(new GSettingsWallpaper(
        QStringLiteral("GNOME"), QStringLiteral("org.gnome.desktop.background"),
        {QStringLiteral("picture-uri"), QStringLiteral("picture-uri-dark")}, {}));
}

std::unique_ptr<GSettingsWallpaper> GSettingsWallpaper::Cinnamon()
{
    return std::unique_ptr<GSettingsWallpaper>(new GSettingsWallpaper(
        QStringLiteral("Cinnamon"), QStringLiteral("org.cinnamon.desktop.background"),
        {QStringLiteral("picture-uri")}, {}));
}

std::unique_ptr<GSettingsWallpaper> GSettingsWallpaper::Mate()
{
    return std::unique_ptr<GSettingsWallpaper>(
        new GSettingsWallpaper(QStringLiteral("MATE"), QStringLiteral("org.mate.background"), {},
                               {QStringLiteral("picture-filename")}));
}

QString GSettingsWallpaper::Quoted(const QString& text)
{
    QString quoted = text;
    quoted.replace(u'\\', QStringLiteral("\\\\"));
    quoted.replace(u'\'', QStringLiteral("\\'"));
    return u'\'' + quoted + u'\'';
}

bool GSettingsWallpaper::set(const QString& key, const QString& value, QString* reason) const
{
    const ExternalProgram::Result result = ExternalProgram::Run(
        QStringLiteral("gsettings"), {QStringLiteral("set"), m_schema, key, Quoted(value)});
    if (!result.ok && reason)
        *reason = result.reason;
    return result.ok;
}

bool GSettingsWallpaper::WriteStyle(WallpaperStyle style, QString* reason)
{
    // The three schemas share these names; "wallpaper" is their word for tiled.
    QString option = QStringLiteral("centered");
    if (style == WallpaperStyle::Stretched)
        option = QStringLiteral("stretched");
    else if (style == WallpaperStyle::Tiled)
        option = QStringLiteral("wallpaper");
    return set(QStringLiteral("picture-options"), option, reason);
}

bool GSettingsWallpaper::SetPicture(const QString& file, QString* reason)
{
    // The desktops watch the file itself, so writing the same name again shows the new picture.
    const QString uri = QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded);
    for (const QString& key : m_uriKeys)
        if (!set(key, uri, reason))
            return false;
    for (const QString& key : m_pathKeys)
        if (!set(key, file, reason))
            return false;
    return true;
}
