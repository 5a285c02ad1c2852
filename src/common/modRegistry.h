#pragma once

// Direct writes to the Windows registry, for values outside the program's own settings (the
// desktop's wallpaper style). Only the Windows build has them.
#ifdef Q_OS_WIN

#include <QString>

struct HKEY__;
using HKEY = HKEY__*;

namespace modRegistry {

// Writes value as a string value named valueName under keyPath below root (nullptr means
// HKEY_CURRENT_USER). The key must exist; nothing is created. Failures are silent: the data
// size is the text's length without its terminating NUL, as the desktop has always read it.
void RegWriteString(HKEY& root, const QString& keyPath, const QString& valueName,
                    const QString& value);

} // namespace modRegistry

#endif
