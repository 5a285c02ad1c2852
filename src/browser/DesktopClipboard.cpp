#include "browser/DesktopClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include <memory>

namespace DesktopClipboard {

namespace {

const QString GnomeFormat = QStringLiteral("x-special/gnome-copied-files");
const QString KdeCutFormat = QStringLiteral("application/x-kde-cutselection");
const QByteArray NautilusMarker = "x-special/nautilus-clipboard";

// "copy" or "cut" on the first line, one URI a line after it; blank lines are ignored.
std::optional<Contents> parseGnome(const QByteArray& text)
{
    QList<QByteArray> lines = text.split('\n');
    for (QByteArray& line : lines)
        line = line.trimmed();
    lines.removeAll(QByteArray());
    if (lines.isEmpty() || (lines.first() != "copy" && lines.first() != "cut"))
        return std::nullopt;
    Contents contents;
    contents.cut = lines.first() == "cut";
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const QUrl url = QUrl::fromEncoded(lines[i]);
        if (url.isLocalFile())
            contents.paths << url.toLocalFile();
    }
    if (contents.paths.isEmpty())
        return std::nullopt;
    return contents;
}

} // namespace

std::unique_ptr<QMimeData> Pack(const QStringList& paths, bool cut)
{
    QList<QUrl> urls;
    QByteArrayList encoded;
    for (const QString& path : paths) {
        urls << QUrl::fromLocalFile(path);
        encoded << urls.last().toEncoded();
    }
    auto data = std::make_unique<QMimeData>();
    data->setUrls(urls);
    // No newline after the last URI: a trailing one can crash Nautilus.
    data->setData(GnomeFormat, (cut ? "cut\n" : "copy\n") + encoded.join('\n'));
    data->setData(KdeCutFormat, cut ? "1" : "0");
    data->setText(paths.join(u'\n'));
    return data;
}

void Put(const QStringList& paths, bool cut)
{
    QGuiApplication::clipboard()->setMimeData(Pack(paths, cut).release());
}

std::optional<Contents> Read(const QMimeData* data)
{
    if (!data)
        return std::nullopt;
    if (data->hasFormat(GnomeFormat))
        return parseGnome(data->data(GnomeFormat));
    const QByteArray text = data->data(QStringLiteral("text/plain"));
    if (text.startsWith(NautilusMarker))
        return parseGnome(text.mid(NautilusMarker.size()));
    if (!data->hasUrls())
        return std::nullopt;
    Contents contents;
    contents.cut = data->data(KdeCutFormat).trimmed() == "1";
    for (const QUrl& url : data->urls()) {
        if (url.isLocalFile())
            contents.paths << url.toLocalFile();
    }
    if (contents.paths.isEmpty())
        return std::nullopt;
    return contents;
}

void ClearAfterCutPaste()
{
    QClipboard* clipboard = QGuiApplication::clipboard();
    const auto contents = Read(clipboard->mimeData());
    if (contents && contents->cut)
        clipboard->clear();
}

} // namespace DesktopClipboard
