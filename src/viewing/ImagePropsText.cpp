#include "viewing/ImagePropsText.h"

#include "common/Utilities.h"

#include <QLocale>

namespace ImagePropsText {

namespace {

// Month and day names, and AM/PM, never follow the user's language here.
QLocale english()
{
    return QLocale(QLocale::English, QLocale::UnitedStates);
}

QString pixels(int count)
{
    return QString::number(count) + QStringLiteral(" pixels");
}

} // namespace

Texts Describe(const QString& path, const std::optional<QString>& sizeText, QSize natural,
               const QDateTime& modified)
{
    Texts texts;
    texts.caption = QStringLiteral("Image Properties for ") + Utilities::FileNameOf(path);
    if (!sizeText)
        return texts;
    texts.info[Size] = *sizeText;
    texts.info[Width] = pixels(natural.width());
    texts.info[Height] = pixels(natural.height());
    texts.info[Name] = Utilities::FileNameOf(path);
    texts.info[Folder] = FolderOf(path);
    if (!modified.isValid())
        return texts;
    texts.info[Time] = TimeText(modified);
    texts.info[Date] = DateText(modified);
    return texts;
}

QString FolderOf(const QString& path)
{
    return path.left(path.size() - Utilities::FileNameOf(path).size());
}

QString TimeText(const QDateTime& when)
{
    return english().toString(when, QStringLiteral("h:mm AP, dddd"));
}

QString DateText(const QDateTime& when)
{
    return english().toString(when, QStringLiteral("MMM d, yyyy"));
}

} // namespace ImagePropsText
