#include "common/ScreenGrab.h"

#include "imaging/PictureLoader.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QScreen>

#ifdef LUMBRA_HAVE_DBUS
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <QRandomGenerator>
#include <QTimer>
#include <QUrl>
#endif

namespace ScreenGrab {

namespace {

Result fromScreens()
{
    Result result;
    const QList<QScreen*> screens = QGuiApplication::screens();
    if (screens.isEmpty()) {
        result.reason = QStringLiteral("There is no screen to take a picture of.");
        return result;
    }
    if (screens.size() == 1) {
        result.image = screens.first()->grabWindow(0).toImage();
    } else {
        const QRect all = screens.first()->virtualGeometry();
        QImage image(all.size(), QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        for (QScreen* screen : screens)
            painter.drawPixmap(screen->geometry().topLeft() - all.topLeft(), screen->grabWindow(0));
        painter.end();
        result.image = image;
    }
    if (result.image.isNull())
        result.reason = QStringLiteral("The screen could not be read.");
    return result;
}

#ifdef LUMBRA_HAVE_DBUS

// Receives the portal's answer to one request.
class PortalAnswer : public QObject
{
    Q_OBJECT
public:
    uint response = 2;
    QString uri;
    bool answered = false;

public Q_SLOTS:
    void Response(uint code, const QVariantMap& results)
    {
        response = code;
        uri = results.value(QStringLiteral("uri")).toString();
        answered = true;
        Q_EMIT done();
    }

Q_SIGNALS:
    void done();
};

Result fromPortal()
{
    Result result;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        result.reason =
            QStringLiteral("The desktop cannot be asked for a screenshot (no session bus).");
        return result;
    }
    const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
    const QString token = QStringLiteral("lumbra%1").arg(QRandomGenerator::global()->generate());
    // The request's object path is known before the call, so its answer cannot be missed.
    QString sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    const QString requestPath =
        QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);

    PortalAnswer answer;
    QEventLoop loop;
    QObject::connect(&answer, &PortalAnswer::done, &loop, &QEventLoop::quit);
    // QtDBus finds the receiving slot by its signature only.
    if (!bus.connect(service, requestPath, QStringLiteral("org.freedesktop.portal.Request"),
                     QStringLiteral("Response"), &answer, SLOT(Response(uint, QVariantMap)))) {
        result.reason = QStringLiteral("The desktop cannot be asked for a screenshot: ") +
                        bus.lastError().message();
        return result;
    }

    QDBusMessage call = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Screenshot"), QStringLiteral("Screenshot"));
    call << QString()
         << QVariantMap{{QStringLiteral("handle_token"), token},
                        {QStringLiteral("interactive"), false}};
    QString callError;
    QDBusPendingCallWatcher watcher(bus.asyncCall(call));
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, [&] {
        if (watcher.isError()) {
            callError = watcher.error().message();
            loop.quit();
        }
    });
    // The desktop may ask the user first: give them time to answer.
    QTimer::singleShot(120000, &loop, &QEventLoop::quit);
    loop.exec();
    bus.disconnect(service, requestPath, QStringLiteral("org.freedesktop.portal.Request"),
                   QStringLiteral("Response"), &answer, SLOT(Response(uint, QVariantMap)));

    if (!callError.isEmpty()) {
        result.reason = QStringLiteral("The desktop did not take a screenshot: ") + callError;
    } else if (!answer.answered) {
        result.reason = QStringLiteral("The desktop did not answer the request for a screenshot.");
    } else if (answer.response == 1) {
        result.refused = true;
    } else if (answer.response != 0 || answer.uri.isEmpty()) {
        result.reason = QStringLiteral("The desktop did not take a screenshot.");
    } else {
        // The portal leaves its picture where the desktop keeps screenshots; it is the user's.
        const LoadedPicture picture = PictureLoader::Load(QUrl(answer.uri).toLocalFile());
        result.image = picture.image;
        if (result.image.isNull())
            result.reason =
                QStringLiteral("The desktop's screenshot could not be read: ") + picture.reason;
    }
    return result;
}

#endif

} // namespace

bool ThroughPortal()
{
    const QString platform = QGuiApplication::platformName();
    if (platform.startsWith(QLatin1String("wayland")))
        return true;
    // An X11 program on a Wayland desktop reads only its own windows.
    return platform == QLatin1String("xcb") &&
           qEnvironmentVariable("XDG_SESSION_TYPE") == QLatin1String("wayland");
}

Result Grab()
{
    if (!ThroughPortal())
        return fromScreens();
#ifdef LUMBRA_HAVE_DBUS
    return fromPortal();
#else
    Result result;
    result.reason = QStringLiteral(
        "Screenshots on Wayland need the desktop portal, which this build cannot reach.");
    return result;
#endif
}

} // namespace ScreenGrab

#ifdef LUMBRA_HAVE_DBUS
#include "ScreenGrab.moc"
#endif
