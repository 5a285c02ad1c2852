#include "TestWorld.h"

#include "imaging/MetafilePlayer.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QtEndian>

#include <initializer_list>

namespace {

// Builds metafiles record by record; parameters are 16-bit words in the order they are stored.
class Writer
{
public:
    Writer& record(quint16 function, std::initializer_list<int> words, const QByteArray& tail = {})
    {
        QByteArray r;
        appendWord(r, 0);
        appendWord(r, 0);
        appendWord(r, function);
        for (int w : words)
            appendWord(r, quint16(w));
        r += tail;
        if (r.size() % 2)
            r += '\0';
        qToLittleEndian<quint32>(quint32(r.size() / 2), r.data());
        m_records += r;
        return *this;
    }
    Writer& raw(const QByteArray& bytes)
    {
        m_records += bytes;
        return *this;
    }
    static QByteArray colour(QRgb rgb)
    {
        QByteArray c;
        appendWord(c, quint16(qRed(rgb) | (qGreen(rgb) << 8)));
        appendWord(c, quint16(qBlue(rgb)));
        return c;
    }

    Writer& solidBrush(QRgb rgb) { return record(0x02FC, {0}, colour(rgb) + QByteArray(2, '\0')); }
    Writer& nullPen() { return record(0x02FA, {5, 0, 0}, colour(0)); }
    Writer& select(int slot) { return record(0x012D, {slot}); }
    Writer& rectangle(int left, int top, int right, int bottom)
    {
        return record(0x041B, {bottom, right, top, left});
    }
    Writer& eof() { return record(0x0000, {}); }
    // A null pen and a solid brush of the colour, both selected.
    Writer& fill(QRgb rgb) { return nullPen().solidBrush(rgb).select(0).select(1); }
    Writer& windowExt(int width, int height) { return record(0x020C, {height, width}); }
    // A region of rectangles sharing one band from top to bottom.
    Writer& region(int top, int bottom, std::initializer_list<int> leftRights)
    {
        const int n = int(leftRights.size());
        const int left = *leftRights.begin(), right = *(leftRights.end() - 1);
        QList<int> words{0, 6, 0, 0, 2 * (14 + n), 1, n, left, top, right, bottom, n, top, bottom};
        words += QList<int>(leftRights);
        words << n;
        QByteArray tail;
        for (int w : words)
            appendWord(tail, quint16(w));
        return record(0x06FF, {}, tail);
    }

    QByteArray plain() const
    {
        QByteArray h;
        for (int w : {1, 9, 0x0300, 0, 0, 16, 0, 0, 0})
            appendWord(h, quint16(w));
        return h + m_records;
    }
    QByteArray placeable(int right, int bottom, int unitsPerInch) const
    {
        QByteArray h;
        for (int w : {0xCDD7, 0x9AC6, 0, 0, 0, right, bottom, unitsPerInch, 0, 0, 0})
            appendWord(h, quint16(w));
        return h + plain();
    }

private:
    static void appendWord(QByteArray& to, quint16 w)
    {
        to += char(w & 0xFF);
        to += char(w >> 8);
    }
    QByteArray m_records;
};

// A DIB as metafiles embed it: a BMP file without its 14-byte file header.
QByteArray dib(const QImage& image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "BMP");
    return buffer.data().mid(14);
}

// Map mode anisotropic, window (100,100) 200x100 shown in a 400x200 viewport.
Writer anisotropic()
{
    Writer w;
    w.record(0x0103, {8}).record(0x020B, {100, 100}).windowExt(200, 100);
    w.record(0x020D, {0, 0}).record(0x020E, {200, 400});
    return w;
}

bool isColour(const QImage& image, QPoint at, QRgb expected)
{
    const QRgb got = image.pixel(at);
    return qAbs(qRed(got) - qRed(expected)) < 40 && qAbs(qGreen(got) - qGreen(expected)) < 40 &&
           qAbs(qBlue(got) - qBlue(expected)) < 40;
}

const QRgb White = qRgb(255, 255, 255);
const QRgb Red = qRgb(255, 0, 0);
const QRgb Green = qRgb(0, 160, 0);
const QRgb Blue = qRgb(0, 0, 255);

} // namespace

class tst_MetafilePlayer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headers_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<bool>("metafile");
        QTest::addColumn<QSize>("natural");
        Writer square;
        square.fill(Red).rectangle(0, 0, 10, 10).eof();
        QTest::newRow("placeable inch of 1440 twips")
            << square.placeable(1440, 720, 1440) << true << QSize(96, 48);
        QTest::newRow("plain sized by what it draws") << square.plain() << true << QSize(10, 10);
        QByteArray wrongHeader = square.plain();
        wrongHeader[2] = 8;
        QTest::newRow("plain with a wrong header size") << wrongHeader << false << QSize();
        Writer nothing;
        nothing.eof();
        QTest::newRow("plain drawing nothing") << nothing.plain() << true << QSize();
    }
    void headers()
    {
        QFETCH(QByteArray, data);
        QFETCH(QSize, natural);
        QTEST(MetafilePlayer::IsMetafile(data.left(32)), "metafile");
        QString reason;
        QCOMPARE(MetafilePlayer::NaturalSize(data, &reason), natural);
        QCOMPARE(reason.isEmpty(), natural.isValid());
        QCOMPARE(MetafilePlayer::Render(data, {}, &reason).size(),
                 natural.isValid() ? natural : QSize(0, 0));
    }

    void mapping_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QSize>("natural");
        QTest::addColumn<QPoint>("inside");
        QTest::addColumn<QPoint>("outside");
        Writer viewport = anisotropic();
        viewport.fill(Red).rectangle(150, 100, 200, 150).eof();
        QTest::newRow("anisotropic viewport twice the window")
            << viewport.plain() << QSize(400, 200) << QPoint(150, 50) << QPoint(50, 50);
        Writer textMode;
        textMode.windowExt(200, 100).fill(Red).rectangle(100, 0, 200, 100).eof();
        QTest::newRow("text mode sized by its window extent")
            << textMode.plain() << QSize(200, 100) << QPoint(150, 50) << QPoint(50, 50);
        Writer upward;
        upward.record(0x0103, {8}).record(0x020B, {100, 0}).windowExt(100, -100);
        upward.fill(Red).rectangle(0, 0, 50, 50).eof();
        QTest::newRow("window with the y axis upwards")
            << upward.plain() << QSize(100, 100) << QPoint(25, 75) << QPoint(25, 25);
        Writer bbox;
        bbox.record(0x0103, {8}).record(0x020B, {50, 50}).windowExt(100, 100);
        bbox.fill(Red).rectangle(50, 50, 100, 100).eof();
        QTest::newRow("placeable window fills the bounding box")
            << bbox.placeable(100, 100, 96) << QSize(100, 100) << QPoint(25, 25) << QPoint(75, 75);
    }
    void mapping()
    {
        QFETCH(QByteArray, data);
        QFETCH(QSize, natural);
        QFETCH(QPoint, inside);
        QFETCH(QPoint, outside);
        QCOMPARE(MetafilePlayer::NaturalSize(data), natural);
        const QImage image = MetafilePlayer::Render(data, {});
        QCOMPARE(image.size(), natural);
        QVERIFY(isColour(image, inside, Red));
        QVERIFY(isColour(image, outside, White));
        // Fitted into a box of half the width, it keeps its proportions.
        const QImage half = MetafilePlayer::Render(data, {natural.width() / 2, natural.height()});
        QCOMPARE(half.size(), natural / 2);
        QVERIFY(isColour(half, inside / 2, Red));
        QVERIFY(isColour(half, outside / 2, White));
    }

    void hugePictureIsCapped()
    {
        Writer w;
        w.rectangle(0, 0, 10, 10).eof();
        const QByteArray data = w.placeable(32767, 32767, 50);
        QCOMPARE(MetafilePlayer::NaturalSize(data), QSize(62913, 62913));
        const QImage image = MetafilePlayer::Render(data, {});
        QVERIFY(!image.isNull());
        QVERIFY(qint64(image.width()) * image.height() <= 64ll * 1024 * 1024);
    }

    void text_data()
    {
        QTest::addColumn<QByteArray>("data");
        Writer font;
        font.windowExt(300, 100).record(0x02FB, {quint16(-40), 0, 0, 0, 700, 0, 0, 0, 0},
                                        QByteArray("DejaVu Sans", 12));
        font.select(0).record(0x0102, {1});
        Writer textOut = font;
        textOut.record(0x0521, {4}, QByteArray("HHHH") + QByteArray("\x1e\0\x0a\0", 4)).eof();
        QTest::newRow("text out") << textOut.plain();
        Writer spaced = font;
        spaced.record(0x0A32, {30, 10, 4, 0}, "HHHH" + QByteArray("\x1e\0", 2).repeated(4)).eof();
        QTest::newRow("ext text out with advances") << spaced.plain();
    }
    void text()
    {
        QFETCH(QByteArray, data);
        const QImage image = MetafilePlayer::Render(data, {});
        QCOMPARE(image.size(), QSize(300, 100));
        int dark = 0, darkOutside = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const bool isDark = qGray(image.pixel(x, y)) < 100;
                const bool inArea = x >= 10 && x < 160 && y >= 30 && y < 80;
                (inArea ? dark : darkOutside) += isDark;
            }
        }
        QVERIFY2(dark > 200, qPrintable(QString::number(dark)));
        QCOMPARE(darkOutside, 0);
    }

    void bitmaps_data()
    {
        QTest::addColumn<QByteArray>("data");
        QImage picture(2, 2, QImage::Format_RGB32);
        picture.setPixel(0, 0, Red);
        picture.setPixel(1, 0, Green);
        picture.setPixel(0, 1, Blue);
        picture.setPixel(1, 1, White);
        const QByteArray bits = dib(picture);
        // The raster operation SRCCOPY is 0x00CC0020.
        Writer stretchDib;
        stretchDib.windowExt(100, 100);
        stretchDib.record(0x0F43, {0x20, 0xCC, 0, 2, 2, 0, 0, 100, 100, 0, 0}, bits).eof();
        QTest::newRow("StretchDIB") << stretchDib.plain();
        Writer bitBlt;
        bitBlt.record(0x020B, {0, 0}).windowExt(2, 2);
        bitBlt.record(0x0940, {0x20, 0xCC, 0, 0, 2, 2, 0, 0}, bits).eof();
        QTest::newRow("DIBBitBlt") << bitBlt.placeable(2, 2, 2); // one unit is 48 pixels
        Writer toDevice;
        toDevice.windowExt(2, 2).record(0x0D33, {0, 2, 0, 0, 0, 2, 2, 0, 0}, bits).eof();
        QTest::newRow("SetDIBitsToDevice") << toDevice.placeable(2, 2, 2);
    }
    void bitmaps()
    {
        QFETCH(QByteArray, data);
        const QImage image = MetafilePlayer::Render(data, QSize(100, 100));
        QCOMPARE(image.size(), QSize(100, 100));
        const int q = image.width() / 4;
        QVERIFY(isColour(image, QPoint(q, q), Red));
        QVERIFY(isColour(image, QPoint(3 * q, q), Green));
        QVERIFY(isColour(image, QPoint(q, 3 * q), Blue));
        QVERIFY(isColour(image, QPoint(3 * q, 3 * q), White));
    }

    // Objects, polygons, arcs and clipping: the colour found at two points of a 100 x 100 picture.
    void fills_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QPoint>("first");
        QTest::addColumn<QRgb>("firstColour");
        QTest::addColumn<QPoint>("second");
        QTest::addColumn<QRgb>("secondColour");
        const auto square = [](Writer w) {
            return w.select(0).select(1).rectangle(0, 0, 100, 100).eof().plain();
        };
        const auto whole = [](const char* tag, const QByteArray& data, QRgb colour) {
            QTest::newRow(tag) << data << QPoint(10, 50) << colour << QPoint(90, 50) << colour;
        };
        Writer reused;
        // Red in slot 0, blue in 1; deleting 0 frees it for green.
        reused.nullPen().solidBrush(Red).solidBrush(Blue).record(0x01F0, {1}).solidBrush(Green);
        whole("lowest free slot reused", square(reused), Green);
        Writer nullBrush;
        nullBrush.nullPen().record(0x02FC, {1, 0, 0, 0});
        whole("null brush and pen leave white", square(nullBrush), White);
        Writer restored;
        restored.nullPen().solidBrush(Red).solidBrush(Blue).select(0).select(1).record(0x001E, {});
        restored.select(2).record(0x0127, {0xFFFF}).rectangle(0, 0, 100, 100).eof();
        whole("restoring the state brings the brush back", restored.plain(), Red);
        Writer unknown;
        unknown.nullPen().record(0x0999, {1, 2, 3, 4, 5}).solidBrush(Red);
        unknown.record(0x0626, {15, 4}, "abcd");
        whole("unknown records skipped", square(unknown), Red);

        auto twoSquares = [](int fillMode) {
            Writer w;
            w.fill(Red).record(0x0106, {fillMode});
            w.record(0x0538,
                     {2, 4, 4, 0, 0, 100, 0, 100, 100, 0, 100, 25, 25, 75, 25, 75, 75, 25, 75});
            return w.eof().plain();
        };
        QTest::newRow("alternate fill leaves the hole")
            << twoSquares(1) << QPoint(50, 60) << White << QPoint(10, 90) << Red;
        QTest::newRow("winding fill fills the hole")
            << twoSquares(2) << QPoint(50, 60) << Red << QPoint(10, 90) << Red;
        // A red fill that covers the first point and leaves the second white.
        Writer red;
        red.windowExt(100, 100).fill(Red);
        const auto row = [](const char* tag, const QByteArray& data, QPoint filled, QPoint empty) {
            QTest::newRow(tag) << data << filled << Red << empty << White;
        };
        auto arc = [&](quint16 function, QPoint start, QPoint end) {
            return Writer(red)
                .record(function, {end.y(), end.x(), start.y(), start.x(), 100, 100, 0, 0})
                .eof()
                .plain();
        };
        row("pie east to north", arc(0x081A, {100, 50}, {50, 0}), {70, 30}, {30, 70});
        row("intersect clip keeps the fill inside",
            Writer(red).record(0x0416, {60, 60, 20, 20}).rectangle(0, 0, 100, 100).eof().plain(),
            {40, 40}, {10, 10});
        Writer region(red);
        region.region(0, 100, {0, 20, 60, 80});
        row("selected clip region of two rectangles",
            Writer(region).record(0x012C, {2}).rectangle(0, 0, 100, 100).eof().plain(), {70, 50},
            {40, 50});
        Writer logical = anisotropic();
        logical.fill(Red).record(0x0416, {150, 200, 100, 150});
        row("clip in logical units", logical.rectangle(100, 100, 300, 200).eof().plain(), {150, 50},
            {250, 50});
        Writer broken(red);
        broken.rectangle(0, 0, 50, 100).record(0x06FF, {0, 6, 0, 0, 40, 1, 2, 0, 0, 9, 9, 0xFFFF});
        row("region cut short stops playback", broken.rectangle(0, 0, 100, 100).eof().plain(),
            {10, 10}, {75, 50});
    }
    void fills()
    {
        QFETCH(QByteArray, data);
        QFETCH(QPoint, first);
        QFETCH(QRgb, firstColour);
        QFETCH(QPoint, second);
        QFETCH(QRgb, secondColour);
        const QImage image = MetafilePlayer::Render(data, {});
        QVERIFY2(isColour(image, first, firstColour),
                 qPrintable(QString::number(image.pixel(first), 16)));
        QVERIFY2(isColour(image, second, secondColour),
                 qPrintable(QString::number(image.pixel(second), 16)));
    }

    // A monochrome pattern draws its 0 bits in the text colour, its 1 bits in the background.
    void monochromePattern()
    {
        const auto corner = [](int x, int y) { return x < 4 && y < 2; };
        QImage mono(8, 8, QImage::Format_Mono);
        mono.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x)
                mono.setPixel(x, y, corner(x, y));
        Writer w;
        w.windowExt(100, 100).nullPen().select(0);
        w.record(0x0209, {}, Writer::colour(Red)).record(0x0201, {}, Writer::colour(Blue));
        w.record(0x0142, {3, 0}, dib(mono)).select(1).rectangle(0, 0, 100, 100).eof();
        const QImage image = MetafilePlayer::Render(w.plain(), {});
        for (int y = 0; y < 24; ++y)
            for (int x = 0; x < 24; ++x)
                QVERIFY2(isColour(image, {x, y}, corner(x % 8, y % 8) ? Blue : Red),
                         qPrintable(QStringLiteral("%1,%2").arg(x).arg(y)));
    }

    void malformed_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<bool>("drawsFirstSquare");
        Writer square;
        square.fill(Red).rectangle(0, 0, 100, 100);
        auto after = [&](const QByteArray& bytes) { return Writer(square).raw(bytes).plain(); };
        QTest::newRow("size of zero")
            << after(QByteArray("\0\0\0\0\x1b\x04", 6) + QByteArray(8, 'x')) << true;
        QTest::newRow("size past the end")
            << after(QByteArray("\xff\0\0\0\x1b\x04\0\0", 8)) << true;
        QTest::newRow("size near four giga")
            << after(QByteArray("\xff\xff\xff\xff\x24\x03", 6)) << true;
        QTest::newRow("record cut inside its size") << after(QByteArray("\x05\0", 2)) << true;
        QTest::newRow("polygon counting more points than it has")
            << Writer(square).record(0x0324, {0xFFFF, 0, 0, 50, 50}).plain() << true;
        QTest::newRow("many polygons of many points")
            << Writer(square).record(0x0538, {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}).plain() << true;
        Writer longText(square);
        longText.record(0x0A32, {90, 90, 0x7FFF, 4, 0, 0, 10, 10}, "ab").record(0x0521, {0x7FFF});
        QTest::newRow("text longer than its record") << longText.plain() << true;
        QByteArray hugeDib(40, '\0');
        qToLittleEndian<quint32>(40, hugeDib.data());
        qToLittleEndian<qint32>(0x7FFFFFFF, hugeDib.data() + 4);
        qToLittleEndian<qint32>(0x7FFFFFFF, hugeDib.data() + 8);
        qToLittleEndian<quint16>(32, hugeDib.data() + 14);
        Writer hugeBitmap(square);
        hugeBitmap.record(0x0F43, {0x20, 0xCC, 0, 2, 2, 0, 0, 10, 10, 0, 0}, hugeDib);
        QTest::newRow("bitmap claiming billions of pixels") << hugeBitmap.plain() << true;
        Writer churn(square);
        for (int i = 0; i < 3000; ++i) {
            churn.solidBrush(Blue).record(0x01F0, {i % 7}).record(0x0127, {qint16(-5)});
            churn.record(0x0416, {1, 1, 0, 0});
        }
        QTest::newRow("object and state churn") << churn.plain() << true;
        Writer farOut;
        farOut.windowExt(1, 6).record(0x0418, {32767, 32767, -32768, -32768});
        QByteArray zigzag = QByteArray::fromHex("ff7f0080008000800080ff7fff7fff7f").repeated(100);
        farOut.record(0x0324, {200}, zigzag).record(0x02FA, {0, 32767, 0, 0, 0}).select(0);
        farOut.record(0x0214, {-32768, -32768}).record(0x0213, {32767, 32767});
        QTest::newRow("shapes far beyond a tiny window") << farOut.plain() << false;
        QTest::newRow("first record broken")
            << Writer().raw(QByteArray("\0\0\0\0\x1b\x04", 6)).plain() << false;
        QTest::newRow("header only") << Writer().plain() << false;
        QTest::newRow("placeable cut in its header")
            << Writer().placeable(10, 10, 96).left(30) << false;
    }
    void malformed()
    {
        QFETCH(QByteArray, data);
        QFETCH(bool, drawsFirstSquare);
        QElapsedTimer clock;
        clock.start();
        QString reason;
        const QImage image = MetafilePlayer::Render(data, QSize(200, 200), &reason);
        QVERIFY(clock.elapsed() < 5000);
        QCOMPARE(image.isNull(), !reason.isEmpty());
        if (drawsFirstSquare) {
            QVERIFY(!image.isNull());
            QVERIFY(isColour(image, QPoint(10, 10), Red));
        }
    }

    void samples()
    {
        QFile file(QStringLiteral(LUMBRA_SOURCE_DIR "/resources/samples/house.wmf"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray data = file.readAll();
        const QImage image = MetafilePlayer::Render(data, QSize(256, 256));
        QVERIFY(!image.isNull());
        QVERIFY(qMax(image.width(), image.height()) == 256);
        int coloured = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                coloured += image.pixel(x, y) != White;
        QVERIFY(coloured > image.width() * image.height() / 20);
    }
};

LUMBRA_TEST_MAIN(tst_MetafilePlayer)
#include "tst_metafileplayer.moc"
