#include "TestWorld.h"

#include "imaging/PictureLoader.h"

#include <QBuffer>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QImageWriter>
#include <QPainter>
#include <QRegularExpression>
#include <QtEndian>

#include <atomic>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace {

// Four quadrants of different colours, so a wrong turn or a swapped channel shows.
QImage quadrants(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    const int w = size.width() / 2, h = size.height() / 2;
    painter.fillRect(0, 0, w, h, Qt::red);
    painter.fillRect(w, 0, size.width() - w, h, Qt::white);
    painter.fillRect(0, h, w, size.height() - h, Qt::white);
    painter.fillRect(w, h, size.width() - w, size.height() - h, Qt::blue);
    return image;
}

// Qt writes no GIF: a 6x4 one, red top left, blue bottom right, white elsewhere.
const QByteArray Gif =
    QByteArray::fromHex("47494638396106000400810000ff0000ffffff0000ff0000002c0000000006000400"
                        "00020e048830214084091346949830a254003b");

QByteArray encode(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    if (!writer.write(image))
        qFatal("cannot write %s: %s", format, qPrintable(writer.errorString()));
    return bytes;
}

// An APP1 segment holding a big-endian TIFF header with the one orientation entry.
// Marker, length 34, "Exif", TIFF header, one entry: 0x0112, SHORT, count 1, then the value.
QByteArray exifSegment(int orientation)
{
    return QByteArray::fromHex("ffe10022457869660000"
                               "4d4d002a00000008"
                               "0001011200030000000100") +
           char(orientation) + QByteArray(6, '\0'); // no next directory
}

// Joins single-entry icons into one icon file with every entry.
QByteArray joinIcons(const QList<QByteArray>& icons)
{
    QByteArray header("\0\0\1\0", 4);
    header += char(icons.size());
    header += char(0);
    QByteArray entries, images;
    const int dataStart = 6 + 16 * icons.size();
    for (const QByteArray& icon : icons) {
        QByteArray entry = icon.mid(6, 16);
        const quint32 size = qFromLittleEndian<quint32>(entry.constData() + 8);
        const quint32 offset = qFromLittleEndian<quint32>(entry.constData() + 12);
        qToLittleEndian<quint32>(dataStart + images.size(), entry.data() + 12);
        entries += entry;
        images += icon.mid(offset, size);
    }
    return header + entries + images;
}

// Broken samples make the decoders complain by the thousand, on stderr (libtiff) and through
// Qt's warnings; the sanitizers report on stderr, so it stays open under them.
class Quiet
{
public:
    Quiet()
    {
#ifndef __SANITIZE_ADDRESS__
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, STDERR_FILENO);
        close(null);
#endif
    }
    ~Quiet()
    {
        dup2(m_stderr, STDERR_FILENO);
        close(m_stderr);
        qInstallMessageHandler(m_handler);
    }

private:
    int m_stderr = dup(STDERR_FILENO);
    QtMessageHandler m_handler =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
};

bool isNear(QRgb actual, QColor expected)
{
    return std::abs(qRed(actual) - expected.red()) < 60 &&
           std::abs(qGreen(actual) - expected.green()) < 60 &&
           std::abs(qBlue(actual) - expected.blue()) < 60;
}

} // namespace

class tst_PictureLoader : public QObject
{
    Q_OBJECT

private:
    QString write(const QString& name, const QByteArray& bytes)
    {
        const QString path = m_dir.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

    QTemporaryDir m_dir;

private slots:
    void formats_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QByteArray>("format");

        const QImage picture = quadrants({64, 48});
        const QByteArray bmp = encode(picture, "bmp");
        const auto row = [](const char* tag, const char* name, const QByteArray& bytes,
                            const char* format, QSize size = {64, 48}) {
            QTest::newRow(tag) << QString::fromLatin1(name) << bytes << size << QByteArray(format);
        };
        row("bmp", "picture.bmp", bmp, "bmp");
        row("dib with a file header", "picture.dib", bmp, "bmp");
        row("dib without a file header", "clipboard.dib", bmp.mid(14), "bmp");
        row("gif", "picture.gif", Gif, "gif", {6, 4});
        row("jpeg", "picture.jpeg", encode(picture, "jpeg"), "jpeg");
        row("tiff", "picture.tif", encode(picture, "tiff"), "tiff");
        row("ico", "picture.ico", encode(picture.scaled(32, 32), "ico"), "ico", {32, 32});
        row("png with jpeg extension", "png-with-jpeg-extension.jpg", encode(picture, "png"),
            "png");
        row("jpeg without extension", "picture", encode(picture, "jpeg"), "jpeg");
    }

    void formats()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QFETCH(QSize, size);
        QFETCH(QByteArray, format);

        const QString path = write(name, bytes);
        const LoadedPicture picture = PictureLoader::Load(path);
        QVERIFY2(!picture.isNull(), qPrintable(picture.reason));
        QCOMPARE(picture.image.size(), size);
        QCOMPARE(picture.naturalSize, size);
        QCOMPARE(picture.format, format);
        QCOMPARE(PictureLoader::NaturalSize(path), size);
        QVERIFY(isNear(picture.image.pixel(1, 1), Qt::red));

        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(PictureLoader::DetectFormat(&file, name),
                 format == "bmp" && !bytes.startsWith("BM") ? QByteArray("dib") : format);
        QCOMPARE(file.pos(), 0);
        QCOMPARE(PictureLoader::LoadData(bytes, name).image.size(), size);
    }

    void iconEntries_data()
    {
        QTest::addColumn<QSize>("box");
        QTest::addColumn<QSize>("naturalSize");
        QTest::addColumn<QSize>("imageSize");

        QTest::newRow("no box: the largest") << QSize() << QSize(64, 64) << QSize(64, 64);
        QTest::newRow("between two: the nearer") << QSize(44, 44) << QSize(48, 48) << QSize(44, 44);
        QTest::newRow("wide box: its short side")
            << QSize(200, 30) << QSize(32, 32) << QSize(30, 30);
    }

    void iconEntries()
    {
        QFETCH(QSize, box);
        QFETCH(QSize, naturalSize);
        QFETCH(QSize, imageSize);

        // Each entry has its own colour, so the picture shows which one was read.
        const QList<std::pair<int, QColor>> entries{
            {16, Qt::red}, {32, Qt::green}, {48, Qt::blue}, {64, Qt::yellow}};
        QList<QByteArray> icons;
        QColor expected;
        for (const auto& [side, colour] : entries) {
            QImage image(side, side, QImage::Format_ARGB32);
            image.fill(colour);
            icons << encode(image, "ico");
            if (side == naturalSize.width())
                expected = colour;
        }
        const QString path = write(QStringLiteral("sizes.ico"), joinIcons(icons));

        const LoadedPicture picture = PictureLoader::Load(path, box);
        QVERIFY2(!picture.isNull(), qPrintable(picture.reason));
        QCOMPARE(picture.naturalSize, naturalSize);
        QCOMPARE(picture.image.size(), imageSize);
        QVERIFY(
            isNear(picture.image.pixel(imageSize.width() / 2, imageSize.height() / 2), expected));
        QCOMPARE(PictureLoader::NaturalSize(path), QSize(64, 64));
    }

    void exifOrientation_data()
    {
        QTest::addColumn<int>("orientation");
        QTest::addColumn<bool>("turned");
        QTest::addColumn<QPoint>("redCorner"); // 0 or 1 across and down; blue is opposite

        QTest::newRow("1 upright") << 1 << false << QPoint(0, 0);
        QTest::newRow("2 mirrored") << 2 << false << QPoint(1, 0);
        QTest::newRow("3 upside down") << 3 << false << QPoint(1, 1);
        QTest::newRow("4 flipped") << 4 << false << QPoint(0, 1);
        QTest::newRow("5 transposed") << 5 << true << QPoint(0, 0);
        QTest::newRow("6 turned clockwise") << 6 << true << QPoint(1, 0);
        QTest::newRow("7 transversed") << 7 << true << QPoint(1, 1);
        QTest::newRow("8 turned anticlockwise") << 8 << true << QPoint(0, 1);
    }

    void exifOrientation()
    {
        QFETCH(int, orientation);
        QFETCH(bool, turned);
        QFETCH(QPoint, redCorner);

        const QByteArray jpeg = encode(quadrants({90, 60}), "jpeg");
        const QString path = write(QStringLiteral("orient%1.jpg").arg(orientation),
                                   jpeg.left(2) + exifSegment(orientation) + jpeg.mid(2));
        const QSize upright = turned ? QSize(60, 90) : QSize(90, 60);
        QCOMPARE(PictureLoader::NaturalSize(path), upright);

        for (const QSize& box : {QSize(), QSize(45, 45)}) {
            const LoadedPicture picture = PictureLoader::Load(path, box);
            QVERIFY2(!picture.isNull(), qPrintable(picture.reason));
            QCOMPARE(picture.naturalSize, upright);
            QCOMPARE(picture.image.size(), PictureLoader::FitSize(upright, box, false));
            const QImage& image = picture.image;
            auto corner = [&](int across, int down) {
                return image.pixel(3 + across * (image.width() - 7),
                                   3 + down * (image.height() - 7));
            };
            QVERIFY(isNear(corner(redCorner.x(), redCorner.y()), Qt::red));
            QVERIFY(isNear(corner(1 - redCorner.x(), 1 - redCorner.y()), Qt::blue));
        }
    }

    void box_data()
    {
        QTest::addColumn<QByteArray>("format");
        QTest::addColumn<QSize>("natural");
        QTest::addColumn<QSize>("box");
        QTest::addColumn<bool>("enlarge");
        QTest::addColumn<QSize>("expected");

        QTest::newRow("large jpeg, decoded reduced") << QByteArray("jpeg") << QSize(4000, 3000)
                                                     << QSize(400, 400) << false << QSize(400, 300);
        QTest::newRow("large png, scaled after") << QByteArray("png") << QSize(4000, 3000)
                                                 << QSize(400, 400) << false << QSize(400, 300);
        QTest::newRow("small, not enlarged")
            << QByteArray("png") << QSize(100, 50) << QSize(400, 400) << false << QSize(100, 50);
        QTest::newRow("small, enlarged")
            << QByteArray("jpeg") << QSize(100, 50) << QSize(400, 400) << true << QSize(400, 200);
        QTest::newRow("thin line keeps a pixel")
            << QByteArray("png") << QSize(3000, 1) << QSize(100, 100) << false << QSize(100, 1);
    }

    void box()
    {
        QFETCH(QByteArray, format);
        QFETCH(QSize, natural);
        QFETCH(QSize, box);
        QFETCH(bool, enlarge);
        QFETCH(QSize, expected);

        const QString path =
            write(QStringLiteral("big.") + format, encode(quadrants(natural), format));
        const LoadedPicture picture = PictureLoader::Load(path, box, enlarge);
        QVERIFY2(!picture.isNull(), qPrintable(picture.reason));
        QCOMPARE(picture.image.size(), expected);
        QCOMPARE(picture.naturalSize, natural);
    }

    // A two-colour picture shown smaller keeps its own colours, not dithered black and white,
    // whether it is scaled while reading, after reading, in a thumbnail or in the workshop.
    void oneBitColoursKept_data()
    {
        QTest::addColumn<QString>("sample");
        QTest::addColumn<QRgb>("colour"); // one of the picture's two colours
        QTest::newRow("png palette") << QStringLiteral("pngsuite/png/basn3p01.png") << qRgb(0xee, 0xff, 0x22);
        QTest::newRow("bmp palette") << QStringLiteral("bmpsuite/g/pal1bg.bmp") << qRgb(0x40, 0xa4, 0x9a);
    }

    void oneBitColoursKept()
    {
        QFETCH(QString, sample);
        QFETCH(QRgb, colour);
        const QString path = QStringLiteral(LUMBRA_SHARED_DIR "/corpora/") + sample;
        const LoadedPicture picture = PictureLoader::Load(path, QSize(16, 16));
        QVERIFY2(!picture.isNull(), qPrintable(picture.reason));
        const QImage natural = PictureLoader::Load(path).image;
        QCOMPARE(natural.depth(), 1);
        for (const QImage& image : {picture.image, PictureLoader::SmoothScaled(natural, QSize(9, 9))}) {
            int seen = 0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x)
                    seen += isNear(image.pixel(x, y), QColor(colour)) ? 1 : 0;
            QVERIFY2(seen > 0, qPrintable(sample + QStringLiteral(" lost its colour when scaled")));
        }
    }

    void refused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes"); // null: not made
        QTest::addColumn<QString>("reason");

        const QString notFound = QStringLiteral("The file could not be found.");
        const QString notPicture = QStringLiteral("This is not a picture Lumbra can read.");
        const QString damaged = QStringLiteral("The picture is damaged or incomplete.");
        const QString tooLarge = QStringLiteral("The picture is too large to open.");

        QByteArray hugeBmp = encode(quadrants({8, 8}), "bmp");
        qToLittleEndian<qint32>(20000, hugeBmp.data() + 18);
        qToLittleEndian<qint32>(20000, hugeBmp.data() + 22);
        QByteArray hugeGif = Gif;
        hugeGif[6] = hugeGif[7] = hugeGif[8] = hugeGif[9] = char(0xFF);
        const QByteArray png = encode(quadrants({200, 200}), "png");

        QTest::newRow("missing") << "missing.png" << QByteArray() << notFound;
        QTest::newRow("folder") << "folder.png/" << QByteArray()
                                << QStringLiteral("This is a folder, not a picture.");
        QTest::newRow("zero bytes") << "empty.jpg" << QByteArray("") << damaged;
        QTest::newRow("text with a picture's name")
            << "notes.png" << QByteArray("just some words\n") << notPicture;
        QTest::newRow("truncated png") << "truncated.png" << png.left(png.size() / 3) << damaged;
        QTest::newRow("bmp of 400 megapixels") << "huge.bmp" << hugeBmp << tooLarge;
        QTest::newRow("gif of 4 gigapixels") << "huge.gif" << hugeGif << tooLarge;
    }

    void refused()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);

        if (name.endsWith(u'/'))
            QVERIFY(QDir(m_dir.path()).mkpath(name));
        const QString path = bytes.isNull() ? m_dir.filePath(name) : write(name, bytes);
        const LoadedPicture picture = PictureLoader::Load(path, {100, 100});
        QVERIFY(picture.isNull());
        QCOMPARE(picture.reason, reason);
        QString sizeReason;
        if (!PictureLoader::NaturalSize(path, &sizeReason).isValid())
            QVERIFY(!sizeReason.isEmpty());
        if (!bytes.isNull())
            QCOMPARE(PictureLoader::LoadData(bytes, name).reason, reason);
    }

    // Every public sample, good or hostile, gives a picture or a reason in bounded time.
    void corpora_data()
    {
        QTest::addColumn<QString>("path");
        const QString root = QStringLiteral(LUMBRA_SHARED_DIR "/corpora");
        if (!QFileInfo(root).isDir())
            QSKIP("the public corpora are not there");
        static const QRegularExpression notes(
            QStringLiteral("^(README|SOURCES|MANIFEST|COPYING|LICENSE|NOTICE)|\\.(txt|conf|tsv|md|"
                           "html?|css)$"),
            QRegularExpression::CaseInsensitiveOption);
        QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
        QStringList paths;
        while (it.hasNext()) {
            const QString path = it.next();
            if (!notes.match(it.fileName()).hasMatch())
                paths << path;
        }
        paths.sort();
        for (const QString& path : std::as_const(paths))
            QTest::newRow(qPrintable(path.mid(root.size() + 1))) << path;
    }

    void corpora()
    {
        QFETCH(QString, path);
        QElapsedTimer timer;
        timer.start();
        const Quiet quiet;
        for (const QSize& box : {QSize(), QSize(220, 220)}) {
            const LoadedPicture picture = PictureLoader::Load(path, box);
            QVERIFY(picture.isNull() != picture.reason.isEmpty());
            if (!picture.isNull())
                QVERIFY(picture.naturalSize.isValid());
        }
        QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
    }

    void fileCutShortWhileDecoding()
    {
        // Another program rewriting a photograph while it is decoded must cost a failed load,
        // not the process (a mapped file that shrinks raises SIGBUS).
        QImage photo(3000, 2000, QImage::Format_RGB32);
        QPainter painter(&photo);
        for (int i = 0; i < 400; ++i)
            painter.fillRect((i * 97) % 3000, (i * 61) % 2000, 300, 200, QColor::fromHsv(i % 360, 200, 220));
        painter.end();
        const QByteArray bytes = encode(photo, "jpeg");
        const QString path = write(QStringLiteral("rewritten.jpg"), bytes);

        std::atomic<bool> done = false;
        std::thread cutter([&] {
            while (!done) {
                ::truncate(QFile::encodeName(path).constData(), 4096);
                QFile file(path);
                if (file.open(QIODevice::WriteOnly))
                    file.write(bytes);
            }
        });
        for (int i = 0; i < 30; ++i)
            PictureLoader::Load(path, QSize(800, 600));
        done = true;
        cutter.join();
    }
};

LUMBRA_TEST_MAIN(tst_PictureLoader)
#include "tst_pictureloader.moc"
