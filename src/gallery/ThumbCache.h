#pragma once

#include "gallery/FolderScan.h"

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

// The per-user thumbnail cache shared with file managers (the freedesktop.org layout):
// $XDG_CACHE_HOME/thumbnails/normal|large|x-large/<MD5 of the file URI>.png, each PNG carrying
// the source's URI, modification time and size in tEXt chunks. A thumbnail whose chunks no
// longer match the file is stale and counts as missing. Every function is safe on any thread.
namespace ThumbCache {

enum class Flavour
{
    Normal,
    Large,
    XLarge
};

// Longest edge of the flavour's thumbnails: 128, 256 or 512 pixels.
int edge(Flavour flavour);
// The folder of the flavour under root(): "normal", "large", "x-large".
QString folderName(Flavour flavour);
// The smallest flavour whose thumbnails cover a box of deviceBox device pixels.
Flavour flavourFor(int deviceBox);

QString root();
// The file's URI spelled as GLib spells it; its MD5 names the thumbnail.
QByteArray fileUri(const QString& path);
QString thumbnailPath(const QString& path, Flavour flavour);
QString failurePath(const QString& path);
// Pictures in the cache itself get no thumbnails, or browsing it would feed it.
bool isInsideCache(const QString& path);

struct Thumbnail
{
    QImage image;      // null when no valid thumbnail serves the box
    QSize naturalSize; // the source picture's size, when the thumbnail records it
};

// The valid thumbnail of the flavour that box needs or of a larger one, in GLib's spelling or
// the one KDE programs use. A thumbnail that records a natural size must cover box's fit of it.
Thumbnail read(const QString& path, const FileFacts& facts, const QSize& box);
// Stores picture (decoded at or above the flavour's size; scaled down here when larger).
bool write(const QString& path, const FileFacts& facts, const QImage& picture,
           const QSize& naturalSize, Flavour flavour);

// A marker that the file could not be decoded as it is now (same mtime and size).
bool hasFailure(const QString& path, const FileFacts& facts);
bool writeFailure(const QString& path, const FileFacts& facts);

} // namespace ThumbCache
