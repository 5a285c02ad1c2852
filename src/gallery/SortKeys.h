#pragma once

#include "gallery/FolderScan.h"

#include <QString>

#include <vector>

class FilesFound;

// The gallery's sort orders and the key each file gets for them.
namespace SortKeys {

// The stored "Sortation" values.
enum Sortation
{
    ByName = 0,
    ByType = 1,
    BySize = 2,
    ByDate = 3
};

// The last three characters, upper-cased: "JPG", and "PEG" for a .jpeg.
QString typeKey(const QString& name);
// Hundreds of bytes, halves to even, nine digits: 150 and 250 bytes both give "000000002".
QString sizeKey(qint64 bytes);
// The local modification date, month first ("mmddyyyy"), so date order is month, day, year.
QString dateKey(qint64 modifiedSecs);

// The key of one file for an order; the facts the scan kept are used, else the file is read
// (a file that is gone gets size "000000000" and an empty date).
QString keyFor(int sortation, const QString& folder, const FoundFile& file);

// The window's stored order ("Sortation" in its section): 0 when missing or outside 0..3.
int storedSortation(const QString& windowSection);

// The list indices in display order. Keys compare with QString::compare(Qt::CaseInsensitive),
// which folds case by Unicode rules and never by the locale (QCollator drops its options under
// C.UTF-8); equal keys keep list order. An order outside 0..3 sorts by name.
std::vector<qsizetype> sortedOrder(const FilesFound& files, int sortation);

} // namespace SortKeys
