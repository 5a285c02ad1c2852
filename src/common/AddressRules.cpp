#include "common/AddressRules.h"

#include "app/RecentList.h"
#include "common/Utilities.h"

#include <QDir>
#include <QFileInfo>

namespace AddressRules {

QString DefaultAddress()
{
    return Utilities::SpecialFolderPath(Utilities::Pictures);
}

QString WithTrailingSeparator(const QString& value)
{
    if (value.endsWith(u'/') || value.endsWith(u'*') || value.right(4).contains(u'.'))
        return value;
    return value + u'/';
}

QString ShortenedText(const QString& text, int boxWidth,
                      const std::function<int(const QString&)>& widthOf)
{
    if (widthOf(text) <= boxWidth)
        return text;
    return text.left(qMax(qsizetype(0), text.size() - 5)) + QStringLiteral("...");
}

bool AddressExists(const QString& typed)
{
    if (typed.isEmpty())
        return true;
    if (!QDir::isAbsolutePath(typed))
        return false;
    const QString name = Utilities::FileNameOf(typed);
    if (name.contains(u'*') || name.contains(u'?')) {
        const QDir folder(typed.left(typed.size() - name.size()));
        return folder.exists() &&
               !folder.entryList({name}, QDir::AllEntries | QDir::NoDotAndDotDot).isEmpty();
    }
    return QFileInfo::exists(typed);
}

int BackIndex(const RecentList& history, int after, const QString& current)
{
    for (int i = qMax(after + 1, 0); i < RecentList::Capacity; ++i) {
        const QString entry = history.Item(i);
        if (!entry.isEmpty() && entry != current)
            return i;
    }
    return -1;
}

} // namespace AddressRules
