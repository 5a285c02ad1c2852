#include "gallery/AlbumCommands.h"

#include "common/MsgBox.h"
#include "gallery/frmThumbnails.h"
#include "gallery/PhotoAlbums.h"

#include <QAction>
#include <QInputDialog>
#include <QMenu>

namespace AlbumCommands {

namespace {

const char* AlbumProperty = "AlbumName";
const QChar cr(u'\r');

std::function<QString(const QString&, const QString&)>& nameAnswer()
{
    static std::function<QString(const QString&, const QString&)> answer;
    return answer;
}

QString askName(QWidget* parent, const QString& prompt, const QString& offered)
{
    if (nameAnswer())
        return nameAnswer()(prompt, offered);
    bool ok = false;
    const QString name =
        QInputDialog::getText(parent, Title(), prompt, QLineEdit::Normal, offered, &ok);
    return ok ? name.trimmed() : QString();
}

void tell(QWidget* parent, const QString& text)
{
    MsgBox::Tell(parent, Title(), text, QMessageBox::Warning);
}

} // namespace

void SetNameAnswer(std::function<QString(const QString&, const QString&)> answer)
{
    nameAnswer() = std::move(answer);
}

QString Title()
{
    return QStringLiteral("Lumbra - Photo Albums");
}

QString CurrentAlbum(const frmThumbnails* gallery)
{
    if (!gallery || !gallery->CollectionMode())
        return {};
    return gallery->property(AlbumProperty).toString();
}

void SaveCollection(QWidget* parent, frmThumbnails* gallery)
{
    const QStringList files = gallery ? gallery->CollectionFiles() : QStringList();
    if (files.isEmpty()) {
        MsgBox::Tell(parent, Title(),
                     QStringLiteral("The gallery shows no pictures to keep in an album."));
        return;
    }
    QString name = CurrentAlbum(gallery);
    for (;;) {
        name =
            askName(parent, QStringLiteral("Save the pictures of the gallery as the album:"), name);
        if (name.isNull())
            return;
        if (const QString why = PhotoAlbums::InvalidName(name); !why.isEmpty()) {
            tell(parent, why);
            continue;
        }
        if (PhotoAlbums::Exists(name) && name != CurrentAlbum(gallery) &&
            MsgBox::Ask(parent, Title(),
                        QStringLiteral("There is already an album named ") + name + u'.' + cr +
                            QStringLiteral("Do you want to replace it?"),
                        QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
                        QMessageBox::No) != QMessageBox::Yes)
            continue;
        break;
    }
    QString why;
    if (!PhotoAlbums::Save(name, files, &why)) {
        tell(parent, QStringLiteral("The album could not be saved.") + cr + cr + why);
        return;
    }
    // What was a folder view is now the album's collection.
    gallery->setCollectionMode(true);
    gallery->setProperty(AlbumProperty, name);
}

void Open(QWidget* parent, frmThumbnails* gallery, const QString& name)
{
    QString why;
    const QStringList files = PhotoAlbums::Load(name, &why);
    if (!why.isEmpty()) {
        tell(parent, why);
        return;
    }
    gallery->ShowPictures(files);
    gallery->setProperty(AlbumProperty, name);
}

void RenameCurrent(QWidget* parent, frmThumbnails* gallery)
{
    const QString old = CurrentAlbum(gallery);
    if (old.isEmpty()) {
        MsgBox::Tell(parent, Title(), QStringLiteral("Open an album first, then rename it."));
        return;
    }
    const QString name = askName(parent, QStringLiteral("Rename the album to:"), old);
    if (name.isNull() || name == old)
        return;
    QString why;
    if (!PhotoAlbums::Rename(old, name, &why)) {
        tell(parent, why);
        return;
    }
    gallery->setProperty(AlbumProperty, name);
}

void DeleteCurrent(QWidget* parent, frmThumbnails* gallery)
{
    const QString name = CurrentAlbum(gallery);
    if (name.isEmpty()) {
        MsgBox::Tell(parent, Title(), QStringLiteral("Open an album first, then delete it."));
        return;
    }
    if (MsgBox::Ask(parent, Title(),
                    QStringLiteral("Delete the album ") + name + QStringLiteral("?") + cr +
                        QStringLiteral("The pictures themselves stay where they are."),
                    QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
                    QMessageBox::No) != QMessageBox::Yes)
        return;
    QString why;
    if (!PhotoAlbums::Delete(name, &why)) {
        tell(parent, why);
        return;
    }
    // The gallery keeps showing the pictures, now as a collection without an album.
    gallery->setProperty(AlbumProperty, QString());
}

void ShowProperties(QWidget* parent, const frmThumbnails* gallery)
{
    const QString name = CurrentAlbum(gallery);
    if (name.isEmpty())
        MsgBox::Tell(parent, Title(), QStringLiteral("Open an album first to see its properties."));
    else
        MsgBox::Tell(parent, Title(), PhotoAlbums::Properties(name));
}

void AddEntries(QMenu* menu, QWidget* parent, const std::function<frmThumbnails*()>& gallery)
{
    for (QAction* action : menu->actions())
        if (action->property("albumEntry").toBool())
            delete action;
    const auto mark = [](QAction* action) { action->setProperty("albumEntry", true); };
    mark(menu->addSeparator());
    QAction* save = menu->addAction(QStringLiteral("Save Collection as &Album..."));
    mark(save);
    QObject::connect(save, &QAction::triggered, parent,
                     [parent, gallery] { SaveCollection(parent, gallery()); });
    const QStringList names = PhotoAlbums::Names();
    if (!names.isEmpty())
        mark(menu->addSeparator());
    for (const QString& name : names) {
        QAction* open = menu->addAction(name);
        mark(open);
        QObject::connect(open, &QAction::triggered, parent,
                         [parent, gallery, name] { Open(parent, gallery(), name); });
    }
}

} // namespace AlbumCommands
