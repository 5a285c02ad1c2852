#include "imaging/MetafilePlayer.h"

#include "imaging/MetafileRecords.h"

#include <QDeadlineTimer>
#include <QFontMetricsF>
#include <QLineF>
#include <QPainter>
#include <QPainterPath>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>
#include <vector>

using namespace MetafileRecords;

namespace {

constexpr qsizetype PlaceableHeaderBytes = 22;
constexpr qsizetype PlainHeaderBytes = 18;
constexpr int MaxSavedStates = 256;
constexpr qint64 PlaybackBudgetMs = 4000;

struct GdiObject
{
    enum Kind
    {
        Free,
        Pen,
        Brush,
        Font,
        Palette,
        Region,
        Other
    } kind = Free;
    QPen pen;
    QBrush brush;
    QImage monoPattern; // a brush drawn in the text and background colours of the moment
    LogFont font;
    MetafileRecords::Palette palette;
    QPainterPath region;
};

struct DcState
{
    int mapMode = MM_TEXT;
    QPointF windowOrg, viewportOrg;
    QSizeF windowExt{1, 1}, viewportExt{1, 1};
    bool windowExtSet = false, viewportExtSet = false;
    QPen pen{QBrush(Qt::black), 0};
    QBrush brush{Qt::white};
    QImage monoPattern;
    MetafileRecords::Palette palette; // empty until the file selects one
    LogFont font;
    QColor bkColor = Qt::white, textColor = Qt::black;
    bool opaqueBackground = true;
    int textAlign = 0;
    int rop2 = R2_COPYPEN;
    Qt::FillRule fillRule = Qt::OddEvenFill;
    QPointF position;
};

class Player
{
public:
    explicit Player(const QByteArray& data) : m_data(data) {}

    bool readHeader(QString* reason);
    // Plays the records: with a painter it paints, without one it only measures.
    int play(QPainter* painter, const QTransform& deviceToImage);
    // Where the picture lies in device space, once the header is read (and, for plain files,
    // after a measuring play).
    QRectF frame() const;
    bool placeable() const { return m_placeable; }

private:
    QTransform logicalToDevice() const;
    // False when the record is malformed in a way that makes the rest untrustworthy.
    bool handle(const Record& r);
    void reset();

    void addObject(GdiObject object);
    void selectObject(int index);
    void deleteObject(int index);
    void selectPalette(int index);
    const MetafileRecords::Palette& palette() const;
    QImage decodeBitmap(const QByteArray& dib, int usage) const;
    GdiObject makePatternBrush(const Record& r) const;
    QBrush paintBrush() const;

    void drawPath(const QPainterPath& path, bool fill);
    void drawImage(const QRectF& target, const QImage& image, const QRectF& source, quint32 rop);
    void patBlt(const QRectF& target, quint32 rop);
    void drawText(QPointF at, const QString& text, const std::vector<int>& dx, int options,
                  const QRectF& box);
    void beginDraw();
    void setClip(const QRectF& rect, bool exclude);
    void selectClipRegion(const QPainterPath& region);
    void offsetClip(QPointF by);

    QByteArray m_data;
    // Measuring and painting share one time budget.
    QDeadlineTimer m_deadline{PlaybackBudgetMs};
    bool m_placeable = false;
    QRectF m_bbox;
    double m_unitsPerInch = 1440;
    qsizetype m_recordStart = 0;
    int m_objectCount = 0;

    QPainter* m_painter = nullptr;
    QTransform m_deviceToImage;
    DcState m_dc;
    std::vector<DcState> m_saved;
    std::vector<GdiObject> m_objects;
    std::set<int> m_freeSlots;

    // Measuring results.
    bool m_drawn = false;
    bool m_windowFrameKnown = false;
    QRectF m_windowFrame, m_drawnBounds;
};

bool Player::readHeader(QString* reason)
{
    const auto* p = reinterpret_cast<const uchar*>(m_data.constData());
    qsizetype at = 0;
    if (m_data.size() >= PlaceableHeaderBytes && qFromLittleEndian<quint32>(p) == PlaceableKey) {
        m_placeable = true;
        const QPointF topLeft(qFromLittleEndian<qint16>(p + 6), qFromLittleEndian<qint16>(p + 8));
        const QPointF bottomRight(qFromLittleEndian<qint16>(p + 10),
                                  qFromLittleEndian<qint16>(p + 12));
        m_bbox = QRectF(topLeft, bottomRight);
        const int inch = qFromLittleEndian<quint16>(p + 14);
        m_unitsPerInch = inch ? inch : 1440;
        if (m_bbox.width() == 0 || m_bbox.height() == 0) {
            if (reason)
                *reason = QStringLiteral("The metafile's bounding box is empty");
            return false;
        }
        at = PlaceableHeaderBytes;
    }
    if (m_data.size() < at + PlainHeaderBytes) {
        if (reason)
            *reason = QStringLiteral("The metafile header is incomplete");
        return false;
    }
    const int headerWords = qFromLittleEndian<quint16>(p + at + 2);
    if (!m_placeable && headerWords != 9) {
        if (reason)
            *reason = QStringLiteral("Not a metafile");
        return false;
    }
    m_objectCount = qFromLittleEndian<quint16>(p + at + 10);
    m_recordStart = at + PlainHeaderBytes;
    return true;
}

void Player::reset()
{
    m_dc = DcState();
    if (m_placeable) {
        // The placeable header fixes where the picture goes: its bounding box fills the frame.
        m_dc.mapMode = MM_ANISOTROPIC;
        m_dc.windowOrg = m_bbox.topLeft();
        m_dc.windowExt = m_bbox.size();
        m_dc.windowExtSet = true;
        m_dc.viewportExt = frame().size();
        m_dc.viewportExtSet = true;
    }
    m_saved.clear();
    m_objects.clear();
    m_objects.reserve(std::min(m_objectCount, 4096));
    m_freeSlots.clear();
}

QRectF Player::frame() const
{
    if (m_placeable) {
        return QRectF(0, 0, std::abs(m_bbox.width()) * 96.0 / m_unitsPerInch,
                      std::abs(m_bbox.height()) * 96.0 / m_unitsPerInch);
    }
    return m_windowFrameKnown ? m_windowFrame : m_drawnBounds;
}

QTransform Player::logicalToDevice() const
{
    const DcState& dc = m_dc;
    double sx = 1, sy = 1;
    switch (dc.mapMode) {
    case MM_LOMETRIC:
        sx = 96.0 / 254.0;
        break;
    case MM_HIMETRIC:
        sx = 96.0 / 2540.0;
        break;
    case MM_LOENGLISH:
        sx = 96.0 / 100.0;
        break;
    case MM_HIENGLISH:
        sx = 96.0 / 1000.0;
        break;
    case MM_TWIPS:
        sx = 96.0 / 1440.0;
        break;
    default:
        break;
    }
    if (dc.mapMode >= MM_LOMETRIC && dc.mapMode <= MM_TWIPS && !m_placeable) {
        sy = -sx;
    } else if (dc.mapMode == MM_ISOTROPIC || dc.mapMode == MM_ANISOTROPIC || m_placeable) {
        // Until a plain file sets its viewport, one window unit is one device unit.
        const QSizeF vp = dc.viewportExtSet ? dc.viewportExt
                                            : QSizeF(std::abs(dc.windowExt.width()),
                                                     std::abs(dc.windowExt.height()));
        const double wx = dc.windowExt.width() ? dc.windowExt.width() : 1;
        const double wy = dc.windowExt.height() ? dc.windowExt.height() : 1;
        sx = vp.width() / wx;
        sy = vp.height() / wy;
        if (dc.mapMode == MM_ISOTROPIC) {
            const double s = std::min(std::abs(sx), std::abs(sy));
            sx = std::copysign(s, sx);
            sy = std::copysign(s, sy);
        }
    } else {
        sx = sy = 1;
    }
    return QTransform(sx, 0, 0, sy, dc.viewportOrg.x() - dc.windowOrg.x() * sx,
                      dc.viewportOrg.y() - dc.windowOrg.y() * sy);
}

int Player::play(QPainter* painter, const QTransform& deviceToImage)
{
    m_painter = painter;
    m_deviceToImage = deviceToImage;
    reset();
    if (m_painter) {
        m_painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                                  QPainter::SmoothPixmapTransform);
        m_painter->setBackground(Qt::white);
    }
    int played = 0;
    const auto* base = reinterpret_cast<const uchar*>(m_data.constData());
    qsizetype at = m_recordStart;
    while (m_data.size() - at >= 6) {
        const quint32 sizeWords = qFromLittleEndian<quint32>(base + at);
        const quint16 function = qFromLittleEndian<quint16>(base + at + 4);
        if (function == EndOfFile)
            break;
        if (sizeWords < 3 || sizeWords > quint32((m_data.size() - at) / 2))
            break;
        const Record r{base + at + 6, qsizetype(sizeWords) - 3, function};
        if (!handle(r))
            break;
        ++played;
        at += qsizetype(sizeWords) * 2;
        if ((played & 15) == 0 && m_deadline.hasExpired())
            break;
    }
    while (m_painter && !m_saved.empty()) {
        m_saved.pop_back();
        m_painter->restore();
    }
    if (m_drawn && !m_windowFrameKnown && m_dc.windowExtSet && !m_placeable) {
        const QTransform t = logicalToDevice();
        m_windowFrame = t.mapRect(QRectF(m_dc.windowOrg, m_dc.windowExt).normalized());
        m_windowFrameKnown = true;
    }
    return played;
}

void Player::addObject(GdiObject object)
{
    int slot;
    if (!m_freeSlots.empty()) {
        slot = *m_freeSlots.begin();
        m_freeSlots.erase(m_freeSlots.begin());
    } else if (m_objects.size() < 65535) {
        slot = int(m_objects.size());
        m_objects.emplace_back();
    } else {
        return;
    }
    m_objects[slot] = std::move(object);
}

void Player::selectObject(int index)
{
    if (index < 0 || index >= int(m_objects.size()))
        return;
    const GdiObject& o = m_objects[index];
    switch (o.kind) {
    case GdiObject::Pen:
        m_dc.pen = o.pen;
        break;
    case GdiObject::Brush:
        m_dc.brush = o.brush;
        m_dc.monoPattern = o.monoPattern;
        break;
    case GdiObject::Font:
        m_dc.font = o.font;
        break;
    case GdiObject::Region: // selecting a region makes it the clip region
        selectClipRegion(o.region);
        break;
    default:
        break;
    }
}

void Player::deleteObject(int index)
{
    if (index < 0 || index >= int(m_objects.size()) || m_objects[index].kind == GdiObject::Free)
        return;
    m_objects[index] = GdiObject();
    m_freeSlots.insert(index);
}

void Player::selectPalette(int index)
{
    if (index >= 0 && index < int(m_objects.size()) && m_objects[index].kind == GdiObject::Palette)
        m_dc.palette = m_objects[index].palette;
}

// The palette that DIB_PAL_COLORS indices refer to.
const MetafileRecords::Palette& Player::palette() const
{
    return m_dc.palette.isEmpty() ? defaultPalette() : m_dc.palette;
}

QImage Player::decodeBitmap(const QByteArray& dib, int usage) const
{
    if (!m_painter) // measuring needs no pixels
        return {};
    return decodeDib(usage == DIB_PAL_COLORS ? resolvePaletteColours(dib, palette()) : dib);
}

// DibCreatePatternBrush: style, colour usage, DIB.
GdiObject Player::makePatternBrush(const Record& r) const
{
    GdiObject o;
    o.kind = GdiObject::Brush;
    if (!m_painter)
        return o;
    const QByteArray dib = r.bytes(2);
    // A BS_PATTERN brush comes from a device bitmap: a monochrome one takes the DC's colours, as
    // CreatePatternBrush brushes do, and a colour one holds RGB whatever the usage says.
    if (r.u(0) == BS_PATTERN) {
        o.monoPattern = decodeMonoDib(dib);
        if (!o.monoPattern.isNull())
            return o;
    }
    const QImage pattern = decodeBitmap(dib, r.u(0) == BS_PATTERN ? int(DIB_RGB_COLORS) : r.u(1));
    o.brush = pattern.isNull() ? QBrush(Qt::gray) : QBrush(pattern);
    return o;
}

// The brush to paint with: monochrome patterns coloured now, and patterns laid in device pixels
// from the device origin, as GDI lays them, whatever the mapping.
QBrush Player::paintBrush() const
{
    QBrush brush = m_dc.brush;
    if (!m_dc.monoPattern.isNull()) {
        QImage pattern = m_dc.monoPattern;
        pattern.setColorTable({m_dc.textColor.rgb(), m_dc.bkColor.rgb()});
        brush = QBrush(pattern.convertToFormat(QImage::Format_RGB32));
    }
    if (brush.style() == Qt::TexturePattern) {
        bool invertible = false;
        const QTransform deviceToLogical = logicalToDevice().inverted(&invertible);
        if (invertible)
            brush.setTransform(deviceToLogical);
    }
    return brush;
}

QPainter::CompositionMode ropMode(int rop2)
{
    switch (rop2) {
    case R2_XORPEN:
        return QPainter::RasterOp_SourceXorDestination;
    case R2_NOTXORPEN:
        return QPainter::RasterOp_NotSourceXorDestination;
    case R2_MASKPEN:
        return QPainter::RasterOp_SourceAndDestination;
    case R2_MERGEPEN:
        return QPainter::RasterOp_SourceOrDestination;
    case R2_NOTCOPYPEN:
        return QPainter::RasterOp_NotSource;
    case R2_NOT:
        return QPainter::RasterOp_NotDestination;
    default:
        return QPainter::CompositionMode_SourceOver;
    }
}

// Sutherland-Hodgman against each side of an upright rectangle.
QPolygonF clipPolygon(const QPolygonF& polygon, const QRectF& r)
{
    QPolygonF out = polygon;
    auto clipSide = [&out](auto inside, auto cross) {
        const QPolygonF in = std::exchange(out, QPolygonF());
        for (qsizetype i = 0; i < in.size(); ++i) {
            const QPointF a = in[(i + in.size() - 1) % in.size()], b = in[i];
            if (inside(b)) {
                if (!inside(a))
                    out << cross(a, b);
                out << b;
            } else if (inside(a)) {
                out << cross(a, b);
            }
        }
    };
    auto atX = [](QPointF a, QPointF b, double x) {
        return QPointF(x, a.y() + (b.y() - a.y()) * (x - a.x()) / (b.x() - a.x()));
    };
    auto atY = [](QPointF a, QPointF b, double y) {
        return QPointF(a.x() + (b.x() - a.x()) * (y - a.y()) / (b.y() - a.y()), y);
    };
    clipSide([&](QPointF p) { return p.x() >= r.left(); },
             [&](QPointF a, QPointF b) { return atX(a, b, r.left()); });
    clipSide([&](QPointF p) { return p.x() <= r.right(); },
             [&](QPointF a, QPointF b) { return atX(a, b, r.right()); });
    clipSide([&](QPointF p) { return p.y() >= r.top(); },
             [&](QPointF a, QPointF b) { return atY(a, b, r.top()); });
    clipSide([&](QPointF p) { return p.y() <= r.bottom(); },
             [&](QPointF a, QPointF b) { return atY(a, b, r.bottom()); });
    return out;
}

// Liang-Barsky: false when the line misses the rectangle.
bool clipLine(QLineF& line, const QRectF& r)
{
    const double dx = line.dx(), dy = line.dy();
    double t0 = 0, t1 = 1;
    const double p[] = {-dx, dx, -dy, dy};
    const double q[] = {line.x1() - r.left(), r.right() - line.x1(), line.y1() - r.top(),
                        r.bottom() - line.y1()};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0) {
            if (q[i] < 0)
                return false;
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0)
            t0 = std::max(t0, t);
        else
            t1 = std::min(t1, t);
        if (t0 > t1)
            return false;
    }
    const QPointF start = line.pointAt(t0), end = line.pointAt(t1);
    line = QLineF(start, end);
    return true;
}

// Prepares the painter for a drawing record: current mapping, pen, brush and mix mode.
void Player::beginDraw()
{
    m_drawn = true;
    if (!m_painter) {
        if (!m_windowFrameKnown && m_dc.windowExtSet) {
            m_windowFrame =
                logicalToDevice().mapRect(QRectF(m_dc.windowOrg, m_dc.windowExt).normalized());
            m_windowFrameKnown = true;
        }
        return;
    }
    m_painter->setWorldTransform(logicalToDevice() * m_deviceToImage);
    QPen pen = m_dc.pen;
    QBrush brush = paintBrush();
    if (m_dc.rop2 == R2_BLACK || m_dc.rop2 == R2_WHITE) {
        const QColor c = m_dc.rop2 == R2_BLACK ? Qt::black : Qt::white;
        pen.setColor(c);
        if (brush.style() != Qt::NoBrush)
            brush.setColor(c);
    }
    m_painter->setPen(pen);
    m_painter->setBrush(brush);
    m_painter->setBackgroundMode(m_dc.opaqueBackground ? Qt::OpaqueMode : Qt::TransparentMode);
    m_painter->setBackground(m_dc.bkColor);
    m_painter->setCompositionMode(ropMode(m_dc.rop2));
}

void Player::drawPath(const QPainterPath& path, bool fill)
{
    beginDraw();
    if (!m_painter) {
        m_drawnBounds |= logicalToDevice().mapRect(path.boundingRect());
        return;
    }
    if (m_dc.rop2 == R2_NOP)
        return;
    if (!fill)
        m_painter->setBrush(Qt::NoBrush);
    const QTransform toImage = m_painter->worldTransform();
    const QSize size(m_painter->device()->width(), m_painter->device()->height());
    const double margin = std::max(size.width(), size.height()) + 16.0;
    const QRectF limit = QRectF(QPointF(0, 0), size).adjusted(-margin, -margin, margin, margin);
    if (limit.contains(toImage.mapRect(path.controlPointRect()))) {
        m_painter->drawPath(path);
        return;
    }
    // Far outside the picture Qt's rasteriser slows to a crawl: clip in picture space first.
    const QList<QPolygonF> polygons = path.toSubpathPolygons(toImage);
    QPen pen = m_painter->pen();
    if (!pen.isCosmetic())
        pen.setWidthF(std::min(pen.widthF() * std::sqrt(std::abs(toImage.determinant())), margin));
    m_painter->save();
    m_painter->resetTransform();
    QBrush brush = m_painter->brush();
    if (brush.style() == Qt::TexturePattern) {
        brush.setTransform(brush.transform() * toImage);
        m_painter->setBrush(brush);
    }
    if (fill && brush.style() != Qt::NoBrush) {
        QPainterPath clipped;
        clipped.setFillRule(path.fillRule());
        for (const QPolygonF& polygon : polygons)
            clipped.addPolygon(clipPolygon(polygon, limit));
        m_painter->setPen(Qt::NoPen);
        m_painter->drawPath(clipped);
    }
    if (pen.style() != Qt::NoPen) {
        QList<QLineF> lines;
        for (const QPolygonF& polygon : polygons) {
            for (qsizetype i = 1; i < polygon.size(); ++i) {
                QLineF line(polygon[i - 1], polygon[i]);
                if (clipLine(line, limit))
                    lines << line;
            }
        }
        m_painter->setPen(pen);
        m_painter->drawLines(lines);
    }
    m_painter->restore();
}

void Player::drawImage(const QRectF& target, const QImage& image, const QRectF& source, quint32 rop)
{
    beginDraw();
    if (!m_painter) {
        m_drawnBounds |= logicalToDevice().mapRect(target.normalized());
        return;
    }
    if (image.isNull())
        return;
    QImage picture = image.mirrored(target.width() < 0, target.height() < 0);
    QRectF from = source;
    if (target.width() < 0)
        from.moveLeft(image.width() - source.right());
    if (target.height() < 0)
        from.moveTop(image.height() - source.bottom());
    switch (rop) {
    case SRCAND:
        m_painter->setCompositionMode(QPainter::RasterOp_SourceAndDestination);
        break;
    case SRCPAINT:
        m_painter->setCompositionMode(QPainter::RasterOp_SourceOrDestination);
        break;
    case SRCINVERT:
        m_painter->setCompositionMode(QPainter::RasterOp_SourceXorDestination);
        break;
    default:
        m_painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
        break;
    }
    m_painter->drawImage(target.normalized(), picture, from);
}

void Player::patBlt(const QRectF& target, quint32 rop)
{
    beginDraw();
    if (!m_painter) {
        m_drawnBounds |= logicalToDevice().mapRect(target.normalized());
        return;
    }
    QBrush brush = paintBrush();
    switch (rop) {
    case BLACKNESS:
        brush = QBrush(Qt::black);
        break;
    case WHITENESS:
        brush = QBrush(Qt::white);
        break;
    case DSTINVERT:
        brush = QBrush(Qt::white);
        m_painter->setCompositionMode(QPainter::RasterOp_NotDestination);
        break;
    case PATINVERT:
        m_painter->setCompositionMode(QPainter::RasterOp_SourceXorDestination);
        break;
    default:
        m_painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
        break;
    }
    m_painter->fillRect(target.normalized(), brush);
}

void Player::setClip(const QRectF& rect, bool exclude)
{
    if (!m_painter)
        return;
    m_painter->setWorldTransform(logicalToDevice() * m_deviceToImage);
    if (!exclude) {
        m_painter->setClipRect(rect, Qt::IntersectClip);
        return;
    }
    QPainterPath keep;
    if (m_painter->hasClipping()) {
        keep = m_painter->clipPath();
    } else {
        const QTransform back = m_painter->worldTransform().inverted();
        keep.addRect(back.mapRect(
            QRectF(0, 0, m_painter->device()->width(), m_painter->device()->height())));
    }
    QPainterPath cut;
    cut.addRect(rect);
    m_painter->setClipPath(keep.subtracted(cut));
}

void Player::selectClipRegion(const QPainterPath& region)
{
    if (!m_painter)
        return;
    m_painter->setWorldTransform(logicalToDevice() * m_deviceToImage);
    m_painter->setClipPath(region, Qt::ReplaceClip);
}

void Player::offsetClip(QPointF by)
{
    if (!m_painter || !m_painter->hasClipping())
        return;
    m_painter->setWorldTransform(logicalToDevice() * m_deviceToImage);
    m_painter->setClipPath(m_painter->clipPath().translated(by), Qt::ReplaceClip);
}

void Player::drawText(QPointF at, const QString& text, const std::vector<int>& dx, int options,
                      const QRectF& box)
{
    const LogFont& logFont = m_dc.font;
    if (m_dc.textAlign & TA_UPDATECP)
        at = m_dc.position;
    beginDraw();
    const QTransform toTarget = m_painter ? logicalToDevice() * m_deviceToImage : logicalToDevice();
    const QPointF origin = toTarget.map(at);
    const double scaleX = QLineF(toTarget.map(QPointF(0, 0)), toTarget.map(QPointF(1, 0))).length();
    const double scaleY = QLineF(toTarget.map(QPointF(0, 0)), toTarget.map(QPointF(0, 1))).length();

    QFont font(logFont.face.isEmpty() ? QStringLiteral("Sans Serif") : logFont.face);
    switch (logFont.family) {
    case 0x10:
        font.setStyleHint(QFont::Serif);
        break;
    case 0x30:
        font.setStyleHint(QFont::Monospace);
        break;
    case 0x40:
        font.setStyleHint(QFont::Cursive);
        break;
    case 0x50:
        font.setStyleHint(QFont::Decorative);
        break;
    default:
        font.setStyleHint(QFont::SansSerif);
        break;
    }
    // A positive height is the cell height, a negative one the character height.
    double pixels = std::abs(logFont.height ? logFont.height : 12) * scaleY;
    if (logFont.height > 0)
        pixels *= 0.85;
    font.setPixelSize(std::clamp(int(std::lround(pixels)), 1, 4096));
    if (logFont.weight > 0)
        font.setWeight(QFont::Weight(std::clamp(logFont.weight, 100, 900)));
    font.setItalic(logFont.italic);
    font.setUnderline(logFont.underline);
    font.setStrikeOut(logFont.strikeOut);

    const QFontMetricsF metrics(font);
    double width = 0;
    std::vector<double> positions;
    if (!dx.empty()) {
        positions.reserve(text.size());
        for (qsizetype i = 0; i < text.size(); ++i) {
            positions.push_back(width);
            width += (i < qsizetype(dx.size()) ? dx[i] : 0) * scaleX;
        }
    } else {
        width = metrics.horizontalAdvance(text);
    }
    double left = 0;
    if ((m_dc.textAlign & TA_CENTER) == TA_CENTER)
        left = -width / 2;
    else if (m_dc.textAlign & TA_RIGHT)
        left = -width;
    double baseline = metrics.ascent();
    if ((m_dc.textAlign & TA_BASELINE) == TA_BASELINE)
        baseline = 0;
    else if (m_dc.textAlign & TA_BOTTOM)
        baseline = -metrics.descent();
    const QRectF textBox(left, baseline - metrics.ascent(), width, metrics.height());
    if ((m_dc.textAlign & TA_UPDATECP) && !(m_dc.textAlign & (TA_RIGHT | TA_CENTER)))
        m_dc.position = at + QPointF(scaleX > 0 ? width / scaleX : 0, 0);

    if (!m_painter) {
        m_drawnBounds |= textBox.translated(origin);
        return;
    }
    m_painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
    if (options & ETO_OPAQUE)
        m_painter->fillRect(box, m_dc.bkColor);
    m_painter->save();
    if (options & ETO_CLIPPED)
        m_painter->setClipRect(box, Qt::IntersectClip);
    m_painter->resetTransform();
    m_painter->translate(origin);
    m_painter->rotate(-logFont.escapement / 10.0);
    if (m_dc.opaqueBackground && !(options & ETO_OPAQUE))
        m_painter->fillRect(textBox, m_dc.bkColor);
    m_painter->setFont(font);
    m_painter->setPen(m_dc.textColor);
    if (positions.empty()) {
        m_painter->drawText(QPointF(left, baseline), text);
    } else {
        for (qsizetype i = 0; i < text.size(); ++i)
            m_painter->drawText(QPointF(left + positions[i], baseline), QString(text[i]));
    }
    m_painter->restore();
}

bool Player::handle(const Record& r)
{
    DcState& dc = m_dc;
    switch (r.function) {
    case SaveDC:
        if (m_saved.size() < MaxSavedStates) {
            m_saved.push_back(dc);
            if (m_painter)
                m_painter->save();
        }
        break;
    case RestoreDC: {
        const int n = r.s(0);
        const int depth = int(m_saved.size());
        const int target = n < 0 ? depth + n : n - 1;
        if (target < 0 || target >= depth)
            break;
        dc = m_saved[target];
        while (int(m_saved.size()) > target) {
            m_saved.pop_back();
            if (m_painter)
                m_painter->restore();
        }
        break;
    }
    case SetMapMode:
        if (r.u(0) >= MM_TEXT && r.u(0) <= MM_ANISOTROPIC)
            dc.mapMode = r.u(0);
        break;
    case SetWindowOrg:
        dc.windowOrg = r.point(0);
        break;
    case OffsetWindowOrg:
        dc.windowOrg += r.point(0);
        break;
    case SetWindowExt:
        if (r.s(0) && r.s(1)) {
            dc.windowExt = QSizeF(r.s(1), r.s(0));
            dc.windowExtSet = true;
        }
        break;
    case ScaleWindowExt: // yDenom, yNum, xDenom, xNum
        dc.windowExt = scaledExtent(dc.windowExt, r);
        break;
    case SetViewportOrg:
        if (!m_placeable) // a placeable file's viewport belongs to the player
            dc.viewportOrg = r.point(0);
        break;
    case OffsetViewportOrg:
        if (!m_placeable)
            dc.viewportOrg += r.point(0);
        break;
    case SetViewportExt:
        if (!m_placeable && r.s(0) && r.s(1)) {
            dc.viewportExt = QSizeF(r.s(1), r.s(0));
            dc.viewportExtSet = true;
        }
        break;
    case ScaleViewportExt:
        if (!m_placeable && dc.viewportExtSet)
            dc.viewportExt = scaledExtent(dc.viewportExt, r);
        break;
    case SetBkMode:
        dc.opaqueBackground = r.u(0) == 2;
        break;
    case SetBkColor:
        dc.bkColor = r.color(0);
        break;
    case SetTextColor:
        dc.textColor = r.color(0);
        break;
    case SetTextAlign:
        dc.textAlign = r.u(0);
        break;
    case SetPolyFillMode:
        dc.fillRule = r.u(0) == 2 ? Qt::WindingFill : Qt::OddEvenFill;
        break;
    case SetROP2:
        dc.rop2 = r.u(0);
        break;

    case CreatePenIndirect: {
        GdiObject o;
        o.kind = GdiObject::Pen;
        o.pen = makePen(r);
        addObject(std::move(o));
        break;
    }
    case CreateBrushIndirect: {
        GdiObject o;
        o.kind = GdiObject::Brush;
        o.brush = makeBrush(r);
        addObject(std::move(o));
        break;
    }
    case DibCreatePatternBrush:
        addObject(makePatternBrush(r));
        break;
    case CreatePatternBrush: {
        GdiObject o;
        o.kind = GdiObject::Brush;
        const QImage pattern = m_painter ? decodeBitmap16(r) : QImage();
        if (pattern.isNull())
            o.brush = QBrush(Qt::gray);
        else if (pattern.format() == QImage::Format_Mono)
            o.monoPattern = pattern;
        else
            o.brush = QBrush(pattern);
        addObject(std::move(o));
        break;
    }
    case CreateFontIndirect: {
        GdiObject o;
        o.kind = GdiObject::Font;
        o.font = makeFont(r);
        addObject(std::move(o));
        break;
    }
    case CreatePalette: {
        GdiObject o;
        o.kind = GdiObject::Palette;
        o.palette = makePalette(r);
        addObject(std::move(o));
        break;
    }
    case CreateRegion: {
        GdiObject o;
        o.kind = GdiObject::Region;
        if (!makeRegion(r, &o.region))
            return false;
        addObject(std::move(o));
        break;
    }
    case SelectObject:
        selectObject(r.u(0));
        break;
    case SelectPalette:
        selectPalette(r.u(0));
        break;
    case RealizePalette:
        break; // indices map through the selected logical palette as it is
    case SelectClipRegion:
        if (r.u(0) < m_objects.size() && m_objects[r.u(0)].kind == GdiObject::Region)
            selectClipRegion(m_objects[r.u(0)].region);
        break;
    case OffsetClipRgn:
        offsetClip(r.point(0));
        break;
    case DeleteObject:
        deleteObject(r.u(0));
        break;

    case IntersectClipRect:
        setClip(r.rect(0), false);
        break;
    case ExcludeClipRect:
        setClip(r.rect(0), true);
        break;

    case MoveTo:
        dc.position = r.point(0);
        break;
    case LineTo: {
        QPainterPath path(dc.position);
        dc.position = r.point(0);
        path.lineTo(dc.position);
        drawPath(path, false);
        break;
    }
    case Polyline:
    case Polygon: {
        const qsizetype count = std::min<qsizetype>(r.u(0), (r.words - 1) / 2);
        if (count < 2)
            break;
        QPolygonF points;
        points.reserve(count);
        for (qsizetype i = 0; i < count; ++i)
            points << QPointF(r.s(1 + 2 * i), r.s(2 + 2 * i));
        QPainterPath path;
        path.setFillRule(dc.fillRule);
        path.addPolygon(points);
        if (r.function == Polygon)
            path.closeSubpath();
        drawPath(path, r.function == Polygon);
        break;
    }
    case PolyPolygon: {
        const qsizetype polygons = r.u(0);
        if (polygons == 0 || polygons >= r.words)
            break;
        qsizetype next = 1 + polygons;
        QPainterPath path;
        path.setFillRule(dc.fillRule);
        for (qsizetype p = 0; p < polygons; ++p) {
            const qsizetype count = std::min<qsizetype>(r.u(1 + p), (r.words - next) / 2);
            QPolygonF points;
            points.reserve(count);
            for (qsizetype i = 0; i < count; ++i, next += 2)
                points << QPointF(r.s(next), r.s(next + 1));
            if (count >= 2) {
                path.addPolygon(points);
                path.closeSubpath();
            }
        }
        drawPath(path, true);
        break;
    }
    case Rectangle: {
        QPainterPath path;
        path.addRect(r.rect(0));
        drawPath(path, true);
        break;
    }
    case RoundRect: {
        QPainterPath path;
        path.addRoundedRect(r.rect(2), std::abs(r.s(1)) / 2.0, std::abs(r.s(0)) / 2.0);
        drawPath(path, true);
        break;
    }
    case Ellipse: {
        QPainterPath path;
        path.addEllipse(r.rect(0));
        drawPath(path, true);
        break;
    }
    case Arc:
    case Pie:
    case Chord: {
        const QRectF box = r.rect(4);
        if (box.isEmpty())
            break;
        const QPointF c = box.center();
        const double rx = box.width() / 2, ry = box.height() / 2;
        // Radials become angles on the ellipse; GDI draws counter-clockwise from start to end.
        auto angle = [&](QPointF p) {
            return std::atan2(-(p.y() - c.y()) / ry, (p.x() - c.x()) / rx) * 180.0 / M_PI;
        };
        const double start = angle(r.point(2));
        double sweep = angle(r.point(0)) - start;
        if (sweep <= 0)
            sweep += 360;
        QPainterPath path;
        if (r.function == Pie) {
            path.moveTo(c);
            path.arcTo(box, start, sweep);
            path.closeSubpath();
        } else {
            path.arcMoveTo(box, start);
            path.arcTo(box, start, sweep);
            if (r.function == Chord)
                path.closeSubpath();
        }
        drawPath(path, r.function != Arc);
        break;
    }
    case SetPixel: {
        beginDraw();
        const QRectF dot(r.point(2), QSizeF(1, 1));
        if (m_painter)
            m_painter->fillRect(dot, r.color(0));
        else
            m_drawnBounds |= logicalToDevice().mapRect(dot);
        break;
    }
    case PatBlt:
        // rop, height, width, y, x
        patBlt(QRectF(r.s(5), r.s(4), r.s(3), r.s(2)), r.u32(0));
        break;

    case TextOut: {
        const qsizetype length =
            std::min<qsizetype>(std::max<qint16>(r.s(0), 0), 2 * (r.words - 1));
        const qsizetype after = 1 + (length + 1) / 2;
        if (after + 2 > r.words)
            break;
        const QString text = decodeText(r.bytes(1).left(length), dc.font.charset);
        drawText(r.point(after), text, {}, 0, {});
        break;
    }
    case ExtTextOut: {
        // y, x, count, options, [rectangle], string, [advances]
        const int options = r.u(3);
        const bool hasBox = options & (ETO_OPAQUE | ETO_CLIPPED);
        const qsizetype textWord = hasBox ? 8 : 4;
        const QRectF box =
            hasBox ? QRectF(QPointF(r.s(4), r.s(5)), QPointF(r.s(6), r.s(7))).normalized()
                   : QRectF();
        const qsizetype length =
            std::min<qsizetype>(r.u(2), std::max<qsizetype>(0, 2 * (r.words - textWord)));
        const QString text = decodeText(r.bytes(textWord).left(length), dc.font.charset);
        std::vector<int> dx;
        const qsizetype dxWord = textWord + (length + 1) / 2;
        // Advances count bytes; a multi-byte text keeps its own spacing.
        if (dxWord + length <= r.words && text.size() == length) {
            dx.reserve(length);
            for (qsizetype i = 0; i < length; ++i)
                dx.push_back(r.s(dxWord + i));
        }
        if (text.isEmpty()) {
            if (options & ETO_OPAQUE) {
                beginDraw();
                if (m_painter)
                    m_painter->fillRect(box, dc.bkColor);
            }
            break;
        }
        drawText(r.point(0), text, dx, options, box);
        break;
    }

    case DibBitBlt:
    case DibStretchBlt: {
        const bool stretch = r.function == DibStretchBlt;
        // Without a bitmap the record is a pattern fill with one reserved word more.
        if (r.words == (r.function >> 8)) {
            const qsizetype d = stretch ? 7 : 5;
            patBlt(QRectF(r.s(d + 3), r.s(d + 2), r.s(d + 1), r.s(d)), r.u32(0));
            break;
        }
        // rop, [srcHeight, srcWidth,] ySrc, xSrc, destHeight, destWidth, yDest, xDest, DIB
        const qsizetype s = stretch ? 4 : 2;
        const QRectF target(r.s(s + 5), r.s(s + 4), r.s(s + 3), r.s(s + 2));
        // A blit's bitmap always carries RGB colours: the record has no usage field.
        const QImage dib = decodeBitmap(r.bytes(s + 6), DIB_RGB_COLORS);
        const QSizeF sourceSize = stretch ? QSizeF(r.s(3), r.s(2)) : QSizeF(r.s(s + 3), r.s(s + 2));
        drawImage(target, dib, QRectF(QPointF(r.s(s + 1), r.s(s)), sourceSize), r.u32(0));
        break;
    }
    case StretchDIB: {
        // rop, usage, srcHeight, srcWidth, ySrc, xSrc, destHeight, destWidth, yDest, xDest, DIB
        const QRectF target(r.s(10), r.s(9), r.s(8), r.s(7));
        const QImage dib = decodeBitmap(r.bytes(11), r.u(2));
        // The source origin of a bottom-up DIB is its lower-left corner.
        const double h = r.s(3);
        const double y = dib.isNull() ? r.s(5) : dib.height() - r.s(5) - h;
        drawImage(target, dib, QRectF(r.s(6), y, r.s(4), h), r.u32(0));
        break;
    }
    case SetDIBitsToDevice: {
        // usage, scanCount, startScan, yDib, xDib, height, width, yDest, xDest, DIB
        const QRectF target(r.s(8), r.s(7), r.s(6), r.s(5));
        const QImage dib = decodeBitmap(r.bytes(9), r.u(0));
        const double h = r.s(5);
        const double y = dib.isNull() ? r.s(3) : dib.height() - r.s(3) - h;
        drawImage(target, dib, QRectF(r.s(4), y, r.s(6), h), 0x00CC0020);
        break;
    }
    default:
        break; // records without a picture of their own
    }
    return true;
}

} // namespace

namespace MetafilePlayer {

bool IsMetafile(const QByteArray& head)
{
    if (head.size() < PlainHeaderBytes)
        return false;
    const auto* p = reinterpret_cast<const uchar*>(head.constData());
    if (qFromLittleEndian<quint32>(p) == PlaceableKey)
        return true;
    const quint16 type = qFromLittleEndian<quint16>(p);
    const quint16 words = qFromLittleEndian<quint16>(p + 2);
    const quint16 version = qFromLittleEndian<quint16>(p + 4);
    return (type == 1 || type == 2) && words == 9 && (version == 0x0100 || version == 0x0300);
}

namespace {

// Reads the header and, for plain files, measures the picture; an empty frame means failure.
QRectF findFrame(Player& player, QString* reason)
{
    if (!player.readHeader(reason))
        return {};
    if (!player.placeable() && player.play(nullptr, {}) == 0) {
        if (reason)
            *reason = QStringLiteral("The metafile holds no records that could be played");
        return {};
    }
    const QRectF frame = player.frame();
    const bool finite = std::isfinite(frame.left()) && std::isfinite(frame.top()) &&
                        std::isfinite(frame.width()) && std::isfinite(frame.height());
    if (!finite || frame.width() < 1e-6 || frame.height() < 1e-6) {
        if (reason)
            *reason = QStringLiteral("The metafile draws nothing");
        return {};
    }
    return frame;
}

QSize roundedSize(const QSizeF& size)
{
    return QSize(std::clamp(int(std::lround(std::min(size.width(), 1e9))), 1, 1 << 20),
                 std::clamp(int(std::lround(std::min(size.height(), 1e9))), 1, 1 << 20));
}

} // namespace

QSize NaturalSize(const QByteArray& data, QString* reason)
{
    if (!IsMetafile(data)) {
        if (reason)
            *reason = QStringLiteral("Not a metafile");
        return {};
    }
    Player player(data);
    const QRectF frame = findFrame(player, reason);
    return frame.isEmpty() ? QSize() : roundedSize(frame.size());
}

QImage Render(const QByteArray& data, const QSize& box, QString* reason)
{
    if (!IsMetafile(data)) {
        if (reason)
            *reason = QStringLiteral("Not a metafile");
        return {};
    }
    Player player(data);
    const QRectF frame = findFrame(player, reason);
    if (frame.isEmpty())
        return {};
    QSizeF size = frame.size();
    if (!box.isEmpty())
        size.scale(QSizeF(box), Qt::KeepAspectRatio);
    if (size.width() * size.height() > MaxPixels)
        size *= std::sqrt(MaxPixels / (size.width() * size.height()));
    const QSize pixels = roundedSize(size);

    QImage image(pixels, QImage::Format_RGB32);
    if (image.isNull()) {
        if (reason)
            *reason = QStringLiteral("Not enough memory for the picture");
        return {};
    }
    image.fill(Qt::white);
    QTransform deviceToImage;
    deviceToImage.scale(pixels.width() / frame.width(), pixels.height() / frame.height());
    deviceToImage.translate(-frame.left(), -frame.top());
    {
        QPainter painter(&image);
        if (player.play(&painter, deviceToImage) == 0) {
            if (reason)
                *reason = QStringLiteral("The metafile holds no records that could be played");
            return {};
        }
    }
    return image;
}

} // namespace MetafilePlayer
