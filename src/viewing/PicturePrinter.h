#pragma once

#include <QRectF>
#include <QSize>
#include <QSizeF>
#include <QString>

class QPrinter;
class QWidget;
struct PageSetup;

// Prints one picture per page as the page setup says: orientation, the picture at its own size
// or stretched to fit, centred or at the top left, the paper source and the copies.
namespace PicturePrinter {

// Pictures that do not say how large they are print at this many dots per inch.
constexpr double DefaultDpi = 96;

// Where a picture of pixels goes in the printable area page, on a device of deviceDpi dots per
// inch: at its own physical size (from dotsPerMetre; zero or less where the file does not say)
// or stretched to fit, keeping its proportions either way. A picture larger than the area is
// fitted into it, never cut. Centred when setup.Center, else at the area's top left.
QRectF TargetRect(const QSize& pixels, const QSizeF& dotsPerMetre, const QRectF& page,
                  double deviceDpi, const PageSetup& setup);

// Orientation, paper source and number of copies from setup.
void ApplySetup(QPrinter& printer, const PageSetup& setup);

// Prints the picture with printer's settings as they stand, placed as setup says; one page per
// copy when the printer cannot make copies itself. False, with a reason a user understands,
// when the picture cannot be read or the printer cannot start.
bool PrintPicture(const QString& path, QPrinter& printer, const PageSetup& setup,
                  QString* reason = nullptr);

// ApplySetup, then PrintPicture.
bool PrintFile(const QString& path, QPrinter& printer, const PageSetup& setup,
               QString* reason = nullptr);

// The current picture through the print dialog (which also offers printing to a PDF file),
// with the page setup's choices filled in. Tells the user when there is nothing to print or
// the picture cannot be read.
void PrintCurrent(QWidget* parent);

} // namespace PicturePrinter
