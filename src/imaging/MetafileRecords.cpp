#include "imaging/MetafileRecords.h"

#include <QStringDecoder>

#include <algorithm>
#include <cmath>

namespace MetafileRecords {

constexpr int MaxDibSide = 32768;

// The DIB of a blit or pattern brush as a picture: a BITMAPFILEHEADER in front lets QImage read it.
QImage decodeDib(const QByteArray& dib)
{
    if (dib.size() < 12)
        return {};
    const auto* p = reinterpret_cast<const uchar*>(dib.constData());
    const quint32 headerSize = qFromLittleEndian<quint32>(p);
    qint64 width = 0, height = 0;
    int bitCount = 0;
    quint32 compression = 0, colorsUsed = 0;
    int entryBytes = 4;
    if (headerSize == 12) {
        width = qFromLittleEndian<quint16>(p + 4);
        height = qFromLittleEndian<quint16>(p + 6);
        bitCount = qFromLittleEndian<quint16>(p + 10);
        entryBytes = 3;
    } else if (headerSize >= 40 && dib.size() >= 40) {
        width = qFromLittleEndian<qint32>(p + 4);
        height = qFromLittleEndian<qint32>(p + 8);
        bitCount = qFromLittleEndian<quint16>(p + 14);
        compression = qFromLittleEndian<quint32>(p + 16);
        colorsUsed = qFromLittleEndian<quint32>(p + 32);
    } else {
        return {};
    }
    width = std::abs(width);
    height = std::abs(height);
    if (width == 0 || height == 0 || width > MaxDibSide || height > MaxDibSide ||
        double(width) * double(height) > MaxPixels)
        return {};
    qint64 paletteBytes = 0;
    if (bitCount <= 8)
        paletteBytes =
            qint64(colorsUsed ? std::min<quint32>(colorsUsed, 256) : (1u << bitCount)) * entryBytes;
    else if (colorsUsed && colorsUsed <= 256)
        paletteBytes = qint64(colorsUsed) * entryBytes;
    if (headerSize == 40 && (compression == 3 || compression == 6))
        paletteBytes += compression == 3 ? 12 : 16;
    const qint64 offset = 14 + headerSize + paletteBytes;
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
