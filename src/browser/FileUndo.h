#pragma once

#include <QString>
#include <QStringList>

#include <functional>

// Records the browser's and the gallery's file operations in the undo log, with the file work
// that takes each back. Undoing never replaces a file: a place that has been taken meanwhile
// gets a "Copy Of " name, and the report says so. after runs once the files are back, so the
// window that did the operation (if it is still open) can show the change.
namespace FileUndo {

// folder + oldName was renamed to folder + newName; after gets the name it has again.
void Renamed(const QString& folder, const QString& oldName, const QString& newName,
             std::function<void(const QString& restoredPath)> after = {});

// Each originals[i] now lies in the trash at trashed[i].
void Trashed(const QStringList& originals, const QStringList& trashed,
             std::function<void()> after = {});

// A paste made targets[i] from sources[i]; a cut moved them, a copy copied them.
void Pasted(bool cut, const QStringList& sources, const QStringList& targets,
            std::function<void()> after = {});

QString UndoTitle();

} // namespace FileUndo
