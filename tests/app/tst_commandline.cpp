#include "AppFixtures.h"
#include "TestWorld.h"

#include "app/CommandLine.h"

class tst_CommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const char* name : {"pics/a.jpg", "pics/b.png", "-dash.jpg"})
            WriteFile(WorldPath(QLatin1String(name)), {});
        QDir::setCurrent(WorldPath());
    }

    void parse_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("action");
        QTest::addColumn<QString>("folder"); // these three when the action is Run
        QTest::addColumn<QStringList>("pictures");
        QTest::addColumn<int>("target");
        const QString a = WorldPath("pics/a.jpg"), b = WorldPath("pics/b.png"), pics = WorldPath("pics");
        const auto run = [](const char* name, const QStringList& arguments, const QString& folder,
                            const QStringList& pictures, CommandLine::Target target) {
            QTest::newRow(name) << arguments << int(CommandLine::Run) << folder << pictures << int(target);
        };
        const auto other = [](const char* name, const QStringList& arguments, CommandLine::Action action) {
            QTest::newRow(name) << arguments << int(action) << QString() << QStringList() << 0;
        };
        run("nothing shows the samples", {}, "SAMPLES", {}, CommandLine::GalleryFolder);
        run("one folder", {pics}, pics, {}, CommandLine::GalleryFolder);
        run("pictures in order", {b, a}, "", {b, a}, CommandLine::GalleryCollection);
        run("one picture opens its picture window", {a}, "", {a}, CommandLine::PictureWindow);
        run("a relative path becomes absolute", {"pics/a.jpg"}, "", {a}, CommandLine::PictureWindow);
        run("a picture whose name starts with a dash after --", {"--", WorldPath("-dash.jpg")}, "",
            {WorldPath("-dash.jpg")}, CommandLine::PictureWindow);
        other("help wins", {pics, "--help"}, CommandLine::Help);
        other("version", {"--version"}, CommandLine::Version);
        other("unknown option", {"--frobnicate"}, CommandLine::Error);
        other("missing folder", {WorldPath("nowhere")}, CommandLine::Error);
        other("folder among pictures", {a, pics}, CommandLine::Error);
    }
    void parse()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, action);
        const CommandLine line = CommandLine::Parse(arguments, QStringLiteral("SAMPLES"));
        QCOMPARE(int(line.action), action);
        if (action == CommandLine::Error)
            QVERIFY(!line.message.isEmpty());
        if (action != CommandLine::Run)
            return;
        QTEST(line.folder, "folder");
        QTEST(line.pictures, "pictures");
        QTEST(int(line.target()), "target");
    }
};

LUMBRA_TEST_MAIN(tst_CommandLine)
#include "tst_commandline.moc"
