#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class FilesFound;

// Which files are pictures, and the scan that fills a FilesFound for a folder or one picture.
namespace PictureScan {

// "*.bmp", "*.gif", "*.jpg", "*.dib", "*.tif", "*.ico", "*.cur", "*.wmf", then "*.jpeg" and
// "*.tiff", then "*.png" and "*.webp" when extraTypes is set. The list is grouped in this order.
QStringList patterns(bool extraTypes);
// The same, with extraTypes read from "General"/"Extra_Types".
QStringList patterns();

// Fills a fresh list for path: every picture of a folder (one directory pass), or just the
// picture a path names. showStatus gets the folder's display name before the scan. Returns
// what SetPath returned: 1 for a file, 0 for a folder.
int scanPath(FilesFound& files, const QString& path,
             const std::function<void(const QString&)>& showStatus = {});

} // namespace PictureScan
