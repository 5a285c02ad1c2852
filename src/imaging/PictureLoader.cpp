#include "imaging/PictureLoader.h"

#include "imaging/JpegDecoder.h"

#include "imaging/MetafilePlayer.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QTransform>
#include <QtEndian>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <tuple>

namespace {

QString notFound()
{
    return QStringLiteral("The file could not be found.");
}
QString notPicture()
{
    return QStringLiteral("This is not a picture Lumbra can read.");
}
QString damaged()
{
    return QStringLiteral("The picture is damaged or incomplete.");
}
QString tooLarge()
{
    return QStringLiteral("The picture is too large to open.");
}
QString unreadable()
{
    return QStringLiteral("The file could not be read.");
}
QString folder()
{
    return QStringLiteral("This is a folder, not a picture.");
}

// Metafiles are played from memory; real ones are a few megabytes at most.
constexpr qint64 MaxMetafileBytes = 64 * 1024 * 1024;
// Icons with more entries than this are hostile; the first ones are considered.
constexpr int MaxIconEntries = 256;

const QList<QByteArray>& supportedFormats()
{
    static const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    return formats;
}

// The allocation limit is one setting for the whole process: every reader, including those a
// decoder makes for an icon's embedded PNG, obeys it.
void setUpReaders()
{
    static std::once_flag once;
    std::call_once(once,
                   [] { QImageReader::setAllocationLimit(PictureLoader::AllocationLimitMB); });
}

QByteArray formatFromSuffix(const QString& nameHint)
{
    const QByteArray suffix = QFileInfo(nameHint).suffix().toLower().toLatin1();
    if (suffix.isEmpty())
        return {};
    if (suffix == "jpg" || suffix == "jpe" || suffix == "jfif")
        return "jpeg";
    if (suffix == "tif")
        return "tiff";
    if (suffix == "dib")
        return "bmp";
    if (suffix == "wmf")
        return "wmf";
    return supportedFormats().contains(suffix) ? suffix : QByteArray();
}

// A bitmap without its 14-byte file header starts with the size of its info header.
bool isHeaderlessBitmap(const QByteArray& head)
{
    if (head.size() < 4)
        return false;
    const quint32 infoSize = qFromLittleEndian<quint32>(head.constData());
    return infoSize == 12 || infoSize == 40 || infoSize == 52 || infoSize == 56 || infoSize == 64 ||
           infoSize == 108 || infoSize == 124;
}

QByteArray formatFromMagic(const QByteArray& head, const QString& nameHint)
{
    if (head.startsWith("BM"))
        return "bmp";
    if (head.startsWith("GIF87a") || head.startsWith("GIF89a"))
        return "gif";
    if (head.startsWith("\xFF\xD8\xFF"))
        return "jpeg";
    if (head.startsWith("\x89PNG\r\n\x1A\n"))
        return "png";
    if (head.startsWith(QByteArrayLiteral("II*\0")) ||
        head.startsWith(QByteArrayLiteral("MM\0*")) ||
        head.startsWith(QByteArrayLiteral("II+\0")) || head.startsWith(QByteArrayLiteral("MM\0+")))
        return "tiff";
    if (head.startsWith(QByteArrayLiteral("\0\0\1\0")))
        return "ico";
    if (head.startsWith(QByteArrayLiteral("\0\0\2\0")))
        return "cur";
    if (head.startsWith("RIFF") && head.mid(8, 4) == "WEBP")
        return supportedFormats().contains("webp") ? "webp" : QByteArray();
    if (MetafilePlayer::IsMetafile(head))
        return "wmf";
    // Qt reads such a bitmap as "dib"; only trust it when the name says so.
    if (QFileInfo(nameHint).suffix().compare(u"dib", Qt::CaseInsensitive) == 0 &&
        isHeaderlessBitmap(head))
        return "dib";
    return {};
}

struct Detected
{
    QByteArray format;
    bool fromContent = false;
};

Detected detect(QIODevice* device, const QString& nameHint)
{
    if (device && device->isReadable()) {
        const QByteArray head = device->peek(64);
        QByteArray format = formatFromMagic(head, nameHint);
        if (format.isEmpty() && !head.isEmpty()) {
            format = QImageReader::imageFormat(device);
            if (format == "jpg")
                format = "jpeg";
            else if (format == "tif")
                format = "tiff";
        }
        if (!format.isEmpty())
            return {format, true};
    }
    return {formatFromSuffix(nameHint), false};
}

// The size the decoder will allocate, where it can differ from what the reader reports: a GIF
// is drawn on its logical screen; Qt's bitmap reader says nothing of sizes it refuses.
QSize declaredSize(const QByteArray& format, const QByteArray& head)
{
    const auto* bytes = reinterpret_cast<const uchar*>(head.constData());
    if (format == "gif" && head.size() >= 10)
        return {qFromLittleEndian<quint16>(bytes + 6), qFromLittleEndian<quint16>(bytes + 8)};
    const int info = format == "bmp" ? 14 : format == "dib" ? 0 : -1;
    if (info < 0 || head.size() < info + 12)
        return {};
    if (qFromLittleEndian<quint32>(bytes + info) == 12)
        return {qFromLittleEndian<quint16>(bytes + info + 4),
                qFromLittleEndian<quint16>(bytes + info + 6)};
    if (head.size() < info + 16)
        return {};
    const qint64 width = qFromLittleEndian<qint32>(bytes + info + 4);
    const qint64 height = std::abs(qint64(qFromLittleEndian<qint32>(bytes + info + 8)));
    return {int(std::clamp<qint64>(width, 0, INT_MAX)),
            int(std::clamp<qint64>(height, 0, INT_MAX))};
}

bool tooManyPixels(const QSize& size)
{
    return size.isValid() && qint64(size.width()) * size.height() > PictureLoader::MaxPixels;
}

// Why a path cannot be read as a file, or nothing when it can be opened.
std::optional<QString> openFile(const QString& path, QFile& file)
{
    const QFileInfo info(path);
    if (!info.exists())
        return notFound();
    if (info.isDir())
        return folder();
    // Pipes and devices could block forever or never end.
    if (!info.isFile())
        return notPicture();
    file.setFileName(path);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable();
    return std::nullopt;
}

QString emptyReason(const QString& nameHint)
{
    return formatFromSuffix(nameHint).isEmpty() ? notPicture() : damaged();
}

// Picks the icon entry whose size is closest to the box, the largest without a box; among
// entries of one size, the one with the most colours.
void chooseIconEntry(QImageReader& reader, QIODevice& device, const QSize& box)
{
    const int count = std::min(reader.imageCount(), MaxIconEntries);
    if (count <= 1)
        return;
    const QByteArray directory = device.peek(6 + 16 * count);
    const int wanted = box.isEmpty() ? 0 : std::min(box.width(), box.height());
    int best = -1;
    std::tuple<qint64, qint64, int> bestKey;
    for (int i = 0; i < count; ++i) {
        if (!reader.jumpToImage(i))
            continue;
        const QSize size = reader.size();
        if (size.isEmpty())
            continue;
        const int side = std::max(size.width(), size.height());
        const qint64 distance = wanted ? std::abs(side - wanted) : -qint64(side);
        int depth = 32; // PNG entries leave the bit count at zero
        if (directory.size() >= 6 + 16 * (i + 1)) {
            const int bits = qFromLittleEndian<quint16>(directory.constData() + 6 + 16 * i + 6);
            if (bits > 0)
                depth = bits;
        }
        // Smaller is better: nearest side, then more pixels (shrinking looks better), then depth.
        const std::tuple<qint64, qint64, int> key{distance, -qint64(size.width()) * size.height(),
                                                  -depth};
        if (best < 0 || key < bestKey) {
            best = i;
            bestKey = key;
        }
    }
    reader.jumpToImage(std::max(best, 0));
}

LoadedPicture loadMetafile(const QByteArray& data, const QSize& box, bool enlarge)
{
    LoadedPicture result;
    result.format = "wmf";
    QString reason;
    result.naturalSize = MetafilePlayer::NaturalSize(data, &reason);
    if (!result.naturalSize.isValid()) {
        result.reason = reason.isEmpty() ? damaged() : reason;
        return result;
    }
    const QSize target =
        box.isEmpty() ? QSize() : PictureLoader::FitSize(result.naturalSize, box, enlarge);
    result.image = MetafilePlayer::Render(data, target, &reason);
    if (result.image.isNull())
        result.reason = reason.isEmpty() ? damaged() : reason;
    return result;
}

QSize metafileSize(const QByteArray& data, QString* reason)
{
    QString why;
    const QSize size = MetafilePlayer::NaturalSize(data, &why);
    if (!size.isValid() && reason)
        *reason = why.isEmpty() ? damaged() : why;
    return size;
}

// Reads the metafile whole, refusing what no real metafile reaches.
std::optional<QByteArray> readMetafile(QIODevice& device)
{
    if (device.size() > MaxMetafileBytes)
        return std::nullopt;
    return device.read(MaxMetafileBytes);
}

// Why a reader failed: a size beyond the allocation limit, content that is not what the name
// said, or a file of the right kind that breaks off or contradicts itself.
QString readFailure(const QImageReader& reader, const QSize& decodeSize, bool fromContent)
{
    if (decodeSize.isValid() && qint64(decodeSize.width()) * decodeSize.height() * 4 >
                                    qint64(PictureLoader::AllocationLimitMB) * 1024 * 1024)
        return tooLarge();
    if (!fromContent)
        return notPicture();
    switch (reader.error()) {
    case QImageReader::UnsupportedFormatError:
        return notPicture();
    case QImageReader::DeviceError:
        return unreadable();
    default:
        return damaged();
    }
}

// Turns pixels read in the file's stored orientation upright, as QImageReader would.
QImage applyTransformation(const QImage& image, QImageIOHandler::Transformations orientation)
{
    if (orientation == QImageIOHandler::TransformationNone)
        return image;
    if (orientation == QImageIOHandler::TransformationRotate270)
        return image.transformed(QTransform().rotate(270));
    QImage result = image.mirrored(orientation & QImageIOHandler::TransformationMirror,
                                   orientation & QImageIOHandler::TransformationFlip);
    if (orientation & QImageIOHandler::TransformationRotate90)
        result = result.transformed(QTransform().rotate(90));
    return result;
}

// JPEG files larger than this go to Qt's reader, which streams them.
constexpr qint64 MaxJpegBytesInMemory = 256 * 1024 * 1024;

// JPEG through libjpeg's reduced decoding, from the file's bytes read into memory. Not mapped:
// a file that another program rewrites during the decode would end the process with SIGBUS.
JpegDecoder::Result decodeJpeg(QIODevice& device, const QSize& natural, const QSize& box,
                               bool enlarge, bool turned)
{
    const QSize target = PictureLoader::FitSize(natural, box, enlarge);
    const QSize atLeast = box.isEmpty() ? QSize() : (turned ? target.transposed() : target);
    if (auto* file = qobject_cast<QFile*>(&device)) {
        // Qt's reader may take over when this decode gives up: leave the file where it was.
        const qint64 at = file->pos();
        if (file->size() > MaxJpegBytesInMemory || !file->seek(0))
            return {};
        const QByteArray bytes = file->readAll();
        file->seek(at);
        if (bytes.isEmpty())
            return {};
        return JpegDecoder::Decode(reinterpret_cast<const uchar*>(bytes.constData()), bytes.size(),
                                   atLeast, PictureLoader::MaxPixels);
    }
    if (auto* buffer = qobject_cast<QBuffer*>(&device))
        return JpegDecoder::Decode(reinterpret_cast<const uchar*>(buffer->data().constData()),
                                   buffer->data().size(), atLeast, PictureLoader::MaxPixels);
    return {};
}

LoadedPicture loadFromDevice(QIODevice& device, const QString& nameHint, const QSize& box,
                             bool enlarge)
{
    setUpReaders();
    LoadedPicture result;
    if (device.size() == 0) {
        result.reason = emptyReason(nameHint);
        return result;
    }
    const Detected detected = detect(&device, nameHint);
    result.format = detected.format;
    if (result.format.isEmpty()) {
        result.reason = notPicture();
        return result;
    }
    if (result.format == "wmf") {
        const auto data = readMetafile(device);
        if (!data) {
            result.reason = tooLarge();
            return result;
        }
        return loadMetafile(*data, box, enlarge);
    }

    const QSize declared = declaredSize(result.format, device.peek(32));
    if (tooManyPixels(declared)) {
        result.reason = tooLarge();
        return result;
    }
    QImageReader reader(&device, result.format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    if (result.format == "ico" || result.format == "cur")
        chooseIconEntry(reader, device, box);
    if (result.format == "dib")
        result.format = "bmp";

    const QSize stored = reader.size();
    const bool turned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    QSize decodeSize = declared.isValid() ? declared : stored;
    if (tooManyPixels(stored)) {
        result.reason = tooLarge();
        return result;
    }
    if (stored.isValid()) {
        result.naturalSize = turned ? stored.transposed() : stored;
        const QSize target = PictureLoader::FitSize(result.naturalSize, box, enlarge);
        // The reader's own scaling would dither a 1-bit picture (see SmoothScaled).
        const bool oneBit = reader.imageFormat() == QImage::Format_Mono ||
                            reader.imageFormat() == QImage::Format_MonoLSB;
        if (target != result.naturalSize && !oneBit &&
            reader.supportsOption(QImageIOHandler::ScaledSize)) {
            decodeSize = turned ? target.transposed() : target;
            reader.setScaledSize(decodeSize);
        }
    }

    QImage image;
    if (result.format == "jpeg" && stored.isValid()) {
        const JpegDecoder::Result jpeg = decodeJpeg(device, result.naturalSize, box, enlarge, turned);
        if (jpeg.truncated) {
            result.reason = damaged();
            return result;
        }
        if (!jpeg.image.isNull())
            image = applyTransformation(jpeg.image, reader.transformation());
    }
    if (image.isNull() && (!reader.read(&image) || image.isNull())) {
        result.reason = readFailure(reader, decodeSize, detected.fromContent);
        return result;
    }
    if (!result.naturalSize.isValid())
        result.naturalSize = image.size();
    const QSize target = PictureLoader::FitSize(result.naturalSize, box, enlarge);
    if (image.size() != target)
        image = PictureLoader::SmoothScaled(image, target);
    result.image = image;
    return result;
}

} // namespace

namespace PictureLoader {

LoadedPicture Load(const QString& path, const QSize& box, bool enlarge)
{
    QFile file;
    if (const auto reason = openFile(path, file)) {
        LoadedPicture result;
        result.reason = *reason;
        return result;
    }
    return loadFromDevice(file, path, box, enlarge);
}

LoadedPicture LoadData(const QByteArray& data, const QString& nameHint, const QSize& box,
                       bool enlarge)
{
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    return loadFromDevice(buffer, nameHint, box, enlarge);
}

QSize NaturalSize(const QString& path, QString* reason)
{
    setUpReaders();
    auto fail = [reason](const QString& why) {
        if (reason)
            *reason = why;
        return QSize();
    };
    QFile file;
    if (const auto why = openFile(path, file))
        return fail(*why);
    if (file.size() == 0)
        return fail(emptyReason(path));
    const Detected detected = detect(&file, path);
    const QByteArray& format = detected.format;
    if (format.isEmpty())
        return fail(notPicture());
    if (tooManyPixels(declaredSize(format, file.peek(32))))
        return fail(tooLarge());
    if (format == "wmf") {
        const auto data = readMetafile(file);
        return data ? metafileSize(*data, reason) : fail(tooLarge());
    }

    QImageReader reader(&file, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    if (format == "ico" || format == "cur")
        chooseIconEntry(reader, file, {});
    QSize size = reader.size();
    if (!size.isValid()) {
        // A few decoders only learn the size by decoding; the allocation limit still holds.
        if (reader.supportsOption(QImageIOHandler::Size) || !reader.canRead())
            return fail(readFailure(reader, {}, detected.fromContent));
        const LoadedPicture picture = Load(path);
        return picture.naturalSize.isValid() ? picture.naturalSize : fail(picture.reason);
    }
    if (reader.transformation() & QImageIOHandler::TransformationRotate90)
        size.transpose();
    return size;
}

QByteArray DetectFormat(QIODevice* device, const QString& nameHint)
{
    return detect(device, nameHint).format;
}

bool IsPictureFile(const QString& path)
{
    return !formatFromSuffix(path).isEmpty();
}

QImage SmoothScaled(const QImage& image, const QSize& size)
{
    if (image.depth() != 1)
        return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QImage wide = image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32
                                                                      : QImage::Format_RGB32);
    return wide.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QSize FitSize(const QSize& naturalSize, const QSize& box, bool enlarge)
{
    if (box.isEmpty() || naturalSize.isEmpty())
        return naturalSize;
    if (!enlarge && naturalSize.width() <= box.width() && naturalSize.height() <= box.height())
        return naturalSize;
    const QSize fitted = naturalSize.scaled(box, Qt::KeepAspectRatio);
    return fitted.expandedTo({1, 1});
}

} // namespace PictureLoader
