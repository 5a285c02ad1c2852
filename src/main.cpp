#include "app/ChildOps.h"
#include "app/CommandLine.h"
#include "app/StartUp.h"
#include "app/frmSplash.h"
#include "app/mdiMain.h"
#include "app/MenuTable.h"
#include "common/AppGlobals.h"
#include "viewing/PictureOpener.h"

#include <QApplication>
#include <QIcon>
#include <QTextStream>

#include <cstdio>

int main(int argc, char** argv)
{
    // Answer --help, --version and bad arguments before any window system is needed.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    {
        QCoreApplication probe(argc, argv);
        const CommandLine line = CommandLine::Parse(arguments, CommandLine::SampleFolder());
        switch (line.action) {
        case CommandLine::Help:
            QTextStream(stdout) << CommandLine::HelpText();
            return 0;
        case CommandLine::Version:
            QTextStream(stdout) << "lumbra " LUMBRA_VERSION "\n";
            return 0;
        case CommandLine::Error:
            QTextStream(stderr) << "lumbra: " << line.message << "\nTry 'lumbra --help'.\n";
            return 2;
        case CommandLine::Run:
            break;
        }
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Lumbra"));
    QApplication::setApplicationVersion(QStringLiteral(LUMBRA_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral(LUMBRA_APP_ID));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/lumbra.svg")));
    // The program lives on in the tray when its window closes.
    QApplication::setQuitOnLastWindowClosed(false);

    const CommandLine line = CommandLine::Parse(arguments, CommandLine::SampleFolder());
    StartUp::Run();

    mdiMain main;
    QObject::connect(&main, &mdiMain::Unloaded, &app, &QCoreApplication::quit, Qt::QueuedConnection);

    auto* splash = new frmSplash(true);
    QObject::connect(splash, &frmSplash::Finished, &main, [&main, line] {
        main.Load();
        if (Globals().WindowState == 2)
            main.showMaximized();
        else
            main.show();
        if (line.folder.isEmpty() && line.pictures.isEmpty())
            return;
        switch (line.target()) {
        case CommandLine::PictureWindow:
            PictureOpener::Open(line.pictures.first());
            break;
        case CommandLine::GalleryFolder:
            ChildOps::Call(main.OpenChild(MenuTable::ThumbnailsButton), "ShowFolder", line.folder);
            break;
        case CommandLine::GalleryCollection:
            ChildOps::Call(main.OpenChild(MenuTable::ThumbnailsButton), "ShowPictures", line.pictures);
            break;
        }
    });
    splash->Start();
    return app.exec();
}
