#include "AppFixtures.h"
#include "BitmapCheck.h"
#include "DialogAnswers.h"
#include "TestWorld.h"

#include "app/MainMenus.h"
#include "app/Wallpaper.h"
#include "common/PlasmaWallpaper.h"
#include "common/XfceWallpaper.h"

#include <QAction>
#include <QImage>
#include <QUrl>

// The GNOME wallpaper is set for real: gsettings writes GLib's key file in the test's own
// configuration folder instead of the session's dconf.
class tst_Wallpaper : public QObject
{
    Q_OBJECT

    static QString backgrounds() { return WorldPath("data/backgrounds"); }

    // The value of a GNOME background key as gsettings stored it; empty when it never was.
    static QString gnomeValue(const QString& key)
    {
        bool inGroup = false;
        const QByteArray keyFile = ReadFile(WorldPath("config/glib-2.0/settings/keyfile"));
        for (const QString& line : QString::fromUtf8(keyFile).split(u'\n')) {
            if (line.startsWith(u'['))
                inGroup = line == QLatin1String("[org/gnome/desktop/background]");
            else if (inGroup && line.startsWith(key + u'='))
                return line.mid(key.size() + 1).chopped(1).mid(1); // without the quotes
        }
        return {};
    }

    static QString makePicture(const QString& name) { return MakePicture(WorldPath("pics/" + name), {40, 30}); }

private Q_SLOTS:
    void init()
    {
        qputenv("GSETTINGS_BACKEND", "keyfile");
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        QDir(WorldPath("config/glib-2.0")).removeRecursively();
        QDir(backgrounds()).removeRecursively();
        FreshSettings();
        Globals().CurrentPicture.clear();
    }

    void gnomeWallpaperInEachStyle_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<int>("entry");
        QTest::addColumn<QString>("options");
        QTest::addColumn<QString>("picture");
        QTest::addColumn<QString>("copy");
        QTest::newRow("centre") << QByteArray("GNOME") << 3 << "centered" << "Beach.jpg" << "BEACH.BMP";
        QTest::newRow("stretched, on Ubuntu")
            << QByteArray("ubuntu:GNOME") << 4 << "stretched" << "Beach.jpg" << "BEACH.BMP";
        QTest::newRow("tiled, a name without extension loses four characters")
            << QByteArray("GNOME") << 5 << "wallpaper" << "Picture" << "PIC.BMP";
        QTest::newRow("none ticked is centred") << QByteArray("GNOME") << 2 << "centered" << "Beach.jpg" << "BEACH.BMP";
    }
    void gnomeWallpaperInEachStyle()
    {
        QFETCH(QByteArray, desktop);
        QFETCH(int, entry);
        QFETCH(QString, picture);
        QFETCH(QString, copy);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        mdiMain main;
        main.Load();
        main.Menus()->Action(QStringLiteral("mnuWallpaper"), entry)->trigger();
        Globals().CurrentPicture = makePicture(picture);

        DialogAnswers answers({QMessageBox::Ok});
        main.Menus()->Action(QStringLiteral("mnuWallpaper"), 1)->trigger();

        QCOMPARE(answers.seen, QStringList{QStringLiteral("Lumbra|") + Wallpaper::SetText});
        // Only the name is upper-cased, never the folders.
        copy = backgrounds() + u'/' + copy;
        QCOMPARE(BitmapProblem(copy, {40, 30}), QString());
        QCOMPARE(QUrl(gnomeValue(QStringLiteral("picture-uri"))).toLocalFile(), copy);
        QCOMPARE(QUrl(gnomeValue(QStringLiteral("picture-uri-dark"))).toLocalFile(), copy);
        QTEST(gnomeValue(QStringLiteral("picture-options")), "options");
    }

    void anotherFileOfTheName_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<bool>("replaced");
        QTest::newRow("No keeps it") << "no" << false;
        QTest::newRow("Yes replaces it") << "yes" << true;
        QTest::newRow("the copy itself, set again, asks nothing") << "" << true;
    }
    void anotherFileOfTheName()
    {
        QFETCH(QString, answer);
        QFETCH(bool, replaced);
        QDir().mkpath(backgrounds());
        const QString copy = backgrounds() + QStringLiteral("/SUNSET.BMP");
        QImage other(8, 8, QImage::Format_RGB32);
        other.fill(Qt::red);
        QVERIFY(other.save(copy, "BMP"));
        const QString source = answer.isEmpty() ? copy : makePicture(QStringLiteral("sunset.jpg"));

        DialogAnswers answers(
            {answer == QLatin1String("no") ? QMessageBox::No : QMessageBox::Yes, QMessageBox::Ok});
        QCOMPARE(Wallpaper::SetAsWallpaper(nullptr, source, false, 3), replaced);

        QStringList expected;
        if (!answer.isEmpty())
            expected << QStringLiteral("Lumbra|") +
                            Wallpaper::OverwriteQuestion(copy).replace(u'\r', u'\n');
        if (replaced)
            expected << QStringLiteral("Lumbra|") + Wallpaper::SetText;
        QCOMPARE(answers.seen, expected);
        QCOMPARE(QUrl(gnomeValue(QStringLiteral("picture-uri"))).toLocalFile(),
                 replaced ? copy : QString());
        const bool newPicture = replaced && !answer.isEmpty();
        QCOMPARE(QImage(copy).pixelColor(0, 0) == QColor(Qt::red), !newPicture);
        QCOMPARE(BitmapProblem(copy, newPicture ? QSize(40, 30) : QSize(8, 8)), QString());
    }

    void failureIsTold_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QByteArray>("content"); // of the picture; empty for a good one
        QTest::newRow("unreadable picture") << QByteArray("GNOME") << QByteArray("not a picture");
        QTest::newRow("unknown desktop") << QByteArray("Enlightenment") << QByteArray();
    }
    void failureIsTold()
    {
        QFETCH(QByteArray, desktop);
        QFETCH(QByteArray, content);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        const QString source = makePicture(QStringLiteral("picture.jpg"));
        if (!content.isEmpty())
            WriteFile(source, content);
        DialogAnswers answers;
        QVERIFY(!Wallpaper::SetAsWallpaper(nullptr, source, true, 4));
        QCOMPARE(answers.seen, QStringList{Wallpaper::FailTitle + u'|' + Wallpaper::FailText});
        QCOMPARE(QDir(backgrounds()).entryList(QDir::Files), QStringList());
        QCOMPARE(gnomeValue(QStringLiteral("picture-uri")), QString());
    }

    void plasmaScriptKeepsThePathInItsString_data()
    {
        QTest::addColumn<QString>("uri");
        QTest::addColumn<QString>("literal");
        QTest::newRow("quotes and backslash")
            << "file:///x/it's\\\"q\".BMP" << "\"file:///x/it\\u0027s\\u005c\\u0022q\\u0022.BMP\"";
        QTest::newRow("line break") << "file:///a\nb" << "\"file:///a\\u000ab\"";
    }
    void plasmaScriptKeepsThePathInItsString()
    {
        QFETCH(QString, uri);
        QTEST(PlasmaWallpaper::ScriptString(uri), "literal");
    }

    void xfceSetsEveryMonitorAndWorkspace_data()
    {
        QTest::addColumn<QByteArray>("listing");
        QTest::addColumn<QStringList>("folders");
        QTest::newRow("two monitors, two workspaces")
            << QByteArray(
                   "/backdrop/screen0/monitorHDMI-1/workspace0/last-image   /p/a.jpg\n"
                   "/backdrop/screen0/monitorHDMI-1/workspace1/image-style  5\n"
                   "/backdrop/screen0/monitoreDP-1/workspace0/last-image    /p/with blank.jpg\n"
                   "/backdrop/single-workspace-mode                          true\n")
            << QStringList{"/backdrop/screen0/monitorHDMI-1/workspace0",
                           "/backdrop/screen0/monitorHDMI-1/workspace1",
                           "/backdrop/screen0/monitoreDP-1/workspace0"};
        QTest::newRow("never set up: first workspace of each screen")
            << QByteArray("/desktop-icons/style  2\n")
            << QStringList{"/backdrop/screen0/monitorDP-1/workspace0",
                           "/backdrop/screen0/monitorDP-2/workspace0"};
    }
    void xfceSetsEveryMonitorAndWorkspace()
    {
        QFETCH(QByteArray, listing);
        QTEST(XfceWallpaper::BackdropFolders(XfceWallpaper::ParseListing(listing), {"DP-1", "DP-2"}), "folders");
    }
};

LUMBRA_TEST_MAIN(tst_Wallpaper)
#include "tst_wallpaper.moc"
