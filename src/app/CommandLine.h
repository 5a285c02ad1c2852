#pragma once

#include <QString>
#include <QStringList>

// lumbra [FOLDER | PICTURE...], --help, --version.
struct CommandLine
{
    enum Action { Run, Help, Version, Error };
    // Where the arguments are shown: the gallery on a folder, the gallery holding the given
    // pictures as a collection, or one picture in its picture window ("Open With").
    enum Target { GalleryFolder, GalleryCollection, PictureWindow };

    Action action = Run;
    QString folder;        // the folder to show in the gallery
    QStringList pictures;  // or the pictures to show
    QString message;       // what was wrong, for Error

    // arguments without the program's name; sampleFolder is shown when nothing is given.
    Target target() const
    {
        return !folder.isEmpty()       ? GalleryFolder
               : pictures.size() == 1 ? PictureWindow
                                      : GalleryCollection;
    }

    static CommandLine Parse(const QStringList& arguments, const QString& sampleFolder);
    static QString HelpText();
    // The bundled sample pictures beside the program, or where the install put them.
    static QString SampleFolder();
};
