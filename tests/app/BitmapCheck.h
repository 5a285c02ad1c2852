#pragma once

#include <QFile>
#include <QSize>
#include <QStringList>
#include <QtEndian>

// What is wrong with the file as an uncompressed 24-bit BMP of the given size; empty when
// nothing is. Read from the bytes, so a lenient reader cannot hide a bad header.
inline QString BitmapProblem(const QString& path, const QSize& size)
{
    QFile file(path);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    if (bytes.size() < 54 || !bytes.startsWith("BM"))
        return QStringLiteral("no BMP header");
    const auto u32 = [&](int at) { return qFromLittleEndian<quint32>(bytes.constData() + at); };
    const qint32 width = qint32(u32(18)), height = qint32(u32(22));
    QStringList problems;
    if (u32(2) != quint32(bytes.size()))
        problems << QStringLiteral("size field %1, file %2").arg(u32(2)).arg(bytes.size());
    if (qFromLittleEndian<quint16>(bytes.constData() + 28) != 24 || u32(30) != 0)
        problems << QStringLiteral("not 24 bits uncompressed");
    if (QSize(width, qAbs(height)) != size)
        problems << QStringLiteral("%1 x %2 pixels").arg(width).arg(height);
    if (u32(10) + (qint64(width) * 3 + 3) / 4 * 4 * qAbs(height) != bytes.size())
        problems << QStringLiteral("pixel data does not fill the file");
    return problems.join(QStringLiteral("; "));
}
