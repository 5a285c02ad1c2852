#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

class QIODevice;

// A picture as the loader hands it over: the pixels, or the reason there are none.
struct LoadedPicture
{
    QImage image;      // null when the file could not be read
    QSize naturalSize; // the picture's own size (upright), when known
    QByteArray format; // "bmp", "gif", "jpeg", "png", "tiff", "ico", "wmf", ...
    QString reason;    // why image is null, in words a user understands
    bool isNull() const { return image.isNull(); }
};

// The one way the program reads pictures. Every function is safe to call from any thread, and
// no file, however broken or hostile, makes it crash, hang or take unbounded memory.
namespace PictureLoader {

// Pictures above this many pixels are refused before any pixel is decoded.
constexpr qint64 MaxPixels = 200'000'000;
// Largest image buffer a decoder may allocate, in megabytes.
constexpr int AllocationLimitMB = 512;

// Box empty: natural size. Otherwise the picture is decoded at the size needed to fit inside
// box keeping proportions; with enlarge=false it is never made larger than its natural size.
// Pictures come upright (EXIF orientation applied); icons give the entry closest to the box.
LoadedPicture Load(const QString& path, const QSize& box = {}, bool enlarge = false);
LoadedPicture LoadData(const QByteArray& data, const QString& nameHint, const QSize& box = {},
                       bool enlarge = false);

// Upright natural size from the header alone, without decoding pixels; invalid QSize + reason
// on failure.
QSize NaturalSize(const QString& path, QString* reason = nullptr);

// From the content first, the extension second; empty when neither knows it. The device must be
// open; nothing is consumed from it. The names are QImageReader's, plus "wmf"; a bitmap without
// its file header (a clipboard .dib) is "dib", which the loader reports as "bmp".
QByteArray DetectFormat(QIODevice* device, const QString& nameHint);

// A format we read, judged by the file name's extension (cheap enough for whole folders).
bool IsPictureFile(const QString& path);

// image scaled smoothly to size. Qt dithers a 1-bit picture to black and white when it scales
// it, whatever its two colours are, so such a picture is widened to 32 bits first.
QImage SmoothScaled(const QImage& image, const QSize& size);

// The size a picture of naturalSize is shown at inside box (see Load).
QSize FitSize(const QSize& naturalSize, const QSize& box, bool enlarge);

} // namespace PictureLoader
