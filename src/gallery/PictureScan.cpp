#include "gallery/PictureScan.h"

#include "app/SettingsStore.h"
#include "common/Utilities.h"
#include "gallery/FilesFound.h"

#include <QCoreApplication>
#include <QThread>

namespace PictureScan {

QStringList patterns(bool extraTypes)
{
    QStringList list{QStringLiteral("*.bmp"), QStringLiteral("*.gif"), QStringLiteral("*.jpg"),
                     QStringLiteral("*.dib"), QStringLiteral("*.tif"), QStringLiteral("*.ico"),
                     QStringLiteral("*.cur"), QStringLiteral("*.wmf"), QStringLiteral("*.jpeg"),
                     QStringLiteral("*.tiff")};
    if (extraTypes)
        list << QStringLiteral("*.png") << QStringLiteral("*.webp");
    return list;
}

QStringList patterns()
{
    bool extraTypes = true;
    SettingsStore::global().readInto(Keys::Extra_Types, extraTypes);
    return patterns(extraTypes);
}

int scanPath(FilesFound& files, const QString& path,
             const std::function<void(const QString&)>& showStatus)
{
    // One turn of the event loop before a possibly long scan keeps the window painted; a scan
    // on a worker thread leaves the window's thread alone.
    if (QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread())
        QCoreApplication::processEvents();
    if (showStatus)
        showStatus(Utilities::SpecialFolderName(path));
    QString target = path;
    const int namesAFile = files.SetPath(target);
    if (namesAFile)
        files.AddAllFiles(Utilities::FileNameOf(target));
    else
        files.AddAllFiles(patterns());
    return namesAFile;
}

} // namespace PictureScan
