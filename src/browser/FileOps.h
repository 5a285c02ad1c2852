#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class FilesFound;

// The file work behind the browser's Rename, Delete and Paste: plain functions on real files,
// no widgets. Folders are passed with their trailing "/". Every function that can fail says
// why in reason (when given) and leaves each file either where it was or where it was meant
// to go.
namespace FileOps {

// folder + name when free, else name prefixed by "Copy Of " as often as needed to be free.
QString UniqueTarget(const QString& folder, const QString& name);

// Copies source to a file beside it named source + "ddmmhhss~.tmp" and checks the copy is as
// long as the source. Returns the copy's path, or empty (and nothing left behind) on failure.
QString TemporaryCopy(const QString& source, QString* reason = nullptr);

// The name a rename in place gives when the user typed typed over oldName: the last four
// characters (the extension with its dot) are kept, appended when typed does not end in
// them. Returns oldName when typed equals it.
QString KeptExtensionName(const QString& oldName, const QString& typed);

// Renames folder + oldName to folder + newName; never replaces an existing file.
bool Rename(const QString& folder, const QString& oldName, const QString& newName,
            QString* reason = nullptr);

QString RenameFailedText();
QString RenameTitle();
QString DeleteTitle();
// The question asked before moving count files to the trash.
QString DeleteQuestion(int count);

// Moves path to the desktop trash, with a .trashinfo so file managers can restore it. On
// failure the file stays where it is. trashed, when given, receives where the file now lies.
bool MoveToTrash(const QString& path, QString* reason = nullptr, QString* trashed = nullptr);

// Moves a file that MoveToTrash put at trashed back where its .trashinfo says it came from
// (fallback when the info is gone or unreadable), under a "Copy Of " name when that place is
// taken. Returns the path it was restored to, or empty (the file stays in the trash).
QString RestoreFromTrash(const QString& trashed, const QString& fallback,
                         QString* reason = nullptr);

// Moves from to the path to, or to the first free "Copy Of " name beside it when to is taken;
// across file systems through a complete copy first. Returns the path the file now has, or
// empty when it stayed where it was.
QString MoveTo(const QString& from, const QString& to, QString* reason = nullptr);

struct PasteResult
{
    QStringList added;     // file names added to the target folder, in order
    QStringList sources;   // the full source path of each added name
    QStringList unghosted; // names of a same-folder cut, to un-ghost
    bool ok = true;
    QString failedName; // the source name the paste stopped at
    QString reason;
};

// Pastes the clipboard list (Path() the source folder, Tag() "True" for a cut) into folder.
// A copy asks confirmReplace (when given) before replacing an existing file of the same name;
// false skips that file. The paste stops at the first file that fails; those before it stay
// pasted.
PasteResult Paste(const FilesFound& list, const QString& folder,
                  const std::function<bool(const QString& targetPath)>& confirmReplace = {});

// Test seam: when set, asked at each step of a file operation whether the step should fail as
// the disk would (true) or go ahead. Steps: "copy" (a copy of path has just been written and is
// about to be accepted), "delete" (path is about to go), "rename" and "replace" (a finished copy
// is about to take the name path), "trash" (path is about to be moved to the trash). Pass {}
// to clear.
void SetFaultHook(std::function<bool(const QString& step, const QString& path)> hook);

} // namespace FileOps
