#include "app/Wallpaper.h"

#include "app/MainMenus.h"
#include "common/AppGlobals.h"
#include "common/BitmapFile.h"
#include "common/MsgBox.h"
#include "common/Utilities.h"
#include "imaging/PictureLoader.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QScopeGuard>
#include <QtConcurrent>
#include <QThreadPool>

namespace Wallpaper {

namespace {

const QString Title = QStringLiteral("Lumbra");

bool fail(QWidget* parent, const QString& reason)
{
    qWarning("Wallpaper not set: %s", qUtf8Printable(reason));
    MsgBox::Tell(parent, FailTitle, FailText);
    return false;
}

// Reads the picture and writes the copy on a worker; the window keeps drawing meanwhile.
// User input waits, so the command cannot start again halfway.
bool writeCopy(const QString& source, const QString& target, QString* reason)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const auto restore = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
    QFutureWatcher<QString> watcher;
    QEventLoop loop;
    QObject::connect(&watcher, &QFutureWatcher<QString>::finished, &loop, &QEventLoop::quit);
    watcher.setFuture(QtConcurrent::run(QThreadPool::globalInstance(), [source, target] {
        const LoadedPicture picture = PictureLoader::Load(source);
        if (picture.isNull())
            return picture.reason.isEmpty() ? QStringLiteral("unreadable picture") : picture.reason;
        QString why;
        return BitmapFile::Save(picture.image, target, &why) ? QString() : why;
    }));
    if (!watcher.isFinished())
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    *reason = watcher.result();
    return reason->isEmpty();
}

} // namespace

QString TargetPath(const QString& folder, const QString& source)
{
    const QString name = Utilities::FileNameOf(source);
    return Utilities::JoinPath(folder, name.left(qMax<qsizetype>(0, name.size() - 4)).toUpper() +
                                           QStringLiteral(".BMP"));
}

QString OverwriteQuestion(const QString& target)
{
    return QStringLiteral("A file with the same name \r\r") + target +
           QStringLiteral("\r\ralready exists in the Windows directory.  Do you want to \r"
                          "overwrite this file?");
}

int TickedStyle(const MainMenus& menus)
{
    for (int entry = 3; entry <= 5; ++entry)
        if (const QAction* action = menus.Action(QStringLiteral("mnuWallpaper"), entry))
            if (action->isChecked())
                return entry;
    return 2;
}

WallpaperStyle StyleOf(int styleEntry)
{
    switch (styleEntry) {
    case 4:
        return WallpaperStyle::Stretched;
    case 5:
        return WallpaperStyle::Tiled;
    default:
        return WallpaperStyle::Centred;
    }
}

bool SetAsWallpaper(QWidget* parent, const QString& path, bool quiet, int styleEntry)
{
    const QString source = path.isEmpty() ? Globals().CurrentPicture : path;

    const std::unique_ptr<DesktopWallpaper> desktop = DesktopWallpaper::ForThisDesktop();
    if (!desktop)
        return fail(parent, QStringLiteral("no way known to set the wallpaper of desktop \"") +
                                qEnvironmentVariable("XDG_CURRENT_DESKTOP") + u'"');
    QString reason;
    if (!desktop->WriteStyle(StyleOf(styleEntry), &reason))
        return fail(parent, desktop->Name() + QStringLiteral(": ") + reason);
    if (source.isEmpty())
        return fail(parent, QStringLiteral("no picture is shown"));

    const QString folder = Utilities::WindowsFolder();
    if (!QDir().mkpath(folder))
        return fail(parent, QStringLiteral("cannot make ") + folder);
    const QString target = TargetPath(folder, source);
    // Setting the copy itself again replaces it without a question.
    if (QFileInfo::exists(target) && !(QFileInfo(source) == QFileInfo(target))) {
        const auto answer =
            MsgBox::Ask(parent, Title, OverwriteQuestion(target), QMessageBox::Question,
                        QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
        if (answer != QMessageBox::Yes)
            return false;
    }

    if (!writeCopy(source, target, &reason))
        return fail(parent, source + QStringLiteral(": ") + reason);
    if (!desktop->SetPicture(target, &reason))
        return fail(parent, desktop->Name() + QStringLiteral(": ") + reason);

    if (!quiet)
        MsgBox::Tell(parent, Title, SetText);
    return true;
}

} // namespace Wallpaper
