#include "imaging/MetafileRecords.h"

#include <QStringDecoder>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace MetafileRecords {

constexpr int MaxDibSide = 32768;

namespace {

// Where the parts of a DIB lie: header, colour masks, colour table, then the pixels.
struct DibLayout
{
    quint32 headerSize = 0;
    qint64 width = 0, height = 0;
    int bitCount = 0;
    quint32 compression = 0;
    bool topDown = false;
    qint64 maskBytes = 0;
    qint64 tableEntries = 0;
    int entryBytes = 4; // 3 in the old core header
};

bool readDibLayout(const QByteArray& dib, DibLayout* layout)
{
    if (dib.size() < 12)
        return false;
    const auto* p = reinterpret_cast<const uchar*>(dib.constData());
    DibLayout l;
    l.headerSize = qFromLittleEndian<quint32>(p);
    quint32 colorsUsed = 0;
    if (l.headerSize == 12) {
        l.width = qFromLittleEndian<quint16>(p + 4);
        l.height = qFromLittleEndian<quint16>(p + 6);
        l.bitCount = qFromLittleEndian<quint16>(p + 10);
        l.entryBytes = 3;
    } else if (l.headerSize >= 40 && dib.size() >= 40) {
        l.width = qFromLittleEndian<qint32>(p + 4);
        l.height = qFromLittleEndian<qint32>(p + 8);
        l.bitCount = qFromLittleEndian<quint16>(p + 14);
        l.compression = qFromLittleEndian<quint32>(p + 16);
        colorsUsed = qFromLittleEndian<quint32>(p + 32);
    } else {
        return false;
    }
    l.topDown = l.height < 0;
    l.width = std::abs(l.width);
    l.height = std::abs(l.height);
    if (l.width == 0 || l.height == 0 || l.width > MaxDibSide || l.height > MaxDibSide ||
        double(l.width) * double(l.height) > MaxPixels)
        return false;
    if (l.bitCount <= 8)
        l.tableEntries = colorsUsed ? std::min<quint32>(colorsUsed, 256) : (1u << l.bitCount);
    else if (colorsUsed && colorsUsed <= 256)
        l.tableEntries = colorsUsed;
    if (l.headerSize == 40 && (l.compression == 3 || l.compression == 6))
        l.maskBytes = l.compression == 3 ? 12 : 16;
    *layout = l;
    return true;
}

} // namespace

// The DIB of a blit or pattern brush as a picture: a BITMAPFILEHEADER in front lets QImage read it.
QImage decodeDib(const QByteArray& dib)
{
    DibLayout l;
    if (!readDibLayout(dib, &l))
        return {};
    const qint64 offset = 14 + l.headerSize + l.maskBytes + l.tableEntries * l.entryBytes;
    if (offset > 14 + dib.size())
        return {};

    QByteArray file("BM", 2);
    file.resize(14);
    auto* f = reinterpret_cast<uchar*>(file.data());
    qToLittleEndian<quint32>(quint32(14 + dib.size()), f + 2);
    qToLittleEndian<quint32>(0, f + 6);
    qToLittleEndian<quint32>(quint32(offset), f + 10);
    file += dib;
    QImage image;
    image.loadFromData(file, "BMP");
    return image;
}

QImage decodeMonoDib(const QByteArray& dib)
{
    DibLayout l;
    if (!readDibLayout(dib, &l) || l.bitCount != 1 || l.compression != 0)
        return {};
    const qint64 offset = l.headerSize + l.tableEntries * l.entryBytes;
    const qint64 stride = (l.width + 31) / 32 * 4;
    if (offset + stride * l.height > dib.size())
        return {};
    QImage image(int(l.width), int(l.height), QImage::Format_Mono);
    if (image.isNull())
        return {};
    for (int y = 0; y < image.height(); ++y) {
        const int row = l.topDown ? y : image.height() - 1 - y;
        std::memcpy(image.scanLine(y), dib.constData() + offset + stride * row,
                    size_t(std::min<qint64>(stride, image.bytesPerLine())));
    }
    image.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    return image;
}

QByteArray resolvePaletteColours(const QByteArray& dib, const Palette& palette)
{
    DibLayout l;
    if (!readDibLayout(dib, &l) || palette.isEmpty())
        return {};
    const qint64 tableStart = l.headerSize + l.maskBytes;
    const qint64 pixelsStart = tableStart + 2 * l.tableEntries;
    if (pixelsStart > dib.size())
        return {};
    QByteArray resolved = dib.left(tableStart);
    resolved.reserve(dib.size() + 2 * l.tableEntries);
    const auto* indices = reinterpret_cast<const uchar*>(dib.constData() + tableStart);
    for (qint64 i = 0; i < l.tableEntries; ++i) {
        const QRgb rgb = palette[qFromLittleEndian<quint16>(indices + 2 * i) % palette.size()];
        resolved += char(qBlue(rgb));
        resolved += char(qGreen(rgb));
        resolved += char(qRed(rgb));
        if (l.entryBytes == 4)
            resolved += '\0';
    }
    resolved += dib.mid(pixelsStart);
    return resolved;
}

const Palette& defaultPalette()
{
    static const Palette colours = {
        qRgb(0, 0, 0),       qRgb(128, 0, 0),     qRgb(0, 128, 0),     qRgb(128, 128, 0),
        qRgb(0, 0, 128),     qRgb(128, 0, 128),   qRgb(0, 128, 128),   qRgb(192, 192, 192),
        qRgb(192, 220, 192), qRgb(166, 202, 240), qRgb(255, 251, 240), qRgb(160, 160, 164),
        qRgb(128, 128, 128), qRgb(255, 0, 0),     qRgb(0, 255, 0),     qRgb(255, 255, 0),
        qRgb(0, 0, 255),     qRgb(255, 0, 255),   qRgb(0, 255, 255),   qRgb(255, 255, 255)};
    return colours;
}

Palette makePalette(const Record& r)
{
    // Start (0x0300), count, then red, green, blue and flags a byte each.
    const qsizetype count = std::min<qsizetype>(r.u(1), (r.words - 2) / 2);
    Palette palette;
    palette.reserve(std::max<qsizetype>(count, 0));
    for (qsizetype i = 0; i < count; ++i) {
        const quint32 entry = r.u32(2 + 2 * i);
        palette << qRgb(entry & 0xFF, (entry >> 8) & 0xFF, (entry >> 16) & 0xFF);
    }
    return palette;
}

QImage decodeBitmap16(const Record& r)
{
    // Type, width, height, bytes a row, planes and bits a pixel, a pointer, 18 bytes unused, bits.
    constexpr qsizetype BitsWord = 16;
    const int width = r.s(1), height = r.s(2);
    const int planes = r.u(4) & 0xFF, bitsPixel = r.u(4) >> 8;
    if (width <= 0 || height <= 0 || width > MaxDibSide || height > MaxDibSide || planes != 1)
        return {};
    const QImage::Format format = bitsPixel == 1    ? QImage::Format_Mono
                                  : bitsPixel == 24 ? QImage::Format_BGR888
                                  : bitsPixel == 32 ? QImage::Format_RGB32
                                                    : QImage::Format_Invalid;
    if (format == QImage::Format_Invalid)
        return {};
    // Rows are top-down and padded to whole words.
    const qint64 stride = ((qint64(width) * bitsPixel + 15) >> 4) << 1;
    if (BitsWord + (stride * height + 1) / 2 > r.words)
        return {};
    QImage image(width, height, format);
    if (image.isNull())
        return {};
    const qint64 rowBytes = std::min<qint64>(stride, image.bytesPerLine());
    for (int y = 0; y < height; ++y)
        std::memcpy(image.scanLine(y), r.params + 2 * BitsWord + stride * y, size_t(rowBytes));
    if (format == QImage::Format_Mono)
        image.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    return image;
}

bool makeRegion(const Record& r, QPainterPath* region)
{
    // nextInChain, type, object count (2 words), size in bytes, scan count, longest scan,
    // bounding box; then each scan: count of x values, top, bottom, left/right pairs, count.
    constexpr qsizetype FirstScan = 11;
    QPainterPath path;
    qsizetype at = FirstScan;
    for (int scan = 0; scan < r.u(5); ++scan) {
        const qsizetype count = r.u(at);
        if (count % 2 || at + count + 4 > r.words || r.u(at + count + 3) != count)
            return false;
        const int top = r.s(at + 1), bottom = r.s(at + 2);
        for (qsizetype i = 0; i < count; i += 2) {
            const int left = r.s(at + 3 + i), right = r.s(at + 4 + i);
            path.addRect(QRectF(QPointF(left, top), QPointF(right, bottom)).normalized());
        }
        at += count + 4;
    }
    path.setFillRule(Qt::WindingFill);
    *region = path;
    return true;
}

namespace {

const char* encodingOf(int charset)
{
    switch (charset) {
    case 128:
        return "Shift_JIS";
    case 129:
        return "EUC-KR";
    case 134:
        return "GBK";
    case 136:
        return "Big5";
    case 161:
        return "windows-1253";
    case 162:
        return "windows-1254";
    case 163:
        return "windows-1258";
    case 177:
        return "windows-1255";
    case 178:
        return "windows-1256";
    case 186:
        return "windows-1257";
    case 204:
        return "windows-1251";
    case 222:
        return "windows-874";
    case 238:
        return "windows-1250";
    default:
        return nullptr;
    }
}

} // namespace

QString decodeText(const QByteArray& bytes, int charset)
{
    if (const char* encoding = encodingOf(charset)) {
        QStringDecoder decoder(encoding);
        if (decoder.isValid())
            return decoder.decode(bytes);
    }
    // Windows-1252 differs from Latin-1 in 0x80-0x9F, where most Western metafiles keep
    // their quotes and dashes.
    static const char16_t high[32] = {
        0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
    QString text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto b = uchar(c);
        text += (b >= 0x80 && b < 0xA0) ? QChar(high[b - 0x80]) : QChar(b);
    }
    return text;
}

QPen makePen(const Record& r)
{
    const int style = r.u(0);
    const double width = std::abs(r.s(1));
    QPen pen(QBrush(r.color(3)), width);
    switch (style & 0x0F) {
    case 1:
        pen.setStyle(Qt::DashLine);
        break;
    case 2:
        pen.setStyle(Qt::DotLine);
        break;
    case 3:
        pen.setStyle(Qt::DashDotLine);
        break;
    case 4:
        pen.setStyle(Qt::DashDotDotLine);
        break;
    case 5:
        pen.setStyle(Qt::NoPen);
        break;
    default:
        break;
    }
    switch (style & 0x0F00) {
    case 0x100:
        pen.setCapStyle(Qt::SquareCap);
        break;
    case 0x200:
        pen.setCapStyle(Qt::FlatCap);
        break;
    default:
        pen.setCapStyle(Qt::RoundCap);
        break;
    }
    switch (style & 0xF000) {
    case 0x1000:
        pen.setJoinStyle(Qt::BevelJoin);
        break;
    case 0x2000:
        pen.setJoinStyle(Qt::MiterJoin);
        break;
    default:
        pen.setJoinStyle(Qt::RoundJoin);
        break;
    }
    if (width <= 1)
        pen.setCosmetic(true);
    return pen;
}

QBrush makeBrush(const Record& r)
{
    const QColor color = r.color(1);
    switch (r.u(0)) {
    case 1:
        return QBrush(Qt::NoBrush);
    case 2: {
        static const Qt::BrushStyle hatches[] = {Qt::HorPattern,   Qt::VerPattern,
                                                 Qt::FDiagPattern, Qt::BDiagPattern,
                                                 Qt::CrossPattern, Qt::DiagCrossPattern};
        const int hatch = r.u(3);
        return QBrush(color, hatch < 6 ? hatches[hatch] : Qt::SolidPattern);
    }
    default:
        return QBrush(color);
    }
}

LogFont makeFont(const Record& r)
{
    LogFont f;
    f.height = r.s(0);
    f.escapement = r.s(2);
    f.weight = r.s(4);
    const QByteArray tail = r.bytes(5);
    auto byteAt = [&](int i) { return i < tail.size() ? uchar(tail[i]) : 0; };
    f.italic = byteAt(0);
    f.underline = byteAt(1);
    f.strikeOut = byteAt(2);
    f.charset = byteAt(3);
    f.family = byteAt(7) & 0xF0;
    QByteArray face = tail.mid(8, 32);
    if (const auto nul = face.indexOf('\0'); nul >= 0)
        face.truncate(nul);
    f.face = QString::fromLatin1(face);
    return f;
}

QSizeF scaledExtent(const QSizeF& extent, const Record& r)
{
    if (!r.s(0) || !r.s(2))
        return extent;
    const QSizeF scaled(extent.width() * r.s(3) / r.s(2), extent.height() * r.s(1) / r.s(0));
    auto sane = [](double v) { return std::abs(v) >= 1e-3 && std::abs(v) <= 1e7; };
    return sane(scaled.width()) && sane(scaled.height()) ? scaled : extent;
}

} // namespace MetafileRecords
