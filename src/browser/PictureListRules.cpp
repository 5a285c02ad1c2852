#include "browser/PictureListRules.h"

#include "common/Formats.h"

#include <QLocale>

#include <algorithm>

namespace PictureListRules {

namespace {

constexpr Qt::CaseSensitivity FileNameCase =
#if defined(Q_OS_WIN)
    Qt::CaseInsensitive;
#else
    Qt::CaseSensitive;
#endif

// The locale's long time format less its time zone, which a file list has no use for.
QString timeWithSeconds(const QLocale& locale)
{
    thread_local QLocale lastLocale = QLocale::c();
    thread_local QString lastFormat;
    if (lastFormat.isEmpty() || !(locale == lastLocale)) {
        const QString format = locale.timeFormat(QLocale::LongFormat);
        QString kept;
        bool quoted = false;
        for (const QChar c : format) {
            if (c == u'\'')
                quoted = !quoted;
            if (!quoted && c == u't')
                continue;
            kept += c;
        }
        lastLocale = locale;
        lastFormat = kept.trimmed();
    }
    return lastFormat;
}

QString withoutTrailingSeparator(const QString& path)
{
    QString trimmed = path;
    while (trimmed.size() > 1 && trimmed.endsWith(u'/') && !trimmed.endsWith(QLatin1String(":/")))
        trimmed.chop(1);
    return trimmed;
}

} // namespace

QStringList Captions()
{
    return {QStringLiteral("Filename"), QStringLiteral("Type"),      QStringLiteral("Size"),
            QStringLiteral("Modified"), QStringLiteral("Real Size"), QString()};
}

QString TypeText(const QString& name, bool upperCase)
{
    const QString tail = name.right(4);
    const qsizetype dot = tail.indexOf(u'.');
    const QString type = dot < 0 ? tail : tail.mid(dot + 1);
    return (upperCase ? type.toUpper() : type) + QStringLiteral(" File");
}

qint64 Kilobytes(qint64 bytes)
{
    return qMax<qint64>(1, Formats::bankersRound(double(bytes) / 1000.0));
}

QString SizeText(qint64 bytes)
{
    return Formats::thousands(Kilobytes(bytes)) + QStringLiteral(" KB");
}

QString SizeKey(qint64 bytes)
{
    return Formats::nineDigits(bytes);
}

QString DateText(const QDateTime& modified)
{
    const QLocale locale;
    const QString date = locale.toString(modified.date(), QLocale::ShortFormat);
    if (modified.time() == QTime(0, 0))
        return date;
    return date + u' ' + locale.toString(modified.time(), timeWithSeconds(locale));
}

QString DateKey(const QDateTime& modified)
{
    return Formats::mmddyyyy(modified.date());
}

std::array<QString, ColumnCount> RowTexts(const QString& name, qint64 bytes,
                                          const QDateTime& modified, bool upperCaseType)
{
    return {name,
            TypeText(name, upperCaseType),
            SizeText(bytes),
            DateText(modified),
            SizeKey(bytes),
            DateKey(modified)};
}

bool TextLess(const QString& a, const QString& b)
{
    return QString::compare(a, b, Qt::CaseInsensitive) < 0;
}

int SortItemsKey(int key)
{
    return key == SizeColumn ? SizeKeyColumn : key;
}

int ClickedColumn(int column)
{
    switch (column) {
    case 3:
        return 5;
    case 4:
        return 6;
    default:
        return column;
    }
}

SortState AfterColumnClick(SortState state, int column)
{
    const int key = ClickedColumn(column) - 1;
    if (key == state.key)
        state.order = state.order == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    else
        state.key = key;
    state.on = true;
    return state;
}

int HeaderColumnFor(int key)
{
    switch (key) {
    case SizeKeyColumn:
        return SizeColumn;
    case DateKeyColumn:
        return DateColumn;
    default:
        return key;
    }
}

int ValidViewType(int viewType)
{
    return viewType >= 1 && viewType <= 3 ? viewType : 3;
}

ListMode ModeForViewType(int viewType)
{
    const int n = ValidViewType(viewType);
    return ListMode(n == 2 ? 3 : n - 1);
}

int RowAfterDelete(int recordedRow, int rowsLeft)
{
    if (rowsLeft <= 0)
        return -1;
    return qBound(0, recordedRow, rowsLeft - 1);
}

int DropInsertRow(const QList<int>& dragged, int target, int count)
{
    if (dragged.isEmpty() || dragged.size() >= count || dragged.contains(target))
        return -1;
    const int left = count - int(dragged.size());
    if (target < 0 || target >= count)
        return left;
    const int above = int(
        std::count_if(dragged.begin(), dragged.end(), [target](int row) { return row < target; }));
    const int landing = target - above;
    return target > dragged.first() ? landing + 1 : landing;
}

QString VolumeRootOf(const QString& path, const QStringList& roots)
{
    const QString within = withoutTrailingSeparator(path) + u'/';
    QString best;
    qsizetype bestLength = 0;
    for (const QString& root : roots) {
        const QString folder = root.endsWith(u'/') ? root : root + u'/';
        if (within.startsWith(folder, FileNameCase) && folder.size() > bestLength) {
            best = root;
            bestLength = folder.size();
        }
    }
    return best;
}

bool SamePath(const QString& a, const QString& b)
{
    return QString::compare(withoutTrailingSeparator(a), withoutTrailingSeparator(b),
                            FileNameCase) == 0;
}

} // namespace PictureListRules
