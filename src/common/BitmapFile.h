#pragma once

#include <QString>

class QImage;

// Bitmap files as every desktop and old program reads them: uncompressed 24-bit BMP.
namespace BitmapFile {

// Writes image to path, replacing a file there only once the new one is complete. Transparent
// parts are laid on white, as a bitmap has no transparency. False, with a reason, when the
// image is null or the file cannot be written.
bool Save(const QImage& image, const QString& path, QString* reason = nullptr);

} // namespace BitmapFile
