#include "gallery/PhotoAlbums.h"

#include "common/Utilities.h"

#include <QCollator>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

namespace PhotoAlbums {

namespace {

const QString Suffix = QStringLiteral(".album");
const QChar cr(u'\r');

QString pathOf(const QString& name)
{
    return Folder() + u'/' + name + Suffix;
}

bool fail(QString* reason, const QString& why)
{
    if (reason)
        *reason = why;
    return false;
}

} // namespace

QString Folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
           QStringLiteral("/albums");
}

QStringList Names()
{
    QStringList names;
    for (const QString& file : QDir(Folder()).entryList({u'*' + Suffix}, QDir::Files))
        names << file.chopped(Suffix.size());
    std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) {
        return a.compare(b, Qt::CaseInsensitive) < 0;
    });
    return names;
}

bool Exists(const QString& name)
{
    return InvalidName(name).isEmpty() && QFileInfo::exists(pathOf(name));
}

QString InvalidName(const QString& name)
{
    if (name.trimmed().isEmpty())
        return QStringLiteral("An album needs a name.");
    if (name.contains(u'/') || name.contains(u'\\') || name.startsWith(u'.'))
        return QStringLiteral("An album's name cannot hold \"/\" or \"\\\" or begin with a dot.");
    if (QFile::encodeName(name + Suffix).size() > 255)
        return QStringLiteral("That name is too long.");
    return {};
}

bool Save(const QString& name, const QStringList& files, QString* reason)
{
    if (const QString why = InvalidName(name); !why.isEmpty())
        return fail(reason, why);
    QDir().mkpath(Folder());
    QSaveFile file(pathOf(name));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return fail(reason, file.errorString());
    for (const QString& path : files)
        file.write(QFileInfo(path).absoluteFilePath().toUtf8() + '\n');
    if (!file.commit())
        return fail(reason, file.errorString());
    return true;
}

QStringList Load(const QString& name, QString* reason)
{
    QFile file(pathOf(name));
    if (!InvalidName(name).isEmpty() || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        fail(reason, QStringLiteral("The album \"%1\" cannot be read.").arg(name));
        return {};
    }
    QStringList files;
    for (const QByteArray& line : file.readAll().split('\n'))
        if (!line.trimmed().isEmpty())
            files << QString::fromUtf8(line);
    return files;
}

bool Rename(const QString& oldName, const QString& newName, QString* reason)
{
    if (const QString why = InvalidName(newName); !why.isEmpty())
        return fail(reason, why);
    if (!Exists(oldName))
        return fail(reason, QStringLiteral("There is no album \"%1\".").arg(oldName));
    if (oldName == newName)
        return true;
    // A change of case only is a rename to the same file on some file systems.
    if (Exists(newName) && oldName.compare(newName, Qt::CaseInsensitive) != 0)
        return fail(reason, QStringLiteral("There is already an album \"%1\".").arg(newName));
    if (!QFile::rename(pathOf(oldName), pathOf(newName)))
        return fail(reason, QStringLiteral("The album \"%1\" could not be renamed.").arg(oldName));
    return true;
}

bool Delete(const QString& name, QString* reason)
{
    if (!Exists(name))
        return fail(reason, QStringLiteral("There is no album \"%1\".").arg(name));
    QFile file(pathOf(name));
    if (!file.remove())
        return fail(reason, file.errorString());
    return true;
}

QString Properties(const QString& name)
{
    const QStringList files = Load(name);
    qint64 bytes = 0;
    int missing = 0;
    for (const QString& path : files) {
        const QFileInfo info(path);
        if (info.isFile())
            bytes += info.size();
        else
            ++missing;
    }
    const QDateTime saved = QFileInfo(pathOf(name)).lastModified();
    return QStringLiteral("Album: ") + name + cr + QStringLiteral("Pictures: ") +
           QString::number(files.size()) +
           (missing ? QStringLiteral(" (%1 no longer found)").arg(missing) : QString()) + cr +
           QStringLiteral("Size: ") + Utilities::SizeText(bytes) + cr +
           QStringLiteral("Last saved: ") + QLocale().toString(saved, QLocale::ShortFormat);
}

} // namespace PhotoAlbums
