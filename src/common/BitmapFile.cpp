#include "common/BitmapFile.h"

#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QSaveFile>

namespace BitmapFile {

namespace {

bool fail(QString* reason, const QString& text)
{
    if (reason)
        *reason = text;
    return false;
}

} // namespace

bool Save(const QImage& image, const QString& path, QString* reason)
{
    if (image.isNull())
        return fail(reason, QStringLiteral("there is no picture to write"));

    // Qt writes 32-bit images as 24-bit BI_RGB; palette images would stay 8-bit, and their
    // transparent entries would come out as whatever colour they happen to hold.
    QImage flat;
    if (image.hasAlphaChannel()) {
        // Pixel for pixel: a screen grab of a high-density screen says it is "smaller".
        QImage source = image;
        source.setDevicePixelRatio(1.0);
        flat = QImage(source.size(), QImage::Format_RGB32);
        flat.setDotsPerMeterX(source.dotsPerMeterX());
        flat.setDotsPerMeterY(source.dotsPerMeterY());
        flat.fill(Qt::white);
        QPainter painter(&flat);
        painter.drawImage(0, 0, source);
    } else {
        flat = image.convertToFormat(QImage::Format_RGB32);
    }

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fail(reason, file.errorString());
    QImageWriter writer(&file, "bmp");
    if (!writer.write(flat)) {
        file.cancelWriting();
        return fail(reason, writer.errorString());
    }
    if (!file.commit())
        return fail(reason, file.errorString());
    return true;
}

} // namespace BitmapFile
