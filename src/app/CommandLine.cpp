#include "app/CommandLine.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

CommandLine CommandLine::Parse(const QStringList& arguments, const QString& sampleFolder)
{
    CommandLine result;
    QStringList paths;
    bool optionsEnded = false;
    for (const QString& argument : arguments) {
        if (!optionsEnded && argument == QLatin1String("--")) {
            optionsEnded = true;
        } else if (!optionsEnded && (argument == QLatin1String("--help") || argument == QLatin1String("-h"))) {
            result.action = Help;
            return result;
        } else if (!optionsEnded && argument == QLatin1String("--version")) {
            result.action = Version;
            return result;
        } else if (!optionsEnded && argument.startsWith(u'-') && argument.size() > 1) {
            result.action = Error;
            result.message = QStringLiteral("unknown option: %1").arg(argument);
            return result;
        } else {
            paths.append(argument);
        }
    }

    if (paths.isEmpty()) {
        result.folder = sampleFolder;
        return result;
    }
    for (const QString& path : paths) {
        const QFileInfo info(path);
        if (!info.exists()) {
            result.action = Error;
            result.message = QStringLiteral("no such file or folder: %1").arg(path);
            return result;
        }
        if (info.isDir() && paths.size() > 1) {
            result.action = Error;
            result.message = QStringLiteral("give one folder, or one or more pictures: %1 is a folder").arg(path);
            return result;
        }
        if (!info.isReadable()) {
            result.action = Error;
            result.message = QStringLiteral("cannot read: %1").arg(path);
            return result;
        }
    }
    const QFileInfo first(paths.first());
    if (first.isDir())
        result.folder = first.absoluteFilePath();
    else
        for (const QString& path : paths)
            result.pictures.append(QFileInfo(path).absoluteFilePath());
    return result;
}

QString CommandLine::HelpText()
{
    return QStringLiteral(
        "Usage: lumbra [FOLDER | PICTURE...]\n"
        "Organise pictures: a gallery of thumbnails, a picture browser, picture windows,\n"
        "slideshows, wallpaper and screenshots.\n"
        "\n"
        "  FOLDER       show the pictures of this folder in the gallery\n"
        "  PICTURE      show this picture in a picture window\n"
        "  PICTURE...   show these pictures together in the gallery\n"
        "  (nothing)    show the bundled sample pictures\n"
        "\n"
        "  -h, --help   show this help and exit\n"
        "  --version    show the version and exit\n"
        "\n"
        "Settings: $XDG_CONFIG_HOME/Lumbra/Lumbra.ini. Program folder: $LUMBRA_HOME when set.\n");
}

QString CommandLine::SampleFolder()
{
    const QDir exe(QCoreApplication::applicationDirPath());
    for (const QString& candidate : {QStringLiteral("samples"), QStringLiteral("../share/lumbra/samples")})
        if (QFileInfo(exe.filePath(candidate)).isDir())
            return QDir::cleanPath(exe.filePath(candidate));
    return {};
}
