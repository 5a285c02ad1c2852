#include "TestWorld.h"

#include "BitmapCheck.h"
#include "DialogAnswers.h"

#include "app/FileChooser.h"
#include "app/MainMenus.h"
#include "app/mdiMain.h"
#include "app/PictureFiles.h"
#include "app/ScreenShot.h"
#include "app/SettingsStore.h"
#include "common/AppGlobals.h"
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

    QString world(const QString& relative) const
    {
        return property("worldPath").toString() + u'/' + relative;
    }

    static QByteArray contents(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QString makePicture(const QString& name) const
    {
        QDir().mkpath(world(QStringLiteral("pics")));
        const QString path = world(QStringLiteral("pics/") + name);
        QImage image(24, 16, QImage::Format_RGB32);
        image.fill(Qt::darkGreen);
        [[maybe_unused]] const bool saved = image.save(path, "JPEG");
        return path;
    }

    // The dialog answers in turn with the given choices and keeps what it was asked.
    void answerDialogs(QList<QStringList> choices)
    {
        auto asked = std::make_shared<QList<FileChooser::Request>>();
        m_asked = asked;
        FileChooser::SetAnswer([asked, choices](const FileChooser::Request& request) mutable {
            asked->append(request);
            return choices.isEmpty() ? QStringList() : choices.takeFirst();
        });
    }
    QList<FileChooser::Request> asked() const { return *m_asked; }

    std::shared_ptr<QList<FileChooser::Request>> m_asked;

    static QSize screenPixels()
    {
        const QScreen* screen = QGuiApplication::primaryScreen();
        return screen->size() * screen->devicePixelRatio();
    }

private Q_SLOTS:
    void init()
    {
        QFile::remove(SettingsStore::defaultPath());
        SettingsStore::reopenGlobal();
        Globals().Options.fill(0);
        Globals().CurrentPicture.clear();
        QDir(world(QStringLiteral("home"))).removeRecursively();
        QDir().mkpath(world(QStringLiteral("home")));
    }
    void cleanup() { FileChooser::SetAnswer({}); }

    void threeScreenshotsInARow_data()
    {
        QTest::addColumn<QStringList>("before");
        QTest::newRow("empty program folder") << QStringList();
        QTest::newRow("a saved copy in capitals beside them") << QStringList{"SCREENSHOT.BMP"};
    }
    void threeScreenshotsInARow()
    {
        QFETCH(QStringList, before);
        for (const QString& name : before) {
            QFile file(world(QStringLiteral("home/") + name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QStringList names;
        for (int i = 0; i < 3; ++i) {
            const QString path = ScreenShot::Take();
            QCOMPARE(QFileInfo(path).absolutePath(), world(QStringLiteral("home")));
            names << QFileInfo(path).fileName();
            QCOMPARE(BitmapProblem(path, screenPixels()), QString());
            QCOMPARE(QGuiApplication::clipboard()->image().size(), screenPixels());
        }
        QCOMPARE(names, (QStringList{"ScreenShot.bmp", "ScreenShot(1).bmp", "ScreenShot(1).bmp"}));
        // Whatever was there stays.
        QCOMPARE(QDir(world(QStringLiteral("home"))).entryList(QDir::Files).size(),
                 before.size() + 2);
    }

    void screenshotsOpenInFreshWindows()
    {
        mdiMain main;
        main.Load();
        main.show();
        QSignalSpy opened(&main, &mdiMain::OpenPictureRequested);
        // The third comes from the tray menu, after the second's window is already open.
        main.Menus()->Action(QStringLiteral("mnuStuff"), 1)->trigger();
        main.Menus()->Action(QStringLiteral("mnuStuff"), 1)->trigger();
        main.Menus()->Action(QStringLiteral("mnuSys"), 2)->trigger();
        const QString second = world(QStringLiteral("home/ScreenShot(1).bmp"));
        QCOMPARE(opened.count(), 3);
        QCOMPARE(opened.last().value(0).toString(), second);
        QTRY_COMPARE(PictureWindows::OpenPaths().count(second), 1);
        QVERIFY(!PictureWindows::FullScreenWindow());
        QCOMPARE(main.Recent().Item(0), second);
        QCOMPARE(main.Recent().Item(1), world(QStringLiteral("home/ScreenShot.bmp")));
        PictureWindows::CloseAll();
    }

    void saveAsProposesAName_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("proposed");
        QTest::newRow("extension replaced") << "photo.jpg"
                                            << "PHOTO.BMP";
        QTest::newRow("no extension keeps the whole name") << "Picture"
                                                           << "PICTURE.BMP";
        QTest::newRow("four-letter extension stays") << "photo.jpeg"
                                                     << "PHOTO.JPEG.BMP";
    }
    void saveAsProposesAName()
    {
        QFETCH(QString, source);
        Globals().CurrentPicture = makePicture(source);
        answerDialogs({});
        DialogAnswers answers;
        PictureFiles::SaveAsBitmap(nullptr, {});
        // Cancelling is silent and writes nothing.
        QCOMPARE(answers.seen, QStringList());
        QCOMPARE(asked().size(), 1);
        QTEST(asked().first().fileName, "proposed");
        QCOMPARE(asked().first().folder, world(QStringLiteral("pics")));
        QVERIFY(!SettingsStore::global().contains("General", "LastPath_Save"));
    }

    void saveAsCopiesByteForByte()
    {
        const QString source = makePicture(QStringLiteral("photo.jpg"));
        QDir().mkpath(world(QStringLiteral("out")));
        const QString chosen = world(QStringLiteral("out/PHOTO.BMP"));
        answerDialogs({{chosen}, {}});
        PictureFiles::SaveAsBitmap(nullptr, source);
        QCOMPARE(contents(chosen), contents(source));
        QCOMPARE(SettingsStore::global().read("General", "LastPath_Save"),
                 world(QStringLiteral("out")));
        // The next save starts where the last one went.
        PictureFiles::SaveAsBitmap(nullptr, source);
        QCOMPARE(asked().last().folder, world(QStringLiteral("out")));
    }

    void failedSaveOffersAnotherTry_data()
    {
        QTest::addColumn<bool>("again");
        QTest::newRow("Yes: the dialog comes back as it was left") << true;
        QTest::newRow("No: gives up") << false;
    }
    void failedSaveOffersAnotherTry()
    {
        QFETCH(bool, again);
        Globals().CurrentPicture = makePicture(QStringLiteral("photo.jpg"));
        const QString unwritable = world(QStringLiteral("missing/folder/MINE.BMP"));
        const QString good = world(QStringLiteral("MINE.BMP"));
        QFile::remove(good);
        answerDialogs({{unwritable}, {good}});
        DialogAnswers answers({again ? QMessageBox::Yes : QMessageBox::No});
        PictureFiles::SaveAsBitmap(nullptr, {});
        QString text = PictureFiles::SaveFailedText;
        QCOMPARE(answers.seen,
                 QStringList{PictureFiles::SaveFailedTitle + u'|' + text.replace(u'\r', u'\n')});
        QCOMPARE(asked().size(), again ? 2 : 1);
        if (again) {
            QCOMPARE(asked().last().fileName, QStringLiteral("MINE.BMP"));
            QCOMPARE(asked().last().folder, world(QStringLiteral("missing/folder")));
        }
        QCOMPARE(contents(good), again ? contents(Globals().CurrentPicture) : QByteArray());
    }

    void openShowsTheChosenPictures_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::newRow("one opens in a picture window") << QStringList{"b.jpg"};
        QTest::newRow("several fill the gallery in the dialog's order")
            << QStringList{"c.jpg", "a.jpg", "b.jpg"};
    }
    void openShowsTheChosenPictures()
    {
        QFETCH(QStringList, names);
        QStringList chosen;
        for (const QString& name : names)
            chosen << makePicture(name);
        answerDialogs({chosen});
        // The gallery sorts what it shows, keeping list order among equal keys: sorted by type,
        // pictures of one type show in the order the list brought them.
        SettingsStore::global().write("frmThumbnails", "Sortation", 1);
        mdiMain main;
        main.Load();
        main.show();
        QSignalSpy opened(&main, &mdiMain::OpenPictureRequested);
        main.Menus()->Action(QStringLiteral("mnuFile"), 1)->trigger();

        QCOMPARE(SettingsStore::global().read("General", "LastPath_Open"),
                 world(QStringLiteral("pics")));
        if (names.size() == 1) {
            QCOMPARE(opened.count(), 1);
            QCOMPARE(opened.first().value(0).toString(), chosen.first());
        } else {
            auto* gallery = qobject_cast<frmThumbnails*>(main.ActiveChild());
            QVERIFY(gallery);
            QTRY_COMPARE(gallery->PictureCount(), int(names.size()));
            for (int i = 0; i < names.size(); ++i)
                QCOMPARE(gallery->FileOf(i), chosen[i]);
        }
        PictureWindows::CloseAll();
    }
};

LUMBRA_TEST_MAIN(tst_PictureFiles)
#include "tst_picturefiles.moc"
