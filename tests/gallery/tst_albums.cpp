#include "app/DialogAnswers.h"
#include "TestWorld.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "gallery/AlbumCommands.h"
#include "gallery/frmThumbnails.h"
#include "gallery/PhotoAlbums.h"
#include "gallery/ThumbGrid.h"

#include <QImage>

class tst_Albums : public QObject
{
    Q_OBJECT

    QString m_pictures;

private slots:
    void initTestCase()
    {
        m_pictures = property("worldPath").toString() + QStringLiteral("/albumpics/");
        QDir().mkpath(m_pictures);
        for (const char* name : {"a.png", "b.png", "c.png"}) {
            QImage image(16, 16, QImage::Format_RGB32);
            image.fill(Qt::green);
            QVERIFY(image.save(m_pictures + name));
        }
        SettingsStore::global().write(Keys::Explain_Delete, QStringLiteral("TRUE"));
    }

    void cleanup()
    {
        AlbumCommands::SetNameAnswer({});
        for (const QString& name : PhotoAlbums::Names())
            PhotoAlbums::Delete(name);
    }

    void refusesNamesThatAreNoFileName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << "";
        QTest::newRow("blanks only") << "   ";
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
        QTest::newRow("never to a path") << "x/y" << false << QStringList{"beach", "other"};
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

    void savesReopensRenamesAndDeletesFromTheGallery()
    {
        frmThumbnails gallery;
        gallery.resize(700, 400);
        gallery.show();
        gallery.ShowPictures({m_pictures + "a.png", m_pictures + "b.png", m_pictures + "c.png"});
        QTRY_COMPARE(gallery.CollectionFiles().size(), 3);
        // A removed thumbnail is not part of what the album keeps.
        Q_EMIT gallery.picFrame()->CellClicked(1);
        gallery.DeleteItems();

        AlbumCommands::SetNameAnswer(
            [](const QString&, const QString&) { return QStringLiteral("Trip"); });
        AlbumCommands::SaveCollection(nullptr, &gallery);
        QCOMPARE(PhotoAlbums::Load("Trip"),
                 (QStringList{m_pictures + "a.png", m_pictures + "c.png"}));
        QCOMPARE(AlbumCommands::CurrentAlbum(&gallery), QStringLiteral("Trip"));

        frmThumbnails other;
        other.show();
        AlbumCommands::Open(nullptr, &other, "Trip");
        QTRY_COMPARE(other.CollectionFiles(), PhotoAlbums::Load("Trip"));

        AlbumCommands::SetNameAnswer(
            [](const QString&, const QString& offered) { return offered + " 2024"; });
        AlbumCommands::RenameCurrent(nullptr, &other);
        QCOMPARE(PhotoAlbums::Names(), QStringList{"Trip 2024"});
        QCOMPARE(AlbumCommands::CurrentAlbum(&other), QStringLiteral("Trip 2024"));

        DialogAnswers answers({QMessageBox::No, QMessageBox::Yes});
        AlbumCommands::DeleteCurrent(nullptr, &other);
        QCOMPARE(PhotoAlbums::Names(), QStringList{"Trip 2024"});
        AlbumCommands::DeleteCurrent(nullptr, &other);
        QVERIFY(PhotoAlbums::Names().isEmpty());
        QCOMPARE(answers.seen.size(), 2);
        // The pictures stay where they are.
        QCOMPARE(QDir(m_pictures).entryList(QDir::Files).size(), 3);
    }
};

LUMBRA_TEST_MAIN(tst_Albums)
#include "tst_albums.moc"
