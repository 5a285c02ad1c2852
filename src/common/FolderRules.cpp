#include "common/FolderRules.h"

namespace FolderRules {

QString FolderUp(const QString& path)
{
    // Drop the last name, with its "/" when it is a folder; nothing may be left but the "/"
    // that ends the parent.
    const QString body = path.endsWith(u'/') ? path.chopped(1) : path;
    const qsizetype cut = body.lastIndexOf(u'/');
    return cut < 0 ? path : path.left(cut + 1);
}

} // namespace FolderRules
