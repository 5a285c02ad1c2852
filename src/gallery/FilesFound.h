#pragma once

#include "gallery/FolderScan.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <vector>

// The picture file names of one folder (or of one named picture), relative to Path(). Made
// fresh for each load and never shrunk. Paths use "/"; a set Path() ends with it.
class FilesFound
{
public:
    qsizetype Count() const { return qsizetype(m_files.size()); }
    void AddFile(const QString& name);
    // Appends the regular, non-hidden files of Path() matching the pattern ("*" and "?",
    // without regard to case), in the order the directory gives them.
    void AddAllFiles(const QString& pattern);
    // The same for several patterns in one directory pass: grouped by pattern, in that order.
    void AddAllFiles(const QStringList& patterns);
    QString Path() const { return m_path; }
    // Returns 1 when path names an existing file (Path() becomes its folder) and 0 when it is
    // taken as a folder; a folder path without the final "/" gets it, in the caller's text too.
    int SetPath(QString& path, const QVariant& tag = {});
    // The name at index; empty outside the list.
    QString File(qsizetype index) const;
    QString Tag() const { return m_tag; }

    // The name with what the scan learnt of the file; an empty entry outside the list.
    const FoundFile& Found(qsizetype index) const;

private:
    std::vector<FoundFile> m_files;
    QString m_path;
    QString m_tag;
};
