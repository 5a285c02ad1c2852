#pragma once

#include <QDateTime>
#include <QSize>
#include <QString>

#include <array>
#include <optional>

// The texts of the picture-properties dialog for one file, from what could be read of it.
namespace ImagePropsText {

// Positions of the value lines (lblInfo).
enum Line
{
    Name = 0,
    Folder,
    Size,
    Width,
    Height,
    Time,
    Date,
    LineCount
};

struct Texts
{
    QString caption;
    std::array<QString, LineCount> info;
};

// The file is read in the dialog's order, and the first read that fails ends the filling:
// without a size (the file is gone) only the caption is known, and without a modification
// time the two date lines stay empty. natural is the preview's recorded size.
Texts Describe(const QString& path, const std::optional<QString>& sizeText, QSize natural,
               const QDateTime& modified);

// The path without its file name, so it keeps its trailing "/" ("/" for a file at the root).
QString FolderOf(const QString& path);
// "3:07 PM, Tuesday", in English whatever the system's language.
QString TimeText(const QDateTime& when);
// "Nov 5, 2002", in English whatever the system's language.
QString DateText(const QDateTime& when);

} // namespace ImagePropsText
