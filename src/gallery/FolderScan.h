#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

// What one stat of a file told the scan, so sort keys need no second look at the disk.
struct FileFacts
{
    qint64 size = 0;
    qint64 modifiedSecs = 0; // seconds since the epoch
};

struct FoundFile
{
    QString name;                   // bare file name
    std::optional<FileFacts> facts; // empty when the file was added by name only
};

// Reads a folder in one directory pass, stat'ing each candidate once relative to the folder's
// descriptor (QDirIterator with QFileInfo stats every file three times).
namespace FolderScan {

// The regular, non-hidden files of folder whose names match a pattern, grouped by pattern in
// the order given; within a pattern, in the order the directory returns them. Patterns use
// "*" and "?" and match without regard to case; a name matching two patterns is listed under
// each. Symbolic links count when they lead to a regular file (with that file's size and
// date). An empty folder means the current one. A folder that cannot be read gives nothing.
std::vector<FoundFile> scan(const QString& folder, const QStringList& patterns);

} // namespace FolderScan
