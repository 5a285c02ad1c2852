#pragma once

#include <QString>

namespace FolderRules {

// The folder one level above path: "/pics/trip/" gives "/pics/", and a file or pattern gives
// the folder that holds it. A root ("/", "C:/"), a name without any "/" and the empty path are
// kept as they are.
QString FolderUp(const QString& path);

} // namespace FolderRules
