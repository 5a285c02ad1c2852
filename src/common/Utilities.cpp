#include "common/Utilities.h"

#include "app/SettingsStore.h"
#include "common/AppGlobals.h"
#include "common/Formats.h"
#include "gallery/ucCoolProg.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLineEdit>
#include <QPointer>
#include <QStandardPaths>
#include <QSysInfo>
#include <QWidget>
#include <QWindow>

#include <cmath>

namespace Utilities {

namespace {

// Cleared by itself when the strip goes with its window.
QPointer<ucCoolProg>& registeredStrip()
{
    static QPointer<ucCoolProg> strip;
    return strip;
}

QString withSeparator(QString path)
{
    if (!path.isEmpty() && !path.endsWith(u'/'))
        path += u'/';
    return path;
}

} // namespace

QString SizeText(qint64 bytes)
{
    const qint64 n = bytes;
    if (n < 1000)
        return Formats::thousands(n) + QStringLiteral(" Bytes");
    const qint64 k = Formats::bankersRound(double(n) / 1000.0);
    if (k > 1000)
        return Formats::thousandsNoZero(Formats::bankersRound(double(k) / 1000.0)) +
               QStringLiteral(" MB");
    return Formats::thousandsNoZero(k) + QStringLiteral(" KB");
}

std::optional<QString> FileSizeText(const QString& filePath)
{
    const QFileInfo info(filePath);
    if (!info.exists() || !info.isFile())
        return std::nullopt;
    return SizeText(info.size());
}

QString WindowsVersionName(bool wantName)
{
    return wantName ? QSysInfo::prettyProductName() : QStringLiteral("2");
}

int WindowStateNumber(const QWidget* window)
{
    if (!window)
        return 0;
    if (window->isMinimized())
        return 1;
    if (window->isMaximized())
        return 2;
    return 0;
}

void SaveWindowState(const QWidget* window)
{
    Globals().WindowState = WindowStateNumber(window);
    SettingsStore::global().write(Keys::WindowStateWrite, qint64(Globals().WindowState));
}

void Pause(int& amount, bool inMilliseconds)
{
    amount *= inMilliseconds ? 1 : 1000;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < amount)
        QCoreApplication::processEvents(QEventLoop::AllEvents, qMax<qint64>(1, amount - clock.elapsed()));
}

int RoundUp(double value)
{
    return int(std::ceil(value));
}

QString WindowsFolder()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return withSeparator(data + QStringLiteral("/backgrounds"));
}

QString FileNameOf(const QString& path)
{
    return path.mid(path.lastIndexOf(u'/') + 1);
}

QString JoinPath(const QString& folder, const QString& name)
{
    return withSeparator(folder) + name;
}

void SelectAllText(QLineEdit* box)
{
    if (!box)
        return;
    box->setFocus();
    box->setSelection(0, int(box->text().length()));
}

QString ProgramFolder()
{
    QString folder = qEnvironmentVariable("LUMBRA_HOME");
    if (folder.isEmpty()) {
        const QString exeFolder = QCoreApplication::applicationDirPath();
        if (QFileInfo(exeFolder).isWritable())
            folder = exeFolder;
        else
            folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    }
    QDir().mkpath(folder);
    return QDir::cleanPath(folder);
}

QString SpecialFolderPath(SpecialFolder folder)
{
    QStandardPaths::StandardLocation location = QStandardPaths::DocumentsLocation;
    switch (folder) {
    case Documents:
        location = QStandardPaths::DocumentsLocation;
        break;
    case Desktop:
        location = QStandardPaths::DesktopLocation;
        break;
    case Pictures:
        location = QStandardPaths::PicturesLocation;
        break;
    }
    return withSeparator(QStandardPaths::writableLocation(location));
}

QString SpecialFolderName(const QString& path)
{
    const QString upper = withSeparator(path).toUpper();
    const auto is = [&](SpecialFolder folder) {
        const QString special = SpecialFolderPath(folder).toUpper();
        return !special.isEmpty() && upper == special;
    };
    if (is(Pictures) || upper.endsWith(QStringLiteral("/MY PICTURES/")))
        return QStringLiteral("My Pictures");
    if (is(Desktop) || upper.endsWith(QStringLiteral("/DESKTOP/")))
        return QStringLiteral("Desktop");
    if (is(Documents))
        return QStringLiteral("My Documents");
    return path;
}

void SetStatusStrip(ucCoolProg* strip)
{
    registeredStrip() = strip;
}

ucCoolProg* StatusStrip()
{
    return registeredStrip();
}

void SetStatus(const QString& text)
{
    if (ucCoolProg* strip = StatusStrip())
        strip->setCaption(text);
}

void SetAlwaysOnTop(QWidget* window, bool onTop)
{
    if (!window)
        return;
    Qt::WindowFlags flags = window->windowFlags();
    flags.setFlag(Qt::WindowStaysOnTopHint, onTop);
    // QWidget::setWindowFlags would make a new native window (it flickers and loses focus);
    // tell the existing one instead.
    window->overrideWindowFlags(flags);
    if (QWindow* handle = window->windowHandle())
        handle->setFlags(flags);
}

void Beep()
{
    QApplication::beep();
}

} // namespace Utilities
