#include "common/XfceWallpaper.h"

#include "common/ExternalProgram.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>

namespace {

const QString Channel = QStringLiteral("xfce4-desktop");

} // namespace

QHash<QString, QString> XfceWallpaper::ParseListing(const QByteArray& listing)
{
    QHash<QString, QString> properties;
    for (const QString& line : QString::fromLocal8Bit(listing).split(u'\n', Qt::SkipEmptyParts)) {
        const qsizetype blank = line.indexOf(u' ');
        const QString name = blank < 0 ? line : line.left(blank);
        if (name.startsWith(u'/'))
            properties.insert(name, blank < 0 ? QString() : line.mid(blank).trimmed());
    }
    return properties;
}

QStringList XfceWallpaper::BackdropFolders(const QHash<QString, QString>& properties,
                                           const QStringList& monitorNames)
{
    static const QRegularExpression folder(
        QStringLiteral("^(/backdrop/screen0/monitor[^/]+/workspace[^/]+)/"));
    QStringList folders;
    for (auto it = properties.cbegin(); it != properties.cend(); ++it)
        if (const QRegularExpressionMatch match = folder.match(it.key()); match.hasMatch())
            if (!folders.contains(match.captured(1)))
                folders << match.captured(1);
    folders.sort();
    if (folders.isEmpty()) {
        for (const QString& monitor : monitorNames)
            folders << QStringLiteral("/backdrop/screen0/monitor%1/workspace0").arg(monitor);
        if (folders.isEmpty())
            folders << QStringLiteral("/backdrop/screen0/monitor0/workspace0");
    }
    return folders;
}

bool XfceWallpaper::load(QString* reason)
{
    if (!m_folders.isEmpty())
        return true;
    const ExternalProgram::Result listing = ExternalProgram::Run(
        QStringLiteral("xfconf-query"),
        {QStringLiteral("-c"), Channel, QStringLiteral("-l"), QStringLiteral("-v")});
    if (!listing.ok) {
        if (reason)
            *reason = listing.reason;
        return false;
    }
    m_properties = ParseListing(listing.output);
    QStringList monitors;
    for (const QScreen* screen : QGuiApplication::screens())
        monitors << screen->name();
    m_folders = BackdropFolders(m_properties, monitors);
    return true;
}

bool XfceWallpaper::set(const QString& property, const QString& type, const QString& value,
                        QString* reason)
{
    QStringList arguments = {QStringLiteral("-c"), Channel, QStringLiteral("-p"), property};
    // A property the desktop has not made yet must be created with its type.
    if (!m_properties.contains(property))
        arguments << QStringLiteral("-n") << QStringLiteral("-t") << type;
    arguments << QStringLiteral("-s") << value;
    const ExternalProgram::Result result =
        ExternalProgram::Run(QStringLiteral("xfconf-query"), arguments);
    if (!result.ok) {
        if (reason)
            *reason = result.reason;
        return false;
    }
    m_properties.insert(property, value);
    return true;
}

bool XfceWallpaper::WriteStyle(WallpaperStyle style, QString* reason)
{
    if (!load(reason))
        return false;
    QString number = QStringLiteral("1");
    if (style == WallpaperStyle::Tiled)
        number = QStringLiteral("2");
    else if (style == WallpaperStyle::Stretched)
        number = QStringLiteral("3");
    for (const QString& folder : std::as_const(m_folders))
        if (!set(folder + QStringLiteral("/image-style"), QStringLiteral("int"), number, reason))
            return false;
    return true;
}

bool XfceWallpaper::SetPicture(const QString& file, QString* reason)
{
    if (!load(reason))
        return false;
    for (const QString& folder : std::as_const(m_folders)) {
        const QString property = folder + QStringLiteral("/last-image");
        // The desktop draws again only when the value changes: the same name goes through an
        // empty one first, or the old picture stays.
        if (m_properties.value(property) == file &&
            !set(property, QStringLiteral("string"), {}, reason))
            return false;
        if (!set(property, QStringLiteral("string"), file, reason))
            return false;
    }
    return true;
}
