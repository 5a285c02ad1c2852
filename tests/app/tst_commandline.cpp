#include "TestWorld.h"

#include "app/CommandLine.h"

#include <QDir>
#include <QFile>

class tst_CommandLine : public QObject
{
    Q_OBJECT

    QString world() const { return property("worldPath").toString(); }

private Q_SLOTS:
    void initTestCase()
    {
        QDir(world()).mkpath(QStringLiteral("pics"));
        for (const char* name : {"pics/a.jpg", "pics/b.png", "-dash.jpg"}) {
            QFile file(world() + u'/' + QLatin1String(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
    }

    void parse_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("action");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QStringList>("pictures");
        QTest::addColumn<int>("target");
        const QString w = world();
        QTest::newRow("nothing shows the samples") << QStringList{} << int(CommandLine::Run) << "SAMPLES" << QStringList{} << int(CommandLine::GalleryFolder);
        QTest::newRow("one folder") << QStringList{w + "/pics"} << int(CommandLine::Run) << w + "/pics" << QStringList{} << int(CommandLine::GalleryFolder);
        QTest::newRow("pictures in order")
            << QStringList{w + "/pics/b.png", w + "/pics/a.jpg"} << int(CommandLine::Run) << ""
            << QStringList{w + "/pics/b.png", w + "/pics/a.jpg"} << int(CommandLine::GalleryCollection);
        QTest::newRow("one picture opens its picture window")
            << QStringList{w + "/pics/a.jpg"} << int(CommandLine::Run) << "" << QStringList{w + "/pics/a.jpg"}
            << int(CommandLine::PictureWindow);
        QTest::newRow("help wins") << QStringList{w + "/pics", "--help"} << int(CommandLine::Help) << "" << QStringList{} << int(CommandLine::GalleryCollection);
        QTest::newRow("short help") << QStringList{"-h"} << int(CommandLine::Help) << "" << QStringList{} << int(CommandLine::GalleryCollection);
        QTest::newRow("version") << QStringList{"--version"} << int(CommandLine::Version) << "" << QStringList{} << int(CommandLine::GalleryCollection);
        QTest::newRow("unknown option") << QStringList{"--frobnicate"} << int(CommandLine::Error) << "" << QStringList{} << int(CommandLine::GalleryCollection);
        QTest::newRow("missing folder") << QStringList{w + "/nowhere"} << int(CommandLine::Error) << "" << QStringList{} << int(CommandLine::GalleryCollection);
        QTest::newRow("folder among pictures")
            << QStringList{w + "/pics/a.jpg", w + "/pics"} << int(CommandLine::Error) << "" << QStringList{} << int(CommandLine::GalleryCollection);
        QTest::newRow("a picture whose name starts with a dash after --")
            << QStringList{"--", w + "/-dash.jpg"} << int(CommandLine::Run) << "" << QStringList{w + "/-dash.jpg"} << int(CommandLine::PictureWindow);
    }
    void parse()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, action);
        const CommandLine line = CommandLine::Parse(arguments, QStringLiteral("SAMPLES"));
        QCOMPARE(int(line.action), action);
        if (action == CommandLine::Error) {
            QVERIFY(!line.message.isEmpty());
            return;
        }
        QTEST(line.folder, "folder");
        QTEST(line.pictures, "pictures");
        QTEST(int(line.target()), "target");
    }

    void relativePathsBecomeAbsolute()
    {
        QDir::setCurrent(world());
        const CommandLine line = CommandLine::Parse({QStringLiteral("pics/a.jpg")}, QString());
        QCOMPARE(line.pictures, QStringList{world() + QStringLiteral("/pics/a.jpg")});
    }
};

LUMBRA_TEST_MAIN(tst_CommandLine)
#include "tst_commandline.moc"
