#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// The tips file and the rules of the tip window, kept apart from the window: one tip a line in
// "TIPOFDAY.TXT" in the program folder, shown with "..." in front.
namespace TipRules {

// Shown tips of this many characters or more get a scroll bar.
inline constexpr int ScrollBarFrom = 216;

// The program folder followed by "TIPOFDAY.TXT".
QString FilePath(const QString& programFolder);
// The tips shipped with the program (share/lumbra beside its bin folder when installed, the
// program's own folder in a build); empty when there are none.
QString InstalledCopy();
// Gives a program folder of the user's own the installed tips the first time: copies source
// to path when path is missing. True when it copied.
bool ProvideCopy(const QString& path, const QString& source);

// Every line of the file, in order. A missing file is created empty and gives no list.
std::optional<QStringList> Load(const QString& path);
// Appends one line, "..." followed by the tip. False when the file could not be written.
bool Append(const QString& path, const QString& tip);

// What the window shows for a line of the file.
QString ShownText(const QString& line);
bool NeedsScrollBar(const QString& shown);

// The number (1..count) of the tip to show after current; 0 when there is none. Random
// numbers come from draw(count), which gives 1..count; the tip shown now is never drawn
// again, except when it is the only one. Otherwise the next one, round to 1 after the last.
int NextTip(int current, int count, bool random, const std::function<int(int)>& draw);

// Shown in place of a tip when the file is missing.
QString MissingText();

} // namespace TipRules
