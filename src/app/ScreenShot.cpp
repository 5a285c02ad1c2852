#include "app/ScreenShot.h"

#include "app/mdiMain.h"
#include "common/BitmapFile.h"
#include "common/MsgBox.h"
#include "common/ScreenGrab.h"
#include "common/Utilities.h"
#include "viewing/frmViewImage.h"
#include "viewing/PictureOpener.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMdiArea>
#include <QMdiSubWindow>

namespace ScreenShot {

namespace {

// Picture windows show their file as it was when they opened, and asking again for an open
// file means full screen: the window of the file just replaced makes way for a fresh one.
void closeWindowsOf(mdiMain* main, const QString& path)
{
    for (QMdiSubWindow* sub : main->Area()->subWindowList())
        if (const auto* window = qobject_cast<frmViewImage*>(sub->widget()))
            if (QString::compare(window->File(), path, Qt::CaseInsensitive) == 0)
                sub->close();
}

} // namespace

QString NextFileName(const QString& folder)
{
    // One name without wildcards: the count is 0 or 1. Exactly that spelling, as a name in
    // other letter cases is another file here and must not make the count 2.
    const int count =
        QFileInfo::exists(Utilities::JoinPath(folder, QStringLiteral("ScreenShot.bmp"))) ? 1 : 0;
    const QString number = count > 0 ? QStringLiteral("(%1)").arg(count) : QString();
    return Utilities::JoinPath(folder,
                               QStringLiteral("ScreenShot") + number + QStringLiteral(".bmp"));
}

QString Take(QString* reason)
{
    const ScreenGrab::Result grab = ScreenGrab::Grab();
    if (grab.image.isNull()) {
        if (reason)
            *reason = grab.reason;
        return {};
    }
    QGuiApplication::clipboard()->setImage(grab.image);
    const QString path = NextFileName(Utilities::ProgramFolder());
    QString why;
    if (!BitmapFile::Save(grab.image, path, &why)) {
        if (reason)
            *reason = QStringLiteral("The screenshot could not be saved as ") + path +
                      QStringLiteral(":\r") + why;
        return {};
    }
    return path;
}

void TakeAndShow(mdiMain* main)
{
    // Let the menu that asked for it leave the screen first.
    int settle = 200;
    Utilities::Pause(settle, true);

    QString reason;
    const QString path = Take(&reason);
    if (path.isEmpty()) {
        if (!reason.isEmpty())
            MsgBox::Tell(main, QStringLiteral("Lumbra - Screenshot"), reason);
        return;
    }
    if (main->isHidden() || main->isMinimized())
        main->ShowMain();
    closeWindowsOf(main, path);
    PictureOpener::Open(path);
}

} // namespace ScreenShot
