#pragma once

#include <QString>

#include <functional>

class QMenu;
class QWidget;
class frmThumbnails;

// The "Photo Albums" menu: the gallery's collection saved as an album, reopened, renamed,
// deleted and described. The album a gallery shows is the one it last saved or opened, for
// as long as it shows a collection.
namespace AlbumCommands {

// Answers the name box instead of the dialog while set: gets the prompt and the name offered,
// returns the name typed, or a null string for Cancel. {} brings the dialog back.
void SetNameAnswer(std::function<QString(const QString& prompt, const QString& offered)> answer);

QString Title();

// The album gallery shows, or empty.
QString CurrentAlbum(const frmThumbnails* gallery);

void SaveCollection(QWidget* parent, frmThumbnails* gallery);
void Open(QWidget* parent, frmThumbnails* gallery, const QString& name);
void RenameCurrent(QWidget* parent, frmThumbnails* gallery);
void DeleteCurrent(QWidget* parent, frmThumbnails* gallery);
void ShowProperties(QWidget* parent, const frmThumbnails* gallery);

// Adds to menu, after its fixed entries, "Save Collection as Album..." and one entry per
// album (the current one ticked); gallery() gives the gallery to act on, opening it if need be.
void AddEntries(QMenu* menu, QWidget* parent, const std::function<frmThumbnails*()>& gallery);

} // namespace AlbumCommands
