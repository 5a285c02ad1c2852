#include "common/PlasmaWallpaper.h"

#include <QUrl>

#ifdef LUMBRA_HAVE_DBUS
#include <QDBusConnection>
#include <QDBusMessage>
#endif

QString PlasmaWallpaper::ScriptString(const QString& text)
{
    QString literal = QStringLiteral("\"");
    for (const QChar c : text) {
        const bool safe = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') ||
                          (c >= u'0' && c <= u'9') || QStringView(u"/:._-%").contains(c);
        if (safe)
            literal += c;
        else
            literal += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
    return literal + u'"';
}

QString PlasmaWallpaper::ScriptForAllDesktops(const QString& body)
{
    return QStringLiteral(
               "var all = desktops();\n"
               "for (var i = 0; i < all.length; i++) {\n"
               "  var d = all[i];\n"
               "  d.wallpaperPlugin = \"org.kde.image\";\n"
               "  d.currentConfigGroup = [\"Wallpaper\", \"org.kde.image\", \"General\"];\n") +
           body + QStringLiteral("}\n");
}

bool PlasmaWallpaper::WriteStyle(WallpaperStyle style, QString* reason)
{
    // The image wallpaper's fill modes are those of a Qt Quick image: 0 stretch, 3 tile, 6 pad.
    int fillMode = 6;
    if (style == WallpaperStyle::Stretched)
        fillMode = 0;
    else if (style == WallpaperStyle::Tiled)
        fillMode = 3;
    return run(
        ScriptForAllDesktops(QStringLiteral("  d.writeConfig(\"FillMode\", %1);\n").arg(fillMode)),
        reason);
}

bool PlasmaWallpaper::SetPicture(const QString& file, QString* reason)
{
    // The wallpaper reloads only when its setting changes: the same name again goes through
    // an empty one first, or the desktop keeps showing the old picture.
    const QString uri = ScriptString(QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded));
    return run(ScriptForAllDesktops(QStringLiteral("  if (d.readConfig(\"Image\") == %1)\n"
                                                   "    d.writeConfig(\"Image\", \"\");\n"
                                                   "  d.writeConfig(\"Image\", %1);\n")
                                        .arg(uri)),
               reason);
}

bool PlasmaWallpaper::run(const QString& script, QString* reason)
{
#ifdef LUMBRA_HAVE_DBUS
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.kde.plasmashell"), QStringLiteral("/PlasmaShell"),
        QStringLiteral("org.kde.PlasmaShell"), QStringLiteral("evaluateScript"));
    call << script;
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, 10000);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return true;
    if (reason)
        *reason = reply.errorMessage();
    return false;
#else
    Q_UNUSED(script);
    if (reason)
        *reason = QStringLiteral("this build has no D-Bus to reach the Plasma shell");
    return false;
#endif
}
