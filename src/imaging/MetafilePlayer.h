#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

// The program's own Windows Metafile player: QPainter playback of the common GDI records of
// placeable and plain metafiles. Hostile files give a null picture and a reason, never a
// crash, a hang or unbounded memory.
namespace MetafilePlayer {

// True when the first bytes are a placeable header or a plain metafile header.
bool IsMetafile(const QByteArray& head);

// The size in pixels the picture asks for: placeable files from their bounding box at 96 dpi,
// plain files from their window extent or, failing that, from the extent of what they draw.
QSize NaturalSize(const QByteArray& data, QString* reason = nullptr);

// The picture on white, at its natural size when box is empty, otherwise fitted into box
// keeping its proportions. Null, with a reason, when nothing could be played.
QImage Render(const QByteArray& data, const QSize& box, QString* reason = nullptr);

} // namespace MetafilePlayer
