#include "gallery/FilesFound.h"

#include <QFile>
#include <QFileInfo>

namespace {

QString folderPart(const QString& path)
{
    return path.left(path.lastIndexOf(u'/') + 1);
}

// Whether path names a regular, non-hidden file, either exactly or, as wildcard matching
// finds it, by a name that differs in case or holds "*" or "?".
bool namesFile(const QString& path)
{
    const QString name = path.mid(path.lastIndexOf(u'/') + 1);
    if (name.isEmpty())
        return false;
    const QFileInfo exact(path);
    if (exact.exists())
        return exact.isFile() && !name.startsWith(u'.');
    return !FolderScan::scan(folderPart(path), {name}).empty();
}

} // namespace

void FilesFound::AddFile(const QString& name)
{
    m_files.push_back({name, std::nullopt});
}

void FilesFound::AddAllFiles(const QString& pattern)
{
    AddAllFiles(QStringList{pattern});
}

void FilesFound::AddAllFiles(const QStringList& patterns)
{
    auto found = FolderScan::scan(m_path, patterns);
    if (m_files.empty()) {
        m_files = std::move(found);
        return;
    }
    m_files.insert(m_files.end(), std::make_move_iterator(found.begin()),
                   std::make_move_iterator(found.end()));
}

int FilesFound::SetPath(QString& path, const QVariant& tag)
{
    int namesAFile = 0;
    if (!path.endsWith(u'/')) {
        if (namesFile(path))
            namesAFile = 1;
        else
            path += u'/';
    }
    m_path = namesAFile ? folderPart(path) : path;
    m_tag = tag.toString();
    return namesAFile;
}

QString FilesFound::File(qsizetype index) const
{
    return index >= 0 && index < Count() ? m_files[size_t(index)].name : QString();
}

const FoundFile& FilesFound::Found(qsizetype index) const
{
    static const FoundFile none;
    return index >= 0 && index < Count() ? m_files[size_t(index)] : none;
}
