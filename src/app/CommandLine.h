#pragma once

#include <QString>
#include <QStringList>

// lumbra [FOLDER | PICTURE...], --help, --version.
struct CommandLine
{
    enum Action { Run, Help, Version, Error };

    Action action = Run;
    QString folder;        // the folder to show in the gallery
    QStringList pictures;  // or the pictures to show
    QString message;       // what was wrong, for Error

    // arguments without the program's name; sampleFolder is shown when nothing is given.
    static CommandLine Parse(const QStringList& arguments, const QString& sampleFolder);
    static QString HelpText();
    // The bundled sample pictures beside the program, or where the install put them.
    static QString SampleFolder();
};
