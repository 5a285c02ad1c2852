#include "gallery/FolderScan.h"

#include <QFile>

#if defined(Q_OS_UNIX)
#include <dirent.h>
#include <sys/stat.h>
#else
#include <QDirIterator>
#include <QFileInfo>
#endif

#include <algorithm>
#include <cstring>
#include <iterator>

namespace FolderScan {

namespace {

// "*.ext" with a plain ASCII extension is nearly every pattern the program uses: it is
// matched on the raw bytes, before the name is decoded.
struct Pattern
{
    QString text;
    QByteArray asciiSuffix; // set when the pattern is "*" + plain ASCII
};

Pattern compile(const QString& text)
{
    Pattern pattern{text, {}};
    const QStringView rest = QStringView(text).mid(1);
    const bool plain = text.startsWith(u'*') && !rest.isEmpty() &&
                       std::none_of(rest.begin(), rest.end(), [](QChar c) {
                           return c == u'*' || c == u'?' || c.unicode() > 0x7F;
                       });
    if (plain)
        pattern.asciiSuffix = rest.toLatin1();
    return pattern;
}

bool matchesFrom(QStringView pattern, QStringView name)
{
    // Iterative glob with one backtrack point: linear in practice, no recursion.
    qsizetype p = 0, n = 0, starP = -1, starN = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == u'*') {
            starP = p++;
            starN = n;
        } else if (p < pattern.size() &&
                   (pattern[p] == u'?' || pattern[p].toCaseFolded() == name[n].toCaseFolded())) {
            ++p;
            ++n;
        } else if (starP >= 0) {
            p = starP + 1;
            n = ++starN;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == u'*')
        ++p;
    return p == pattern.size();
}

bool endsWithNoCase(const char* raw, size_t length, const QByteArray& suffix)
{
    const auto size = size_t(suffix.size());
    if (length < size)
        return false;
    const char* tail = raw + length - size;
    for (size_t i = 0; i < size; ++i) {
        const auto lower = [](char c) { return (c >= 'A' && c <= 'Z') ? char(c + 32) : c; };
        if (lower(tail[i]) != lower(suffix[qsizetype(i)]))
            return false;
    }
    return true;
}

// Which patterns a raw name matches; the name is decoded only when a pattern needs it.
template <typename Take>
void matchName(const std::vector<Pattern>& patterns, const char* raw, size_t length,
               QString& decoded, Take&& take)
{
    for (size_t i = 0; i < patterns.size(); ++i) {
        const Pattern& pattern = patterns[i];
        bool hit;
        if (!pattern.asciiSuffix.isEmpty()) {
            hit = endsWithNoCase(raw, length, pattern.asciiSuffix);
        } else {
            if (decoded.isNull())
                decoded = QFile::decodeName(QByteArray::fromRawData(raw, qsizetype(length)));
            hit = matchesFrom(pattern.text, decoded);
        }
        if (hit)
            take(i);
    }
}

} // namespace

std::vector<FoundFile> scan(const QString& folder, const QStringList& patterns)
{
    std::vector<Pattern> compiled;
    compiled.reserve(size_t(patterns.size()));
    for (const QString& text : patterns)
        compiled.push_back(compile(text));
    std::vector<std::vector<FoundFile>> groups(compiled.size());
    std::vector<size_t> hits;

#if defined(Q_OS_UNIX)
    const QByteArray encoded = QFile::encodeName(folder.isEmpty() ? QStringLiteral(".") : folder);
    DIR* dir = opendir(encoded.constData());
    if (!dir)
        return {};
    const int dirFd = dirfd(dir);
    while (const dirent* entry = readdir(dir)) {
        // Hidden names (and "." and "..") never count; folders are known without a stat.
        if (entry->d_name[0] == '.' || entry->d_type == DT_DIR)
            continue;
        const size_t length = std::strlen(entry->d_name);
        QString decoded;
        hits.clear();
        matchName(compiled, entry->d_name, length, decoded, [&](size_t i) { hits.push_back(i); });
        if (hits.empty())
            continue;
        struct stat info;
        if (fstatat(dirFd, entry->d_name, &info, 0) != 0 || !S_ISREG(info.st_mode))
            continue;
        if (decoded.isNull())
            decoded = QFile::decodeName(QByteArray::fromRawData(entry->d_name, qsizetype(length)));
        const FileFacts facts{qint64(info.st_size), qint64(info.st_mtim.tv_sec)};
        for (const size_t i : hits)
            groups[i].push_back({decoded, facts});
    }
    closedir(dir);
#else
    QDirIterator it(folder.isEmpty() ? QStringLiteral(".") : folder, QDir::Files);
    while (it.hasNext()) {
        it.next();
        const QFileInfo info = it.fileInfo();
        if (info.isHidden())
            continue;
        const QByteArray raw = info.fileName().toUtf8();
        QString decoded;
        hits.clear();
        matchName(compiled, raw.constData(), size_t(raw.size()), decoded,
                  [&](size_t i) { hits.push_back(i); });
        const FileFacts facts{info.size(), info.lastModified().toSecsSinceEpoch()};
        for (const size_t i : hits)
            groups[i].push_back({info.fileName(), facts});
    }
#endif

    size_t total = 0;
    for (const auto& group : groups)
        total += group.size();
    std::vector<FoundFile> found;
    found.reserve(total);
    for (auto& group : groups)
        std::move(group.begin(), group.end(), std::back_inserter(found));
    return found;
}

} // namespace FolderScan
