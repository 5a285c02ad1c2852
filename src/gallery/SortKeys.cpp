#include "gallery/SortKeys.h"

#include "app/SettingsStore.h"
#include "common/Formats.h"
#include "gallery/FilesFound.h"

#include <QDateTime>
#include <QFileInfo>

#if defined(Q_OS_UNIX)
#include <time.h>
#endif

#include <algorithm>
#include <string_view>

namespace SortKeys {

QString typeKey(const QString& name)
{
    return name.right(3).toUpper();
}

QString sizeKey(qint64 bytes)
{
    return Formats::nineDigits(Formats::bankersRound(double(bytes) / 100.0));
}

namespace {

QDate localDate(qint64 secs)
{
#if defined(Q_OS_UNIX)
    // QDateTime's local-time conversion costs microseconds a file; localtime_r a tenth of it.
    const time_t time = time_t(secs);
    struct tm parts;
    if (localtime_r(&time, &parts))
        return QDate(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday);
#endif
    return QDateTime::fromSecsSinceEpoch(secs).date();
}

} // namespace

QString dateKey(qint64 modifiedSecs)
{
    // Files of one folder mostly share days: the last key is reused (and its text shared).
    thread_local QDate lastDate;
    thread_local QString lastKey;
    const QDate date = localDate(modifiedSecs);
    if (date != lastDate) {
        lastDate = date;
        lastKey = Formats::mmddyyyy(date);
    }
    return lastKey;
}

QString keyFor(int sortation, const QString& folder, const FoundFile& file)
{
    if (sortation == ByType)
        return typeKey(file.name);
    if (sortation != BySize && sortation != ByDate)
        return file.name;
    auto facts = file.facts;
    if (!facts) {
        const QFileInfo info(folder + file.name);
        if (info.exists())
            facts = FileFacts{info.size(), info.lastModified().toSecsSinceEpoch()};
    }
    if (sortation == BySize)
        return sizeKey(facts ? facts->size : 0);
    return facts ? dateKey(facts->modifiedSecs) : QString();
}

int storedSortation(const QString& windowSection)
{
    int sortation = ByName;
    SettingsStore::global().readInto(Keys::Sortation.in(windowSection), sortation);
    return (sortation >= ByName && sortation <= ByDate) ? sortation : ByName;
}

std::vector<qsizetype> sortedOrder(const FilesFound& files, int sortation)
{
    // Folding each key once and comparing code units orders as QString::compare with
    // Qt::CaseInsensitive does, without folding both sides at every comparison.
    const qsizetype count = files.Count();
    struct Row
    {
        QString key;
        std::u16string_view view;
        qsizetype index;
    };
    std::vector<Row> rows;
    rows.reserve(size_t(count));
    for (qsizetype i = 0; i < count; ++i) {
        Row row{keyFor(sortation, files.Path(), files.Found(i)).toCaseFolded(), {}, i};
        row.view = std::u16string_view(reinterpret_cast<const char16_t*>(row.key.utf16()),
                                       size_t(row.key.size()));
        rows.push_back(std::move(row));
    }
    std::sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) {
        const int byKey = a.view.compare(b.view);
        return byKey < 0 || (byKey == 0 && a.index < b.index);
    });
    std::vector<qsizetype> order;
    order.reserve(rows.size());
    for (const Row& row : rows)
        order.push_back(row.index);
    return order;
}

} // namespace SortKeys
