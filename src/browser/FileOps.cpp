#include "browser/FileOps.h"

#include "common/Formats.h"
#include "gallery/FilesFound.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <filesystem>
#include <system_error>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace FileOps {

namespace {

using FaultHook = std::function<bool(const QString&, const QString&)>;

FaultHook& faultHook()
{
    static FaultHook hook;
    return hook;
}

void tell(QString* reason, const QString& text)
{
    if (reason)
        *reason = text;
}

QString quoted(const QString& path)
{
    return u'"' + path + u'"';
}

QString errnoText(int code)
{
    return QString::fromStdString(std::generic_category().message(code));
}

// Whether the test seam wants this step to fail; if so, why says so.
bool injected(const QString& step, const QString& path, QString& why)
{
    const FaultHook& hook = faultHook();
    if (!hook || !hook(step, path))
        return false;
    why = QStringLiteral("The %1 of %2 failed.").arg(step, quoted(path));
    return true;
}

// Anything under that name, a dangling link included, would be clobbered by a rename.
bool taken(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

std::filesystem::path fsPath(const QString& path)
{
#ifdef Q_OS_WIN
    return std::filesystem::path(path.toStdWString());
#else
    return std::filesystem::path(QFile::encodeName(path).toStdString());
#endif
}

// A rename that fails rather than replace whatever is at to. Where the file system offers no
// atomic way, an existence check closes all but a tiny window.
bool renameNoReplace(const QString& from, const QString& to, QString& why)
{
#ifdef Q_OS_UNIX
    const QByteArray src = QFile::encodeName(from);
    const QByteArray dst = QFile::encodeName(to);
#if defined(Q_OS_LINUX) && defined(RENAME_NOREPLACE)
    if (::renameat2(AT_FDCWD, src.constData(), AT_FDCWD, dst.constData(), RENAME_NOREPLACE) == 0)
        return true;
    // EINVAL: a file system without the flag (some network and FUSE ones).
    if (errno != EINVAL && errno != ENOSYS) {
        why = errnoText(errno);
        return false;
    }
#endif
    if (::link(src.constData(), dst.constData()) == 0) {
        if (::unlink(src.constData()) == 0)
            return true;
        const int code = errno;
        ::unlink(dst.constData());
        why = errnoText(code);
        return false;
    }
    // EPERM: a file system without hard links (FAT); anything else is a real answer.
    if (errno != EPERM && errno != ENOSYS && errno != EOPNOTSUPP) {
        why = errnoText(errno);
        return false;
    }
#endif
    if (taken(to)) {
        why = QStringLiteral("%1 already exists.").arg(quoted(to));
        return false;
    }
    std::error_code error;
    std::filesystem::rename(fsPath(from), fsPath(to), error);
    if (error) {
        why = QString::fromStdString(error.message());
        return false;
    }
    return true;
}

// Puts from in place of to in one step, so to is either the old file or the new one.
bool renameReplacing(const QString& from, const QString& to, QString& why)
{
    std::error_code error;
    std::filesystem::rename(fsPath(from), fsPath(to), error);
    if (error) {
        why = QString::fromStdString(error.message());
        return false;
    }
    return true;
}

bool removeFile(const QString& path, QString& why)
{
    QFile file(path);
    if (file.remove())
        return true;
    why = QStringLiteral("Cannot remove %1: %2").arg(quoted(path), file.errorString());
    return false;
}

// Copies the content of source (through a link, to what it leads to) into a new file dest,
// with the source's permissions and modification time. The copy is on disk and as long as
// the source before this returns true; on failure dest is gone.
bool copyContent(const QString& source, const QString& dest, QString& why)
{
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly)) {
        why = QStringLiteral("Cannot read %1: %2").arg(quoted(source), in.errorString());
        return false;
    }
    QFile out(dest);
    if (!out.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        why = QStringLiteral("Cannot create %1: %2").arg(quoted(dest), out.errorString());
        return false;
    }
    const auto fail = [&](const QString& text) {
        why = text;
        out.close();
        QFile::remove(dest);
        return false;
    };
    QByteArray buffer(1 << 20, Qt::Uninitialized);
    qint64 copied = 0;
    for (;;) {
        const qint64 got = in.read(buffer.data(), buffer.size());
        if (got < 0)
            return fail(QStringLiteral("Cannot read %1: %2").arg(quoted(source), in.errorString()));
        if (got == 0)
            break;
        if (out.write(buffer.constData(), got) != got)
            return fail(QStringLiteral("Cannot write %1: %2").arg(quoted(dest), out.errorString()));
        copied += got;
    }
    if (!out.flush())
        return fail(QStringLiteral("Cannot write %1: %2").arg(quoted(dest), out.errorString()));
#ifdef Q_OS_UNIX
    // The source may be deleted next: the copy must be on the disk, not in a cache.
    if (::fsync(out.handle()) != 0)
        return fail(QStringLiteral("Cannot write %1: %2").arg(quoted(dest), errnoText(errno)));
#endif
    const QFileInfo sourceInfo(source);
    out.setFileTime(sourceInfo.lastModified(), QFileDevice::FileModificationTime);
    out.setPermissions(sourceInfo.permissions());
    out.close();
    if (injected(QStringLiteral("copy"), source, why))
        return fail(why);
    if (copied != sourceInfo.size() || QFileInfo(dest).size() != sourceInfo.size())
        return fail(QStringLiteral("The copy of %1 is incomplete.").arg(quoted(source)));
    return true;
}

// A new link at dest leading where the link source leads, absolutely, so that it still does
// from another folder.
bool copyLink(const QString& source, const QString& dest, QString& why)
{
    const QString target = QFileInfo(source).symLinkTarget();
    if (target.isEmpty() || !QFile::link(target, dest)) {
        why = QStringLiteral("Cannot create the link %1.").arg(quoted(dest));
        return false;
    }
    if (injected(QStringLiteral("copy"), source, why)) {
        QFile::remove(dest);
        return false;
    }
    return true;
}

// name + "ddmmhhss" (day, month, hour, second) + "~.tmp" in folder; a number is added while
// that is taken, and a very long name is shortened to stay within the file system's limit.
QString temporaryName(const QString& folder, const QString& name, int attempt)
{
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("ddMMhhss"));
    const QString suffix = stamp + (attempt ? QStringLiteral("-%1").arg(attempt) : QString()) +
                           QStringLiteral("~.tmp");
    QString base = name;
    while (!base.isEmpty() && QFile::encodeName(base + suffix).size() > 255)
        base.chop(1);
    return folder + base + suffix;
}

// A complete copy of source under a temporary name in folder (a link when asLink); empty on
// failure, with nothing left behind.
QString temporaryIn(const QString& source, const QString& folder, bool asLink, QString& why)
{
    const QString name = QFileInfo(source).fileName();
    for (int attempt = 0; attempt < 100; ++attempt) {
        const QString temp = temporaryName(folder, name, attempt);
        if (taken(temp))
            continue;
        if (asLink ? copyLink(source, temp, why) : copyContent(source, temp, why))
            return temp;
        return {};
    }
    why = QStringLiteral("No free temporary name for %1.").arg(quoted(source));
    return {};
}

// Why source cannot be pasted, or empty when it can. A link is fine when moved as a link;
// when copied, it must lead to a file.
QString unusableSource(const QString& source, bool linkWillDo)
{
    const QFileInfo info(source);
    if (linkWillDo && info.isSymLink())
        return {};
    if (!info.exists())
        return QStringLiteral("%1 no longer exists.").arg(quoted(source));
    if (!info.isFile())
        return QStringLiteral("%1 is not a file.").arg(quoted(source));
    return {};
}

// After the source of a move is gone and its copy could not take the new name: brings the
// copy back to the source's place, or says where it was kept.
void restore(const QString& temp, const QString& source, bool asLink, QString& why)
{
    QString ignored;
    if (renameNoReplace(temp, source, ignored))
        return;
    const bool copied =
        asLink ? copyLink(temp, source, ignored) : copyContent(temp, source, ignored);
    if (!copied)
        why += QStringLiteral(" The file was kept as %1.").arg(quoted(temp));
    else if (!QFile::remove(temp))
        why += QStringLiteral(" A spare copy was left as %1.").arg(quoted(temp));
}

// Cut into another folder: a complete temporary copy in the target folder first, then the
// source goes, then the copy takes the free name. The copy sits in the target folder so that
// the last step is a rename within one folder, which works across file systems.
bool moveAcross(const QString& source, const QString& folder, QString& added, QString& why)
{
    why = unusableSource(source, true);
    if (!why.isEmpty())
        return false;
    const bool asLink = QFileInfo(source).isSymLink();
    const QString temp = temporaryIn(source, folder, asLink, why);
    if (temp.isEmpty())
        return false;
    if (injected(QStringLiteral("delete"), source, why) || !removeFile(source, why)) {
        QFile::remove(temp);
        return false;
    }
    const QString target = UniqueTarget(folder, QFileInfo(source).fileName());
    if (injected(QStringLiteral("rename"), target, why) || !renameNoReplace(temp, target, why)) {
        restore(temp, source, asLink, why);
        return false;
    }
    added = target.mid(folder.size());
    return true;
}

// Copy into another folder under the same name, replacing a file of that name once
// confirmReplace agrees. skipped is set when it does not.
bool copyReplacing(const QString& source, const QString& folder, const QString& name,
                   const std::function<bool(const QString&)>& confirmReplace, bool& skipped,
                   QString& why)
{
    why = unusableSource(source, false);
    if (!why.isEmpty())
        return false;
    const QString target = folder + name;
    const QFileInfo existing(target);
    const bool replacing = taken(target);
    if (replacing && existing.isDir() && !existing.isSymLink()) {
        why = QStringLiteral("%1 is a folder.").arg(quoted(target));
        return false;
    }
    if (replacing && confirmReplace && !confirmReplace(target)) {
        skipped = true;
        return true;
    }
    const QString temp = temporaryIn(source, folder, false, why);
    if (temp.isEmpty())
        return false;
    const bool done = replacing ? !injected(QStringLiteral("replace"), target, why) &&
                                      renameReplacing(temp, target, why)
                                : !injected(QStringLiteral("rename"), target, why) &&
                                      renameNoReplace(temp, target, why);
    if (!done)
        QFile::remove(temp);
    return done;
}

// Copy within its own folder, under the first free "Copy Of " name.
bool copyBeside(const QString& source, const QString& folder, const QString& name, QString& added,
                QString& why)
{
    why = unusableSource(source, false);
    if (!why.isEmpty())
        return false;
    const QString temp = temporaryIn(source, folder, false, why);
    if (temp.isEmpty())
        return false;
    const QString target = UniqueTarget(folder, name);
    if (injected(QStringLiteral("rename"), target, why) || !renameNoReplace(temp, target, why)) {
        QFile::remove(temp);
        return false;
    }
    added = target.mid(folder.size());
    return true;
}

bool sameFolder(const QString& a, const QString& b)
{
    if (a == b)
        return true;
    const QString canonical = QFileInfo(a).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(b).canonicalFilePath();
}

QString trashInfo(const QString& originalPath)
{
    // Path= is URI-escaped, so names with "%", newlines or non-Latin letters restore right.
    const QByteArray path =
        QFile::encodeName(QFileInfo(originalPath).absoluteFilePath()).toPercentEncoding("/");
    return QStringLiteral("[Trash Info]\nPath=%1\nDeletionDate=%2\n")
        .arg(QString::fromLatin1(path),
             QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddThh:mm:ss")));
}

bool writeTrashInfo(const QString& infoPath, const QString& originalPath)
{
    QFile info(infoPath);
    return info.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           info.write(trashInfo(originalPath).toUtf8()) > 0 && info.flush();
}

// Where QFile::moveToTrash put the file must be <trash>/files/<name>, with <trash> named
// "Trash" (the home trash) or ".Trash-uid" / ".Trash/uid" (a volume's own).
bool inTrashFolder(const QString& trashed)
{
    if (!QFileInfo(trashed).isAbsolute())
        return false;
    QDir files = QFileInfo(trashed).dir();
    if (files.dirName() != QLatin1String("files"))
        return false;
    QDir trash = files;
    if (!trash.cdUp())
        return false;
    const QString name = trash.dirName();
    if (name == QLatin1String("Trash") || name.startsWith(QLatin1String(".Trash-")))
        return true;
    return trash.cdUp() && trash.dirName() == QLatin1String(".Trash");
}

// The home trash by hand, for a file on another file system than the trash: a complete copy
// with its .trashinfo, and only then the file itself goes.
bool copyToHomeTrash(const QString& path, QString& why, QString& placed)
{
    const QString trash =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/Trash";
    const bool fresh = !QFileInfo::exists(trash);
    if (!QDir().mkpath(trash + "/files") || !QDir().mkpath(trash + "/info")) {
        why = QStringLiteral("Cannot create the trash folder %1.").arg(quoted(trash));
        return false;
    }
    if (fresh)
        QFile::setPermissions(trash, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                         QFileDevice::ExeOwner);
    const QFileInfo source(path);
    const QString name = source.fileName();
    for (int attempt = 0; attempt < 10000; ++attempt) {
        const QString unique =
            attempt ? name + QStringLiteral("-%1").arg(attempt, 4, 10, QChar(u'0')) : name;
        const QString infoPath = trash + "/info/" + unique + ".trashinfo";
        const QString filesPath = trash + "/files/" + unique;
        if (taken(filesPath))
            continue;
        // Creating the info file first claims the name, as other trash writers expect.
        QFile claim(infoPath);
        if (!claim.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            if (taken(infoPath))
                continue;
            why = QStringLiteral("Cannot write %1: %2").arg(quoted(infoPath), claim.errorString());
            return false;
        }
        claim.close();
        const bool copied =
            source.isSymLink() ? copyLink(path, filesPath, why) : copyContent(path, filesPath, why);
        if (!copied) {
            QFile::remove(infoPath);
            return false;
        }
        if (!writeTrashInfo(infoPath, path)) {
            why = QStringLiteral("Cannot write %1.").arg(quoted(infoPath));
        } else if (!injected(QStringLiteral("delete"), path, why) && removeFile(path, why)) {
            placed = filesPath;
            return true;
        }
        QFile::remove(filesPath);
        QFile::remove(infoPath);
        return false;
    }
    why = QStringLiteral("No free name in the trash for %1.").arg(quoted(path));
    return false;
}

} // namespace

QString UniqueTarget(const QString& folder, const QString& name)
{
    QString prefix;
    while (taken(folder + prefix + name))
        prefix.prepend(QStringLiteral("Copy Of "));
    return folder + prefix + name;
}

QString TemporaryCopy(const QString& source, QString* reason)
{
    QString why = unusableSource(source, false);
    QString temp;
    if (why.isEmpty())
        temp = temporaryIn(source, QFileInfo(source).path() + u'/', false, why);
    tell(reason, why);
    return temp;
}

QString KeptExtensionName(const QString& oldName, const QString& typed)
{
    // An empty label would leave only the extension: a hidden file the list no longer shows.
    if (typed == oldName || typed.isEmpty())
        return oldName;
    const QString kept = oldName.right(4);
    return typed.right(4) == kept ? typed : typed + kept;
}

bool Rename(const QString& folder, const QString& oldName, const QString& newName, QString* reason)
{
    if (newName == oldName)
        return true;
    QString why;
    const QString from = folder + oldName;
    const QString to = folder + newName;
    if (newName.isEmpty() || newName.contains(u'/') || newName == QLatin1String(".") ||
        newName == QLatin1String("..")) {
        why = QStringLiteral("%1 is not a valid file name.").arg(quoted(newName));
    } else if (!taken(from)) {
        why = QStringLiteral("%1 no longer exists.").arg(quoted(from));
    } else if (taken(to)) {
        why = QStringLiteral("%1 already exists.").arg(quoted(to));
    } else if (!injected(QStringLiteral("rename"), to, why) && renameNoReplace(from, to, why)) {
        return true;
    }
    tell(reason, why);
    return false;
}

QString RenameFailedText()
{
    return QStringLiteral("There was a problem with the file.  Item NOT renamed.");
}

QString RenameTitle()
{
    return QStringLiteral("Lumbra - Rename Item");
}

QString DeleteTitle()
{
    return QStringLiteral("Lumbra - Delete Files");
}

QString DeleteQuestion(int count)
{
    const bool one = count == 1;
    return QStringLiteral("Are you sure you want to delete th") +
           (one ? QStringLiteral("is ") : QStringLiteral("ese ")) +
           (one ? QString() : QString::number(count)) + QStringLiteral("item") +
           (one ? QString() : QStringLiteral("s")) + QStringLiteral("?");
}

bool MoveToTrash(const QString& path, QString* reason, QString* placedAt)
{
    QString why;
    const QFileInfo source(path);
    if (!source.exists() && !source.isSymLink()) {
        tell(reason, QStringLiteral("%1 no longer exists.").arg(quoted(path)));
        return false;
    }
    // Without the data folder, Qt 6.4 "trashes" into ./files under the working folder.
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    QString trashed;
    if (!injected(QStringLiteral("trash"), path, why) && QFile::moveToTrash(path, &trashed)) {
        if (inTrashFolder(trashed)) {
            // Qt writes Path= unescaped; put it right for the file managers that restore it.
            const QString infoPath = QFileInfo(trashed).dir().absoluteFilePath(
                "../info/" + QFileInfo(trashed).fileName() + ".trashinfo");
            writeTrashInfo(QDir::cleanPath(infoPath), source.absoluteFilePath());
            if (placedAt)
                *placedAt = QFileInfo(trashed).absoluteFilePath();
            return true;
        }
        // Landed somewhere that is no trash: undo, then trash by hand below.
        const QFileInfo stray(trashed);
        const QString strayFiles = stray.absolutePath();
        const QString strayInfo = QDir::cleanPath(strayFiles + "/../info");
        QFile::remove(strayInfo + u'/' + stray.fileName() + ".trashinfo");
        if (!renameNoReplace(stray.absoluteFilePath(), path, why)) {
            tell(reason, QStringLiteral("The file was moved to %1 instead of the trash.")
                             .arg(quoted(stray.absoluteFilePath())));
            return false;
        }
        // rmdir leaves a folder alone unless it is empty, as Qt made it.
        QDir().rmdir(strayFiles);
        QDir().rmdir(strayInfo);
    }
    // QFile::moveToTrash only renames, so a file on another file system is copied instead.
    QString placed;
    if (copyToHomeTrash(path, why, placed)) {
        if (placedAt)
            *placedAt = placed;
        return true;
    }
    tell(reason, why);
    return false;
}

QString MoveTo(const QString& from, const QString& to, QString* reason)
{
    const QFileInfo dest(to);
    const QString folder = dest.absolutePath() + u'/';
    QString why = unusableSource(from, true);
    if (why.isEmpty()) {
        QString target = UniqueTarget(folder, dest.fileName());
        if (!injected(QStringLiteral("rename"), target, why) && renameNoReplace(from, target, why))
            return target;
        // Another file system: a complete copy first, and only then the file goes.
        const bool asLink = QFileInfo(from).isSymLink();
        const QString temp = temporaryIn(from, folder, asLink, why);
        if (!temp.isEmpty()) {
            if (!injected(QStringLiteral("delete"), from, why) && removeFile(from, why)) {
                target = UniqueTarget(folder, dest.fileName());
                if (!injected(QStringLiteral("rename"), target, why) &&
                    renameNoReplace(temp, target, why))
                    return target;
                restore(temp, from, asLink, why);
            } else {
                QFile::remove(temp);
            }
        }
    }
    tell(reason, why);
    return {};
}

QString RestoreFromTrash(const QString& trashed, const QString& fallback, QString* reason)
{
    const QFileInfo file(trashed);
    const QString infoPath =
        QDir::cleanPath(file.absolutePath() + "/../info/" + file.fileName() + ".trashinfo");
    QString original = fallback;
    QFile info(infoPath);
    if (info.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : info.readAll().split('\n')) {
            if (line.startsWith("Path=")) {
                const QString path = QFile::decodeName(QByteArray::fromPercentEncoding(line.mid(5).trimmed()));
                if (QFileInfo(path).isAbsolute())
                    original = path;
                break;
            }
        }
        info.close();
    }
    if (!file.exists() && !file.isSymLink()) {
        tell(reason, QStringLiteral("%1 is no longer in the trash.").arg(quoted(file.fileName())));
        return {};
    }
    if (!QDir().mkpath(QFileInfo(original).absolutePath())) {
        tell(reason, QStringLiteral("Cannot create the folder of %1.").arg(quoted(original)));
        return {};
    }
    const QString restored = MoveTo(trashed, original, reason);
    if (!restored.isEmpty())
        QFile::remove(infoPath);
    return restored;
}

PasteResult Paste(const FilesFound& list, const QString& folder,
                  const std::function<bool(const QString& targetPath)>& confirmReplace)
{
    PasteResult result;
    const QString into = folder.endsWith(u'/') ? folder : folder + u'/';
    const bool cut = Formats::toBool(list.Tag()).value_or(false);
    const bool same = sameFolder(list.Path(), into);
    for (qsizetype i = 0; i < list.Count(); ++i) {
        const QString name = list.File(i);
        const QString source = list.Path() + name;
        QString added;
        QString why;
        bool done = true;
        if (cut && same) {
            result.unghosted << name;
            continue;
        }
        if (cut) {
            done = moveAcross(source, into, added, why);
        } else if (!same) {
            bool skipped = false;
            done = copyReplacing(source, into, name, confirmReplace, skipped, why);
            if (done && !skipped)
                added = name;
        } else {
            done = copyBeside(source, into, name, added, why);
        }
        if (!done) {
            result.ok = false;
            result.failedName = name;
            result.reason = why;
            break;
        }
        if (!added.isEmpty()) {
            result.added << added;
            result.sources << source;
        }
    }
    return result;
}

void SetFaultHook(std::function<bool(const QString& step, const QString& path)> hook)
{
    faultHook() = std::move(hook);
}

} // namespace FileOps
