#include "app/PictureFiles.h"

#include "app/ChildOps.h"
#include "app/FileChooser.h"
#include "app/mdiMain.h"
#include "app/MenuTable.h"
#include "app/SettingsStore.h"
#include "common/AppGlobals.h"
#include "common/MsgBox.h"
#include "common/Utilities.h"
#include "viewing/PictureOpener.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QScopeGuard>

namespace PictureFiles {

namespace {

// Byte for byte; the file at to is replaced only once the copy is complete, so a failure
// never leaves half a file or loses the one that was there.
bool copyFile(const QString& from, const QString& to)
{
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly))
        return false;
    QSaveFile target(to);
    if (!target.open(QIODevice::WriteOnly))
        return false;
    QByteArray chunk;
    while (!(chunk = source.read(1 << 20)).isEmpty())
        if (target.write(chunk) != chunk.size()) {
            target.cancelWriting();
            return false;
        }
    if (source.error() != QFileDevice::NoError) {
        target.cancelWriting();
        return false;
    }
    return target.commit();
}

} // namespace

QString ProposedName(const QString& source)
{
    QString name = Utilities::FileNameOf(source);
    if (name.size() >= 4 && name.at(name.size() - 4) == u'.')
        name.chop(4);
    return name.toUpper() + QStringLiteral(".BMP");
}

void SaveAsBitmap(QWidget* parent, const QString& path)
{
    const QString source = path.isEmpty() ? Globals().CurrentPicture : path;
    if (source.isEmpty()) {
        MsgBox::Tell(parent, QStringLiteral("Lumbra"),
                     QStringLiteral("There is no picture to save.\rSelect a picture first."));
        return;
    }
    SettingsStore& settings = SettingsStore::global();
    FileChooser::Request request;
    request.save = true;
    request.filter = SaveFilter;
    request.fileName = ProposedName(source);
    request.folder = settings.read(Keys::LastPath_Save);
    if (request.folder.isEmpty())
        request.folder = QFileInfo(source).absolutePath();

    for (;;) {
        const QStringList chosen = FileChooser::Ask(parent, request);
        if (chosen.isEmpty())
            return;
        bool copied = false;
        {
            QApplication::setOverrideCursor(Qt::WaitCursor);
            const auto restore = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
            copied = copyFile(source, chosen.first());
        }
        const QFileInfo target(chosen.first());
        if (copied) {
            settings.write(Keys::LastPath_Save, target.absolutePath());
            return;
        }
        const auto answer =
            MsgBox::Ask(parent, SaveFailedTitle, SaveFailedText, QMessageBox::Critical,
                        QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
        if (answer != QMessageBox::Yes)
            return;
        // The dialog comes back as it was left.
        request.folder = target.absolutePath();
        request.fileName = target.fileName();
    }
}

void OpenPictures(mdiMain* main)
{
    SettingsStore& settings = SettingsStore::global();
    FileChooser::Request request;
    request.filter = OpenFilter;
    request.folder = settings.read(Keys::LastPath_Open);
    const QStringList chosen = FileChooser::Ask(main, request);
    if (chosen.isEmpty())
        return;
    settings.write(Keys::LastPath_Open, QFileInfo(chosen.first()).absolutePath());
    if (chosen.size() == 1) {
        PictureOpener::Open(chosen.first());
        return;
    }
    QWidget* gallery = main->OpenChild(MenuTable::ThumbnailsButton);
    ChildOps::Call(gallery, "ShowPictures", chosen);
}

} // namespace PictureFiles
