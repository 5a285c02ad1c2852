#include "gallery/ThumbCache.h"

#include "imaging/PictureLoader.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QTemporaryFile>
#include <QStandardPaths>
#include <QtEndian>
#include <QUrl>

#include <zlib.h>

#include <array>
#include <cstdio>
#include <optional>
#include <utility>
#include <vector>

namespace {

using TextChunks = std::vector<std::pair<QByteArray, QByteArray>>;

const QByteArray PngSignature("\x89PNG\r\n\x1A\n", 8);
// Thumbnails are a few tens of kilobytes; anything far larger is not one of them.
constexpr qint64 MaxThumbnailBytes = 16 * 1024 * 1024;
constexpr qint64 MaxTextBytes = 64 * 1024;
// Thumbnails are written often and read many times; a light deflate keeps writing cheap.
constexpr int PngCompression = 1;

constexpr auto FolderPermissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
constexpr auto FilePermissions = QFile::ReadOwner | QFile::WriteOwner;

QString absolute(const QString& path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

// GLib leaves these bytes as they are in a file URI's path and escapes every other one.
bool keptByGlib(uchar c)
{
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'))
        return true;
    return QByteArrayView("-._~!$&'()*+,=:@/").contains(char(c));
}

QByteArray glibUri(const QString& absolutePath)
{
    QByteArray bytes = QFile::encodeName(absolutePath);
    if (!bytes.startsWith('/'))
        bytes.prepend('/'); // a drive letter path becomes file:///C:/...
    QByteArray uri = "file://";
    uri.reserve(uri.size() + bytes.size() * 3);
    static constexpr char Hex[] = "0123456789ABCDEF";
    for (const char byte : std::as_const(bytes)) {
        const auto c = uchar(byte);
        if (keptByGlib(c)) {
            uri += char(c);
        } else {
            uri += '%';
            uri += Hex[c >> 4];
            uri += Hex[c & 15];
        }
    }
    return uri;
}

QByteArray qtUri(const QString& absolutePath)
{
    return QUrl::fromLocalFile(absolutePath).toEncoded();
}

QString hashedName(const QByteArray& uri)
{
    return QString::fromLatin1(QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex()) +
           QStringLiteral(".png");
}

QString failureFolder()
{
    return ThumbCache::root() + QStringLiteral("/fail/lumbra-" LUMBRA_VERSION);
}

QByteArray chunk(const char* type, const QByteArray& data)
{
    QByteArray out(4, Qt::Uninitialized);
    qToBigEndian<quint32>(quint32(data.size()), out.data());
    out += QByteArray(type, 4);
    out += data;
    uLong crc = crc32(0, reinterpret_cast<const Bytef*>(out.constData() + 4), 4);
    crc = crc32(crc, reinterpret_cast<const Bytef*>(data.constData()), uInt(data.size()));
    QByteArray tail(4, Qt::Uninitialized);
    qToBigEndian<quint32>(quint32(crc), tail.data());
    return out + tail;
}

// Walks the chunks of a PNG: calls visit(type, data, offset of the chunk) until it returns
// false or the data ends; false when the data is not a well-formed PNG up to there.
template <typename Visit> bool forEachChunk(const QByteArray& png, Visit visit)
{
    if (!png.startsWith(PngSignature))
        return false;
    qsizetype at = PngSignature.size();
    while (at + 12 <= png.size()) {
        const quint32 length = qFromBigEndian<quint32>(png.constData() + at);
        if (length > quint32(png.size() - at - 12))
            return false;
        const QByteArrayView type(png.constData() + at + 4, 4);
        if (!visit(type, QByteArrayView(png.constData() + at + 8, length), at))
            return true;
        at += 12 + qsizetype(length);
    }
    return true;
}

std::optional<QByteArray> inflated(QByteArrayView compressed)
{
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK)
        return std::nullopt;
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(compressed.data()));
    stream.avail_in = uInt(compressed.size());
    QByteArray out;
    std::array<char, 4096> buffer;
    int status = Z_OK;
    while (status == Z_OK && out.size() <= MaxTextBytes) {
        stream.next_out = reinterpret_cast<Bytef*>(buffer.data());
        stream.avail_out = uInt(buffer.size());
        status = inflate(&stream, Z_NO_FLUSH);
        out.append(buffer.data(), qsizetype(buffer.size() - stream.avail_out));
    }
    inflateEnd(&stream);
    if (status != Z_STREAM_END)
        return std::nullopt;
    return out;
}

// The text chunks of a thumbnail: plain tEXt, and zTXt as Qt-based programs write long values.
std::optional<TextChunks> readText(const QByteArray& png)
{
    TextChunks texts;
    const bool wellFormed =
        forEachChunk(png, [&](QByteArrayView type, QByteArrayView data, qsizetype) {
            if (type == "IEND")
                return false;
            const qsizetype split = data.indexOf('\0');
            if (split <= 0 || (type != "tEXt" && type != "zTXt"))
                return true;
            QByteArray key = data.first(split).toByteArray();
            if (type == "tEXt") {
                texts.emplace_back(std::move(key), data.sliced(split + 1).toByteArray());
            } else if (split + 2 <= data.size() && data[split + 1] == 0) {
                if (auto value = inflated(data.sliced(split + 2)))
                    texts.emplace_back(std::move(key), std::move(*value));
            }
            return true;
        });
    if (!wellFormed)
        return std::nullopt;
    return texts;
}

QByteArray textValue(const TextChunks& texts, QByteArrayView key)
{
    for (const auto& [name, value] : texts) {
        if (name == key)
            return value;
    }
    return {};
}

std::optional<qint64> number(const QByteArray& text)
{
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

// Fresh when it names the file in one of the two spellings and still matches its facts.
bool describes(const TextChunks& texts, const QString& absolutePath, const FileFacts& facts)
{
    const QByteArray uri = textValue(texts, "Thumb::URI");
    if (uri.isEmpty() || (uri != glibUri(absolutePath) && uri != qtUri(absolutePath)))
        return false;
    if (number(textValue(texts, "Thumb::MTime")) != facts.modifiedSecs)
        return false;
    const QByteArray size = textValue(texts, "Thumb::Size");
    return size.isEmpty() || number(size) == facts.size;
}

TextChunks textsFor(const QString& absolutePath, const FileFacts& facts, const QSize& naturalSize)
{
    TextChunks texts{{"Thumb::URI", glibUri(absolutePath)},
                     {"Thumb::MTime", QByteArray::number(facts.modifiedSecs)},
                     {"Thumb::Size", QByteArray::number(facts.size)},
                     {"Software", "Lumbra"}};
    if (naturalSize.isValid()) {
        texts.emplace_back("Thumb::Image::Width", QByteArray::number(naturalSize.width()));
        texts.emplace_back("Thumb::Image::Height", QByteArray::number(naturalSize.height()));
    }
    return texts;
}

// Qt's PNG writer turns long values into zTXt and splits keys at "::", which GLib rejects:
// the text goes in as plain tEXt chunks right before the image data.
QByteArray encodePng(const QImage& image, const TextChunks& texts)
{
    // A bare view of the pixels, so text the source picture carried is not written again.
    const QImage pixels(image.constBits(), image.width(), image.height(), image.bytesPerLine(),
                        image.format());
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    writer.setCompression(PngCompression);
    if (!writer.write(pixels))
        return {};
    qsizetype firstData = -1;
    forEachChunk(png, [&](QByteArrayView type, QByteArrayView, qsizetype at) {
        if (type != "IDAT")
            return true;
        firstData = at;
        return false;
    });
    if (firstData < 0)
        return {};
    QByteArray textData;
    for (const auto& [key, value] : texts)
        textData += chunk("tEXt", key + '\0' + value);
    return png.insert(firstData, textData);
}

// The cache's folders are private to the user, as freedesktop.org asks.
bool ensureFolder(const QString& folder)
{
    if (QFileInfo(folder).isDir())
        return true;
    const QString parent = QFileInfo(folder).path();
    const bool parentReady =
        folder.startsWith(ThumbCache::root() + u'/') ? ensureFolder(parent) : QDir().mkpath(parent);
    if (!parentReady)
        return false;
    // Another thread may make it at the same moment.
    return QDir().mkdir(folder, FolderPermissions) || QFileInfo(folder).isDir();
}

bool save(const QString& target, const QByteArray& png)
{
    if (png.isEmpty() || !ensureFolder(QFileInfo(target).path()))
        return false;
    // Written beside its place and renamed over it, so readers never see half a file. No sync
    // to disk (QSaveFile's would cost a disk flush per thumbnail): a thumbnail torn by a crash
    // fails its PNG check and is simply made again.
    QTemporaryFile file(target + QStringLiteral(".XXXXXX"));
    if (!file.open() || file.write(png) != png.size() || !file.flush())
        return false;
    file.setPermissions(FilePermissions);
    file.close();
    const QByteArray from = QFile::encodeName(file.fileName());
    const QByteArray to = QFile::encodeName(target);
    if (std::rename(from.constData(), to.constData()) != 0) {
        // Where rename does not replace (Windows), a stale thumbnail makes way first.
        QFile::remove(target);
        if (std::rename(from.constData(), to.constData()) != 0)
            return false;
    }
    file.setAutoRemove(false);
    return true;
}

std::optional<QByteArray> readSmallFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > MaxThumbnailBytes)
        return std::nullopt;
    return file.readAll();
}

// The thumbnail at candidate, when it is fresh for the file and big enough for box.
ThumbCache::Thumbnail readCandidate(const QString& candidate, const QString& absolutePath,
                                    const FileFacts& facts, const QSize& box)
{
    const auto png = readSmallFile(candidate);
    if (!png)
        return {};
    const auto texts = readText(*png);
    if (!texts || !describes(*texts, absolutePath, facts))
        return {};
    ThumbCache::Thumbnail thumbnail;
    const auto width = number(textValue(*texts, "Thumb::Image::Width"));
    const auto height = number(textValue(*texts, "Thumb::Image::Height"));
    if (width && height && *width > 0 && *height > 0)
        thumbnail.naturalSize =
            QSize(int(qMin<qint64>(*width, INT_MAX)), int(qMin<qint64>(*height, INT_MAX)));
    if (!thumbnail.image.loadFromData(*png, "png"))
        return {};
    if (thumbnail.naturalSize.isValid()) {
        // Another program's thumbnail may be smaller than the flavour's size; one pixel of
        // rounding apart still counts as the size needed.
        const QSize needed = PictureLoader::FitSize(thumbnail.naturalSize, box, false);
        const QSize stored = thumbnail.image.size();
        if (qMax(stored.width(), stored.height()) + 1 < qMax(needed.width(), needed.height()))
            return {};
    }
    return thumbnail;
}

} // namespace

namespace ThumbCache {

int edge(Flavour flavour)
{
    switch (flavour) {
    case Flavour::Normal:
        return 128;
    case Flavour::Large:
        return 256;
    case Flavour::XLarge:
        return 512;
    }
    return 128;
}

QString folderName(Flavour flavour)
{
    switch (flavour) {
    case Flavour::Normal:
        return QStringLiteral("normal");
    case Flavour::Large:
        return QStringLiteral("large");
    case Flavour::XLarge:
        return QStringLiteral("x-large");
    }
    return QStringLiteral("normal");
}

Flavour flavourFor(int deviceBox)
{
    if (deviceBox <= edge(Flavour::Normal))
        return Flavour::Normal;
    if (deviceBox <= edge(Flavour::Large))
        return Flavour::Large;
    return Flavour::XLarge;
}

QString root()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/thumbnails");
}

QByteArray fileUri(const QString& path)
{
    return glibUri(absolute(path));
}

QString thumbnailPath(const QString& path, Flavour flavour)
{
    return root() + u'/' + folderName(flavour) + u'/' + hashedName(fileUri(path));
}

QString failurePath(const QString& path)
{
    return failureFolder() + u'/' + hashedName(fileUri(path));
}

bool isInsideCache(const QString& path)
{
    return absolute(path).startsWith(root() + u'/');
}

Thumbnail read(const QString& path, const FileFacts& facts, const QSize& box)
{
    const QString file = absolute(path);
    const QString glibName = hashedName(glibUri(file));
    const QString qtName = hashedName(qtUri(file));
    const int wanted = int(flavourFor(qMax(box.width(), box.height())));
    for (int flavour = wanted; flavour <= int(Flavour::XLarge); ++flavour) {
        const QString folder = root() + u'/' + folderName(Flavour(flavour)) + u'/';
        for (const QString& name : {glibName, qtName}) {
            Thumbnail thumbnail = readCandidate(folder + name, file, facts, box);
            if (!thumbnail.image.isNull())
                return thumbnail;
            if (qtName == glibName)
                break;
        }
    }
    return {};
}

bool write(const QString& path, const FileFacts& facts, const QImage& picture,
           const QSize& naturalSize, Flavour flavour)
{
    if (picture.isNull() || isInsideCache(path))
        return false;
    const QSize box(edge(flavour), edge(flavour));
    const QSize target = PictureLoader::FitSize(picture.size(), box, false);
    const QImage scaled = target == picture.size() ? picture
                                                   : PictureLoader::SmoothScaled(picture, target);
    const QString file = absolute(path);
    return save(thumbnailPath(file, flavour),
                encodePng(scaled, textsFor(file, facts, naturalSize)));
}

bool hasFailure(const QString& path, const FileFacts& facts)
{
    const QString file = absolute(path);
    const auto png = readSmallFile(failurePath(file));
    if (!png)
        return false;
    const auto texts = readText(*png);
    return texts && describes(*texts, file, facts);
}

bool writeFailure(const QString& path, const FileFacts& facts)
{
    if (isInsideCache(path))
        return false;
    QImage pixel(1, 1, QImage::Format_ARGB32);
    pixel.fill(Qt::transparent);
    const QString file = absolute(path);
    return save(failurePath(file), encodePng(pixel, textsFor(file, facts, {})));
}

} // namespace ThumbCache
