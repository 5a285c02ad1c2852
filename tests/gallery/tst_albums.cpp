#include "TestWorld.h"

#include "gallery/PhotoAlbums.h"

#include <QFile>

class tst_Albums : public QObject
{
    Q_OBJECT

    QString m_pictures;

private slots:
    void initTestCase()
    {
        m_pictures = property("worldPath").toString() + QStringLiteral("/albumpics/");
        QDir().mkpath(m_pictures);
        for (const char* name : {"a.png", "b.png", "c.png"})
            QVERIFY(QFile(m_pictures + name).open(QIODevice::WriteOnly));
    }

    void cleanup()
    {
        for (const QString& name : PhotoAlbums::Names())
            PhotoAlbums::Delete(name);
    }

    void refusesNamesThatAreNoFileName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << "";
        QTest::newRow("a path") << "trips/2024";
        QTest::newRow("hidden") << ".secret";
    }

    void refusesNamesThatAreNoFileName()
    {
        QFETCH(QString, name);
        QString why;
        QVERIFY(!PhotoAlbums::Save(name, {m_pictures + "a.png"}, &why));
        QVERIFY(!why.isEmpty());
        QVERIFY(PhotoAlbums::Names().isEmpty());
    }

    void keepsPicturesInOrderUnderAnyName()
    {
        const QStringList files{m_pictures + "c.png", m_pictures + "a.png",
                                "/gone/été à Paris.jpg"};
        QVERIFY(PhotoAlbums::Save(QStringLiteral("Été à Paris"), files));
        QVERIFY(PhotoAlbums::Save(QStringLiteral("beach"), {m_pictures + "b.png"}));
        QCOMPARE(PhotoAlbums::Names(), (QStringList{"beach", "Été à Paris"}));
        QCOMPARE(PhotoAlbums::Load(QStringLiteral("Été à Paris")), files);
        QVERIFY(QFileInfo(PhotoAlbums::Folder())
                    .absoluteFilePath()
                    .startsWith(qEnvironmentVariable("XDG_DATA_HOME")));
        const QString properties = PhotoAlbums::Properties(QStringLiteral("Été à Paris"));
        QVERIFY2(properties.contains(QStringLiteral("Pictures: 3 (1 no longer found)")),
                 qPrintable(properties));
        // Deleting an album leaves its pictures where they are.
        QVERIFY(PhotoAlbums::Delete(QStringLiteral("beach")));
        QCOMPARE(PhotoAlbums::Names(), QStringList{"Été à Paris"});
        QCOMPARE(QDir(m_pictures).entryList(QDir::Files).size(), 3);
    }

    void renames_data()
    {
        QTest::addColumn<QString>("to");
        QTest::addColumn<bool>("done");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("to a free name") << "sea" << true << QStringList{"other", "sea"};
        QTest::newRow("case only") << "Beach" << true << QStringList{"Beach", "other"};
        QTest::newRow("never over another album")
            << "other" << false << QStringList{"beach", "other"};
    }

    void renames()
    {
        QFETCH(QString, to);
        QFETCH(bool, done);
        QVERIFY(PhotoAlbums::Save("beach", {m_pictures + "a.png"}));
        QVERIFY(PhotoAlbums::Save("other", {m_pictures + "b.png"}));
        QCOMPARE(PhotoAlbums::Rename("beach", to), done);
        QTEST(PhotoAlbums::Names(), "names");
        QCOMPARE(PhotoAlbums::Load("other"), QStringList{m_pictures + "b.png"});
    }
};

LUMBRA_TEST_MAIN(tst_Albums)
#include "tst_albums.moc"
