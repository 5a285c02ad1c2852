#include "app/TipRules.h"

#include "common/Utilities.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

namespace TipRules {

QString FilePath(const QString& programFolder)
{
    return Utilities::JoinPath(programFolder, QStringLiteral("TIPOFDAY.TXT"));
}

QString InstalledCopy()
{
    // Installed, the file is in share/lumbra; in a build folder it lies beside the program.
    const QDir exe(QCoreApplication::applicationDirPath());
    for (const char* relative : {"../share/lumbra/TIPOFDAY.TXT", "TIPOFDAY.TXT"}) {
        const QString candidate = QDir::cleanPath(exe.filePath(QLatin1String(relative)));
        if (QFileInfo::exists(candidate))
            return candidate;
    }
    return {};
}

bool ProvideCopy(const QString& path, const QString& source)
{
    if (source.isEmpty() || QFileInfo::exists(path) || !QFile::copy(source, path))
        return false;
    // The installed file may be read-only, and the user adds tips to the copy.
    QFile::setPermissions(path, QFile::permissions(path) | QFile::WriteOwner);
    return true;
}

std::optional<QStringList> Load(const QString& path)
{
    QFile file(path);
    if (!file.exists()) {
        [[maybe_unused]] const bool created = file.open(QIODevice::WriteOnly);
        return std::nullopt;
    }
    QStringList lines;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return lines;
    QTextStream in(&file);
    while (!in.atEnd())
        lines.append(in.readLine());
    return lines;
}

bool Append(const QString& path, const QString& tip)
{
    QFile file(path);
    // A last line without its line break would run on into the new one.
    bool needsBreak = false;
    if (file.open(QIODevice::ReadOnly)) {
        needsBreak =
            file.size() > 0 && file.seek(file.size() - 1) && !file.peek(1).startsWith('\n');
        file.close();
    }
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
        return false;
    QTextStream out(&file);
    if (needsBreak)
        out << '\n';
    out << QStringLiteral("...") << tip << '\n';
    out.flush();
    return out.status() == QTextStream::Ok && file.error() == QFileDevice::NoError;
}

QString ShownText(const QString& line)
{
    return QStringLiteral("...") + line;
}

bool NeedsScrollBar(const QString& shown)
{
    return shown.length() >= ScrollBarFrom;
}

int NextTip(int current, int count, bool random, const std::function<int(int)>& draw)
{
    if (count <= 0)
        return 0;
    if (!random)
        return current + 1 > count ? 1 : current + 1;
    if (count == 1)
        return 1;
    int next = current;
    while (next == current || next < 1 || next > count)
        next = draw(count);
    return next;
}

QString MissingText()
{
    return QStringLiteral("I'm sorry, Tip of the Day [tipofday.txt] file was not found.  Either it "
                          "was not in the installation package, or it has been moved or deleted.  "
                          "You can still add tips of your own!");
}

} // namespace TipRules
