#pragma once

#include <QString>

class QWidget;
class mdiMain;

// "Save As..." and "Open": a copy of the current picture under a new name, and pictures
// chosen in the open dialog.
namespace PictureFiles {

inline const QString SaveFilter = QStringLiteral("Bitmap Files|*.bmp|");
inline const QString OpenFilter =
    QStringLiteral("All Pictures |*.jpg;*.gif;*.bmp;*.ico|Bitmap Files|*.bmp|JPEG Interchange ") +
    QStringLiteral("Format|*.jpg;*.jpeg|Graphic Interchange Format (GIF)|*.Gif|Icon Files|*.ico");
inline const QString SaveFailedTitle = QStringLiteral("Lumbra - Save Failed");
inline const QString SaveFailedText =
    QStringLiteral("I'm afraid there was a problem saving the \rimage.  \r\rWould you like to give "
                   "it another try?");

// The name the save dialog proposes: the source's file name, without its last four
// characters when the fourth from the end is a dot, upper-cased, then ".BMP".
QString ProposedName(const QString& source);

// Copies path (the current picture when empty) byte for byte to a file chosen in the save
// dialog: the picture keeps its own format under the new name. A failed copy offers another
// try; cancelling says nothing.
void SaveAsBitmap(QWidget* parent, const QString& path);

// The open dialog, several files at once: one file opens in a picture window, several show
// in the gallery as a collection, in the dialog's order.
void OpenPictures(mdiMain* main);

} // namespace PictureFiles
