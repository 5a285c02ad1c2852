#pragma once

#include <QString>
#include <QStringList>

// Photo albums: named collections of pictures, each a plain text file in the per-user data
// folder holding one full picture path per line. Plain functions on those files, no widgets.
namespace PhotoAlbums {

// $XDG_DATA_HOME/Lumbra/albums on Linux.
QString Folder();

// The albums there are, by name, sorted without regard to case.
QStringList Names();

bool Exists(const QString& name);

// Why name cannot name an album (empty, a path, hidden), or empty when it can.
QString InvalidName(const QString& name);

// Writes the album name with files, replacing an album of that name. The file is whole or
// not written at all.
bool Save(const QString& name, const QStringList& files, QString* reason = nullptr);

// The pictures of the album, in their order; empty with a reason when it cannot be read.
QStringList Load(const QString& name, QString* reason = nullptr);

// Renames an album; never replaces another one.
bool Rename(const QString& oldName, const QString& newName, QString* reason = nullptr);

bool Delete(const QString& name, QString* reason = nullptr);

// What "Album Properties" shows: the name, how many pictures, how many of them are missing,
// their total size and when the album was last saved.
QString Properties(const QString& name);

} // namespace PhotoAlbums
