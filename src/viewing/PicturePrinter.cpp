#include "viewing/PicturePrinter.h"

#include "common/AppGlobals.h"
#include "common/MsgBox.h"
#include "common/Utilities.h"
#include "imaging/PictureLoader.h"
#include "viewing/PageSetup.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QScopeGuard>

namespace {

constexpr double InchesPerMetre = 1 / 0.0254;

const QString& title()
{
    static const QString text = QStringLiteral("Lumbra");
    return text;
}

// Qt gives a picture whose file names no density the one it assumes for the screen; such a
// picture prints at the default size rather than at whatever the screen happens to be.
QSizeF densityOf(const QImage& image)
{
    const QImage unsaid(1, 1, QImage::Format_RGB32);
    if (image.dotsPerMeterX() == unsaid.dotsPerMeterX() &&
        image.dotsPerMeterY() == unsaid.dotsPerMeterY())
        return {};
    return QSizeF(image.dotsPerMeterX(), image.dotsPerMeterY());
}

void tellUnprintable(QWidget* parent, const QString& path, const QString& reason)
{
    MsgBox::Tell(parent, title(), Utilities::FileNameOf(path) + u'\r' + reason,
                 QMessageBox::Warning);
}

} // namespace

namespace PicturePrinter {

QRectF TargetRect(const QSize& pixels, const QSizeF& dotsPerMetre, const QRectF& page,
                  double deviceDpi, const PageSetup& setup)
{
    if (pixels.isEmpty() || page.isEmpty())
        return {page.topLeft(), QSizeF()};
    const auto length = [deviceDpi](int count, double dpm) {
        const double dpi = dpm > 0 ? dpm / InchesPerMetre : DefaultDpi;
        return count / dpi * deviceDpi;
    };
    QSizeF size(length(pixels.width(), dotsPerMetre.width()),
                length(pixels.height(), dotsPerMetre.height()));
    if (setup.Stretch() || size.width() > page.width() || size.height() > page.height())
        size.scale(page.size(), Qt::KeepAspectRatio);
    QPointF topLeft = page.topLeft();
    if (setup.Center)
        topLeft += QPointF(page.width() - size.width(), page.height() - size.height()) / 2;
    return {topLeft, size};
}

void ApplySetup(QPrinter& printer, const PageSetup& setup)
{
    printer.setPageOrientation(setup.Portrait() ? QPageLayout::Portrait : QPageLayout::Landscape);
    printer.setPaperSource(setup.PaperSource());
    printer.setCopyCount(setup.Copies());
}

bool PrintPicture(const QString& path, QPrinter& printer, const PageSetup& setup, QString* reason)
{
    const auto fail = [reason](const QString& why) {
        if (reason)
            *reason = why;
        return false;
    };
    const int dpi = printer.resolution();
    // The painter's origin is the printable area's corner, in full-page mode and otherwise.
    const QRectF page(QPointF(), printer.pageLayout().paintRectPixels(dpi).size());
    // Never decoded larger than the printable area can show.
    const LoadedPicture picture = PictureLoader::Load(path, page.size().toSize());
    if (picture.isNull())
        return fail(picture.reason);
    const QRectF target =
        TargetRect(picture.naturalSize, densityOf(picture.image), page, dpi, setup);

    QPainter painter;
    if (!painter.begin(&printer))
        return fail(QStringLiteral("The printer could not be started."));
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // A PDF file, for one, holds a single copy unless each copy is printed as a page.
    const int pages = printer.supportsMultipleCopies() ? 1 : printer.copyCount();
    for (int i = 0; i < pages; ++i) {
        if (i > 0 && !printer.newPage())
            return fail(QStringLiteral("The printer stopped before all copies were printed."));
        painter.drawImage(target, picture.image);
    }
    if (!painter.end())
        return fail(QStringLiteral("The printer could not finish the picture."));
    return true;
}

bool PrintFile(const QString& path, QPrinter& printer, const PageSetup& setup, QString* reason)
{
    ApplySetup(printer, setup);
    return PrintPicture(path, printer, setup, reason);
}

void PrintCurrent(QWidget* parent)
{
    const QString path = Globals().CurrentPicture;
    if (path.isEmpty()) {
        MsgBox::Tell(parent, title(),
                     QStringLiteral("There is no picture to print.\rSelect a picture first."));
        return;
    }
    // Checked before the print dialog, so nobody chooses a printer for a file that is gone.
    QString reason;
    if (!PictureLoader::NaturalSize(path, &reason).isValid()) {
        tellUnprintable(parent, path, reason);
        return;
    }

    const PageSetup& setup = PageSetup::Current();
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(Utilities::FileNameOf(path));
    ApplySetup(printer, setup);
    QPrintDialog dialog(&printer, parent);
    dialog.setOption(QAbstractPrintDialog::PrintToFile, true);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
    if (dialog.exec() != QDialog::Accepted)
        return;

    bool printed = false;
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        const auto restore = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
        printed = PrintPicture(path, printer, setup, &reason);
    }
    if (!printed)
        tellUnprintable(parent, path, reason);
}

} // namespace PicturePrinter
