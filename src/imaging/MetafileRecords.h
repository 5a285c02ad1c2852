#pragma once

#include <QBrush>
#include <QByteArray>
#include <QImage>
#include <QList>
#include <QPainterPath>
#include <QPen>
#include <QRectF>
#include <QString>
#include <QtEndian>

#include <cstdint>

// GDI record numbers and constants a metafile stores.
namespace MetafileRecords {

enum Function : std::uint16_t
{
    EndOfFile = 0x0000,
    SaveDC = 0x001E,
    RealizePalette = 0x0035,
    CreatePalette = 0x00F7,
    SetBkMode = 0x0102,
    SetMapMode = 0x0103,
    SetROP2 = 0x0104,
    SetPolyFillMode = 0x0106,
    RestoreDC = 0x0127,
    SelectClipRegion = 0x012C,
    SelectObject = 0x012D,
    SetTextAlign = 0x012E,
    DibCreatePatternBrush = 0x0142,
    DeleteObject = 0x01F0,
    CreatePatternBrush = 0x01F9,
    SetBkColor = 0x0201,
    SetTextColor = 0x0209,
    SetWindowOrg = 0x020B,
    SetWindowExt = 0x020C,
    SetViewportOrg = 0x020D,
    SetViewportExt = 0x020E,
    OffsetWindowOrg = 0x020F,
    OffsetViewportOrg = 0x0211,
    LineTo = 0x0213,
    MoveTo = 0x0214,
    OffsetClipRgn = 0x0220,
    SelectPalette = 0x0234,
    CreatePenIndirect = 0x02FA,
    CreateFontIndirect = 0x02FB,
    CreateBrushIndirect = 0x02FC,
    Polygon = 0x0324,
    Polyline = 0x0325,
    ScaleWindowExt = 0x0410,
    ScaleViewportExt = 0x0412,
    ExcludeClipRect = 0x0415,
    IntersectClipRect = 0x0416,
    Ellipse = 0x0418,
    Rectangle = 0x041B,
    SetPixel = 0x041F,
    TextOut = 0x0521,
    PolyPolygon = 0x0538,
    RoundRect = 0x061C,
    PatBlt = 0x061D,
    CreateRegion = 0x06FF,
    Arc = 0x0817,
    Pie = 0x081A,
    Chord = 0x0830,
    DibBitBlt = 0x0940,
    ExtTextOut = 0x0A32,
    DibStretchBlt = 0x0B41,
    SetDIBitsToDevice = 0x0D33,
    StretchDIB = 0x0F43,
};

enum MapMode
{
    MM_TEXT = 1,
    MM_LOMETRIC,
    MM_HIMETRIC,
    MM_LOENGLISH,
    MM_HIENGLISH,
    MM_TWIPS,
    MM_ISOTROPIC,
    MM_ANISOTROPIC
};

enum Rop2
{
    R2_BLACK = 1,
    R2_NOTMERGEPEN,
    R2_MASKNOTPEN,
    R2_NOTCOPYPEN,
    R2_MASKPENNOT,
    R2_NOT,
    R2_XORPEN,
    R2_NOTMASKPEN,
    R2_MASKPEN,
    R2_NOTXORPEN,
    R2_NOP,
    R2_MERGENOTPEN,
    R2_COPYPEN,
    R2_MERGEPENNOT,
    R2_MERGEPEN,
    R2_WHITE
};

enum RasterOp : std::uint32_t
{
    BLACKNESS = 0x00000042,
    DSTINVERT = 0x00550009,
    PATINVERT = 0x005A0049,
    SRCINVERT = 0x00660046,
    SRCAND = 0x008800C6,
    SRCPAINT = 0x00EE0086,
    PATCOPY = 0x00F00021,
    WHITENESS = 0x00FF0062,
};

enum TextAlign
{
    TA_UPDATECP = 1,
    TA_RIGHT = 2,
    TA_CENTER = 6,
    TA_BOTTOM = 8,
    TA_BASELINE = 24
};
enum ExtTextOptions
{
    ETO_OPAQUE = 2,
    ETO_CLIPPED = 4
};

// How a DIB's colour table is to be read.
enum ColorUsage
{
    DIB_RGB_COLORS = 0,
    DIB_PAL_COLORS = 1 // 16-bit indices into the selected logical palette
};

// The brush styles of a DibCreatePatternBrush record; anything but BS_PATTERN is a DIB pattern.
enum BrushStyle
{
    BS_PATTERN = 3
};

constexpr std::uint32_t PlaceableKey = 0x9AC6CDD7;

// Pictures larger than this are refused or scaled down.
constexpr double MaxPixels = 64.0 * 1024 * 1024;

// One record's parameters; words past the record read as 0, so a short record cannot read
// beyond the data.
struct Record
{
    const uchar* params = nullptr;
    qsizetype words = 0;
    quint16 function = 0;

    quint16 u(qsizetype i) const
    {
        return i < words ? qFromLittleEndian<quint16>(params + 2 * i) : 0;
    }
    qint16 s(qsizetype i) const { return qint16(u(i)); }
    quint32 u32(qsizetype i) const { return u(i) | (quint32(u(i + 1)) << 16); }
    QPointF point(qsizetype i) const { return QPointF(s(i + 1), s(i)); } // stored y, x
    QColor color(qsizetype i) const
    {
        const quint32 ref = u32(i);
        return QColor(ref & 0xFF, (ref >> 8) & 0xFF, (ref >> 16) & 0xFF);
    }
    // Left, top, right, bottom stored backwards, starting at word i.
    QRectF rect(qsizetype i) const
    {
        return QRectF(QPointF(s(i + 3), s(i + 2)), QPointF(s(i + 1), s(i))).normalized();
    }
    QByteArray bytes(qsizetype fromWord) const
    {
        if (fromWord >= words)
            return {};
        return QByteArray(reinterpret_cast<const char*>(params + 2 * fromWord),
                          2 * (words - fromWord));
    }
};

struct LogFont
{
    int height = -12;
    int escapement = 0;
    int weight = 400;
    bool italic = false, underline = false, strikeOut = false;
    int family = 0;
    int charset = 0;
    QString face;
};

using Palette = QList<QRgb>;

// The palette a device context starts with: the twenty static colours.
const Palette& defaultPalette();

// The objects and text a record describes.
QPen makePen(const Record& r);
QBrush makeBrush(const Record& r);
LogFont makeFont(const Record& r);
Palette makePalette(const Record& r);
QImage decodeDib(const QByteArray& dib);
// The bits of an uncompressed 1-bit DIB as they are stored (Format_Mono, colours ignored); null
// for any other DIB.
QImage decodeMonoDib(const QByteArray& dib);
// A DIB whose colour table holds palette indices, rewritten with the palette's colours (indices
// past its end wrap around); empty when the DIB is not readable.
QByteArray resolvePaletteColours(const QByteArray& dib, const Palette& palette);
// The device-dependent bitmap of a CreatePatternBrush record. A monochrome one comes back as
// Format_Mono, its 0 bits at colour index 0: the caller colours them with the DC's text and
// background colours.
QImage decodeBitmap16(const Record& r);
QString decodeText(const QByteArray& bytes, int charset);

// The rectangles of a CreateRegion record as one path; false when the scans run past the record
// or contradict themselves.
bool makeRegion(const Record& r, QPainterPath* region);

// An extent scaled by the fractions of a ScaleWindowExt or ScaleViewportExt record; repeated
// scaling must not run off to zero or infinity.
QSizeF scaledExtent(const QSizeF& extent, const Record& r);

} // namespace MetafileRecords
