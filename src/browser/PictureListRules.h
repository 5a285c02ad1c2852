#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <array>

// The rules behind the picture list of the browser and the slideshow builder: what each
// column shows, how the list sorts, which view a toolbar button means. No widgets here.
namespace PictureListRules {

// The list's columns, 0-based as the model holds them.
enum Column
{
    NameColumn = 0,
    TypeColumn = 1,
    SizeColumn = 2,
    DateColumn = 3,
    SizeKeyColumn = 4,
    DateKeyColumn = 5,
    ColumnCount = 6
};

// The captions of the six columns; the last one has none.
QStringList Captions();

// "JPG File": what follows the first "." in the name's last four characters (all four
// characters when there is none), upper-cased for the browser, followed by " File".
QString TypeText(const QString& name, bool upperCase);
// The length in thousands of bytes, halves to even, and never less than 1.
qint64 Kilobytes(qint64 bytes);
// "1,500 KB".
QString SizeText(qint64 bytes);
// The exact length, nine digits: sorting these texts sorts by bytes.
QString SizeKey(qint64 bytes);
// The date and time in the locale's general form: short date and the time with seconds,
// or the date alone at midnight.
QString DateText(const QDateTime& modified);
// "mmddyyyy", so that the column sorts by month, then day, then year.
QString DateKey(const QDateTime& modified);

// The six texts of one file's row.
std::array<QString, ColumnCount> RowTexts(const QString& name, qint64 bytes,
                                          const QDateTime& modified, bool upperCaseType);

// The list's order compares the column's texts without regard to case, whatever the locale.
bool TextLess(const QString& a, const QString& b);

// What SortItems makes of its key: sorting by size (2) sorts by the exact size key (4).
int SortItemsKey(int key);

// The list's sort state: the column whose texts it sorts by, the direction, and whether it
// sorts at all.
struct SortState
{
    int key = NameColumn;
    Qt::SortOrder order = Qt::AscendingOrder;
    bool on = false;

    bool operator==(const SortState&) const = default;
};

// A click on column (1-based, as the user counts): "Size" stands for the size key column
// and "Modified" for the date key column. Clicking the column sorted by reverses the order;
// another column becomes the key and the order stays.
int ClickedColumn(int column);
SortState AfterColumnClick(SortState state, int column);
// The column whose header shows the sort for a key: the size and date keys show on "Size"
// and "Modified".
int HeaderColumnFor(int key);

// The list's views as the list numbers them, and the mapping from the view-type buttons
// (1 large icons, 2 details, 3 list). A number outside 1..3 means the default, 3.
enum ListMode
{
    LargeIconsView = 0,
    ListView = 2,
    ReportView = 3
};
int ValidViewType(int viewType);
ListMode ModeForViewType(int viewType);

// After a deletion, the row to select: the one now standing where the first deleted item
// was, or the last row when the list has become shorter; -1 for an empty list.
int RowAfterDelete(int recordedRow, int rowsLeft);

// Where dragged rows (sorted, of a list of count rows) go when dropped on target (-1: below
// the last row): the row the first of them takes once they have been taken out and put back
// together, or -1 when there is nothing to move. They take the target's place: a drag down puts
// them after it, a drag up before it.
int DropInsertRow(const QList<int>& dragged, int target, int count);

// The root of the volume (of roots, the mounted volumes) that holds path: the longest root
// that path lies in. Empty when none does.
QString VolumeRootOf(const QString& path, const QStringList& roots);
// Whether two folder paths name the same folder as the file system compares names.
bool SamePath(const QString& a, const QString& b);

} // namespace PictureListRules
