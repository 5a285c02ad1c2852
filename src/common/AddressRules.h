#pragma once

#include <QString>

#include <functional>

class RecentList;

// The address bar's rules, apart from its widgets. Addresses use "/" as the separator.
namespace AddressRules {

// What the box shows when a typed address names nothing.
inline const QString NotFoundText = QStringLiteral("Cannot locate that adddress...");

// The folder an empty address stands for: the user's pictures folder, ending with "/".
QString DefaultAddress();

// value with a "/" appended, unless it already ends with "/" or "*" or has a "." among its
// last four characters: a file name or a pattern keeps its form.
QString WithTrailingSeparator(const QString& value);

// The text to show in a box boxWidth wide: when text is wider (as widthOf measures it), its
// first (length - 5) characters followed by "...", else text unchanged.
QString ShortenedText(const QString& text, int boxWidth,
                      const std::function<int(const QString&)>& widthOf);

// Whether a typed address names an existing folder or file, or a pattern that matches
// something. The empty text stands for the pictures folder and is accepted; a relative path
// is not, since it would depend on the program's working folder.
bool AddressExists(const QString& typed);

// The index of the next history entry after index `after` (-1 for the newest) that a back
// step can go to: not empty and not the current address. -1 when there is none.
int BackIndex(const RecentList& history, int after, const QString& current);

} // namespace AddressRules
