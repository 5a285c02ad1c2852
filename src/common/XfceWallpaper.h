#pragma once

#include "common/DesktopWallpaper.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

// XFCE: the desktop keeps a picture and a style for every monitor and workspace in the
// xfce4-desktop channel of xfconf, set through xfconf-query.
class XfceWallpaper : public DesktopWallpaper
{
public:
    QString Name() const override { return QStringLiteral("XFCE"); }
    bool WriteStyle(WallpaperStyle style, QString* reason) override;
    bool SetPicture(const QString& file, QString* reason) override;

    // The channel's properties as "xfconf-query -l -v" lists them: name, blanks, value.
    static QHash<QString, QString> ParseListing(const QByteArray& listing);
    // Every "/backdrop/screen0/monitorM/workspaceW" folder the properties name, sorted. When
    // there is none yet (a desktop never set up), the first workspace of each monitor, named
    // as the desktop names monitors: by their outputs.
    static QStringList BackdropFolders(const QHash<QString, QString>& properties,
                                       const QStringList& monitorNames);

private:
    bool load(QString* reason);
    bool set(const QString& property, const QString& type, const QString& value, QString* reason);

    QHash<QString, QString> m_properties;
    QStringList m_folders;
};
