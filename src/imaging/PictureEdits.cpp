#include "imaging/PictureEdits.h"

#include "imaging/PictureLoader.h"

#include <QFileInfo>
#include <QImageWriter>
#include <QPainter>
#include <QSaveFile>
#include <QTransform>

#include <cmath>

void PictureEdits::UndoLast()
{
    if (!m_edits.empty())
        m_edits.pop_back();
}

QImage PictureEdits::Apply(const QImage& original) const
{
    QImage image = original;
    for (const Edit& edit : m_edits) {
        switch (edit.kind) {
        case Kind::RotateLeft:
            image = image.transformed(QTransform().rotate(-90));
            break;
        case Kind::RotateRight:
            image = image.transformed(QTransform().rotate(90));
            break;
        case Kind::FlipHorizontal:
            image = image.mirrored(true, false);
            break;
        case Kind::FlipVertical:
            image = image.mirrored(false, true);
            break;
        case Kind::Resize:
            image = PictureLoader::SmoothScaled(image, edit.size);
            break;
        }
    }
    return image;
}

QSize PictureEdits::ResultSize(const QSize& original) const
{
    QSize size = original;
    for (const Edit& edit : m_edits) {
        if (edit.kind == Kind::RotateLeft || edit.kind == Kind::RotateRight)
            size.transpose();
        else if (edit.kind == Kind::Resize)
            size = edit.size;
    }
    return size;
}

int PictureEdits::HeightFor(const QSize& size, int width)
{
    if (size.width() <= 0)
        return 1;
    return qMax(1, int(std::lround(double(width) * size.height() / size.width())));
}

int PictureEdits::WidthFor(const QSize& size, int height)
{
    return HeightFor(size.transposed(), height);
}

namespace PictureSave {

QByteArray FormatFor(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("bmp"))
        return "bmp";
    if (suffix == QLatin1String("jpg") || suffix == QLatin1String("jpeg"))
        return "jpeg";
    if (suffix == QLatin1String("png"))
        return "png";
    if (suffix == QLatin1String("tif") || suffix == QLatin1String("tiff"))
        return "tiff";
    return {};
}

bool Save(const QImage& image, const QString& path, int quality, QString* reason)
{
    const auto fail = [reason](const QString& why) {
        if (reason)
            *reason = why;
        return false;
    };
    const QByteArray format = FormatFor(path);
    if (format.isEmpty())
        return fail(QStringLiteral("Pictures are saved as .bmp, .jpg, .png or .tif files."));
    // A half-written file never takes the place of a good one.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fail(file.errorString());
    QImageWriter writer(&file, format);
    if (format == "jpeg")
        writer.setQuality(qBound(1, quality, 100));
    // JPEG keeps no transparency: see-through parts come out white, not black.
    QImage out = image;
    if (format == "jpeg" && image.hasAlphaChannel()) {
        out = QImage(image.size(), QImage::Format_RGB32);
        out.fill(Qt::white);
        QPainter painter(&out);
        painter.drawImage(0, 0, image);
    }
    if (!writer.write(out)) {
        file.cancelWriting();
        return fail(writer.errorString());
    }
    if (!file.commit())
        return fail(file.errorString());
    return true;
}

} // namespace PictureSave
