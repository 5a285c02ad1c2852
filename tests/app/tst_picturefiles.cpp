#include "AppFixtures.h"
#include "BitmapCheck.h"
#include "DialogAnswers.h"
#include "TestWorld.h"

#include "app/FileChooser.h"
#include "app/MainMenus.h"
#include "app/PictureFiles.h"
#include "gallery/frmThumbnails.h"
#include "viewing/PictureWindows.h"

#include <QAction>
#include <QClipboard>
#include <QImage>
#include <QScreen>

// Screenshots, saving a copy and opening pictures, with the file dialogs answered by the test.
class tst_PictureFiles : public QObject
{
    Q_OBJECT

    static QString makePicture(const QString& name) { return MakePicture(WorldPath("pics/" + name)); }

    static QSize screenPixels()
    {
        const QScreen* screen = QGuiApplication::primaryScreen();
        return screen->size() * screen->devicePixelRatio();
    }

private Q_SLOTS:
    void init()
    {
        FreshSettings();
        Globals().CurrentPicture.clear();
        QDir(WorldPath("home")).removeRecursively();
        QDir().mkpath(WorldPath("home"));
    }

    void screenshotsOpenUnderTheirOwnNames_data()
    {
        QTest::addColumn<QStringList>("before");
        QTest::newRow("empty program folder") << QStringList();
        QTest::newRow("a saved copy in capitals beside them") << QStringList{"SCREENSHOT.BMP"};
    }
    void screenshotsOpenUnderTheirOwnNames()
    {
        QFETCH(QStringList, before);
        for (const QString& name : before)
            WriteFile(WorldPath("home/" + name), {});
        mdiMain main;
        StartMain(main);
        QSignalSpy opened(&main, &mdiMain::OpenPictureRequested);
        // The third comes from the tray menu, after the second's window is already open.
        main.Menus()->Action(QStringLiteral("mnuStuff"), 1)->trigger();
        main.Menus()->Action(QStringLiteral("mnuStuff"), 1)->trigger();
        main.Menus()->Action(QStringLiteral("mnuSys"), 2)->trigger();
        const QString first = WorldPath("home/ScreenShot.bmp"), second = WorldPath("home/ScreenShot(1).bmp");
        QStringList paths;
        for (const QList<QVariant>& signal : std::as_const(opened))
            paths << signal.value(0).toString();
        QCOMPARE(paths, (QStringList{first, second, second}));
        QCOMPARE(BitmapProblem(first, screenPixels()), QString());
        QCOMPARE(BitmapProblem(second, screenPixels()), QString());
        QCOMPARE(QGuiApplication::clipboard()->image().size(), screenPixels());
        // Whatever was there stays.
        QCOMPARE(QDir(WorldPath("home")).entryList(QDir::Files).size(), before.size() + 2);
        QTRY_COMPARE(PictureWindows::OpenPaths().count(second), 1);
        QVERIFY(!PictureWindows::FullScreenWindow());
        QCOMPARE(main.Recent().Item(0), second);
        QCOMPARE(main.Recent().Item(1), first);
        PictureWindows::CloseAll();
    }

    void saveAsProposesAName_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("proposed");
        QTest::newRow("extension replaced") << "photo.jpg" << "PHOTO.BMP";
        QTest::newRow("no extension keeps the whole name") << "Picture" << "PICTURE.BMP";
        QTest::newRow("four-letter extension stays") << "photo.jpeg" << "PHOTO.JPEG.BMP";
    }
    void saveAsProposesAName()
    {
        QFETCH(QString, source);
        Globals().CurrentPicture = makePicture(source);
        FileAnswers files;
        DialogAnswers answers;
        PictureFiles::SaveAsBitmap(nullptr, {});
        // Cancelling is silent and writes nothing.
        QCOMPARE(answers.seen, QStringList());
        QCOMPARE(files.asked.size(), 1);
        QTEST(files.asked.first().fileName, "proposed");
        QCOMPARE(files.asked.first().folder, WorldPath("pics"));
        QVERIFY(!SettingsStore::global().contains("General", "LastPath_Save"));
    }

    void failedSaveOffersAnotherTry_data()
    {
        QTest::addColumn<bool>("again");
        QTest::newRow("Yes: the dialog comes back as it was left, then saves") << true;
        QTest::newRow("No: gives up") << false;
    }
    void failedSaveOffersAnotherTry()
    {
        QFETCH(bool, again);
        Globals().CurrentPicture = makePicture(QStringLiteral("photo.jpg"));
        const QString unwritable = WorldPath("missing/folder/MINE.BMP");
        const QString good = WorldPath("out/MINE.BMP");
        QDir().mkpath(WorldPath("out"));
        QFile::remove(good);
        FileAnswers files({{unwritable}, {good}});
        DialogAnswers answers({again ? QMessageBox::Yes : QMessageBox::No});
        PictureFiles::SaveAsBitmap(nullptr, {});
        QString text = PictureFiles::SaveFailedText;
        QCOMPARE(answers.seen, QStringList{PictureFiles::SaveFailedTitle + u'|' + text.replace(u'\r', u'\n')});
        QCOMPARE(files.asked.size(), again ? 2 : 1);
        if (again) {
            QCOMPARE(files.asked.last().fileName, QStringLiteral("MINE.BMP"));
            QCOMPARE(files.asked.last().folder, WorldPath("missing/folder"));
        }
        // A copy byte for byte, and the next save starts where this one went.
        QCOMPARE(ReadFile(good), again ? ReadFile(Globals().CurrentPicture) : QByteArray());
        if (again) {
            PictureFiles::SaveAsBitmap(nullptr, {});
            QCOMPARE(files.asked.last().folder, WorldPath("out"));
        }
    }

    // Several pictures fill the gallery in the dialog's order.
    void openShowsTheChosenPictures()
    {
        const QStringList names{"c.jpg", "a.jpg", "b.jpg"};
        QStringList chosen;
        for (const QString& name : names)
            chosen << makePicture(name);
        FileAnswers files({chosen});
        // The gallery sorts what it shows, keeping list order among equal keys: sorted by type,
        // pictures of one type show in the order the list brought them.
        SettingsStore::global().write("frmThumbnails", "Sortation", 1);
        mdiMain main;
        StartMain(main);
        main.Menus()->Action(QStringLiteral("mnuFile"), 1)->trigger();

        QCOMPARE(SettingsStore::global().read("General", "LastPath_Open"), WorldPath("pics"));
        auto* gallery = qobject_cast<frmThumbnails*>(main.ActiveChild());
        QVERIFY(gallery);
        QTRY_COMPARE(gallery->PictureCount(), int(names.size()));
        for (int i = 0; i < names.size(); ++i)
            QCOMPARE(gallery->FileOf(i), chosen[i]);
    }
};

LUMBRA_TEST_MAIN(tst_PictureFiles)
#include "tst_picturefiles.moc"
