#pragma once

#include <QImage>
#include <QSize>

// Decodes JPEG data with libjpeg's reduced-size decoding (any eighth of the stored size), which
// the Qt reader of this platform does not use: a preview of a large photograph then costs a
// fraction of a full decode. A reduced picture whose data has restart markers is decoded in two
// parts at once. It also notices data that ends too early.
namespace JpegDecoder {

struct Result
{
    QImage image;             // in the file's stored orientation; null when not decoded
    bool truncated = false;   // the data ended before the picture did
    bool unsupported = false; // a colour model this decoder leaves to Qt (CMYK, YCCK)
};

// Decodes at the smallest scale that still covers atLeast (in stored orientation); an
// empty atLeast means the full size. Pictures of more than maxPixels are not decoded.
Result Decode(const uchar* data, qint64 size, const QSize& atLeast, qint64 maxPixels);

} // namespace JpegDecoder
