#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

// "Zip My Picture(s)": the chosen pictures written into one .zip archive.
namespace ZipPictures {

QString Title();

// The names the pictures get inside the archive: their file names, with "Copy Of " in front
// of a name an earlier picture already took.
QStringList EntryNames(const QStringList& files);

// Writes files into a new archive at zipPath, replacing a file there only once the archive is
// complete. progress (when given) hears the share done, 0..1, and cancels by returning false.
// A failed or cancelled write leaves whatever was at zipPath as it was, and no partial file.
bool Write(const QStringList& files, const QString& zipPath,
           const std::function<bool(double done)>& progress = {}, QString* reason = nullptr);

// Asks where to save the archive (never replacing a file without asking), then writes it
// with a progress dialog the user can cancel. Does nothing without files.
void Run(QWidget* parent, const QStringList& files);

} // namespace ZipPictures
