#include "TestWorld.h"

#include "common/AddressRules.h"
#include "common/FolderRules.h"
#include "common/ucFolders.h"
#include "common/ucTxtAddress.h"

#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QStandardPaths>
#include <QToolButton>

class tst_AddressBar : public QObject
{
    Q_OBJECT

    QString world(const QString& relative) const
    {
        return property("worldPath").toString() + u'/' + relative;
    }

    static bool showWidth(ucTxtAddress& bar, int width)
    {
        bar.resize(width, bar.sizeHint().height());
        bar.show();
        return QTest::qWaitForWindowExposed(&bar);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QDir(world({})).mkpath(QStringLiteral("pics/trip")));
        QVERIFY(QFile(world(QStringLiteral("pics/a.jpg"))).open(QIODevice::WriteOnly));
    }

    void trailingSeparator_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("address");
        QTest::newRow("folder gains a separator") << "/pics/trip" << "/pics/trip/";
        QTest::newRow("folder keeps its separator") << "/pics/trip/" << "/pics/trip/";
        QTest::newRow("picture keeps its name") << "/pics/a.jpg" << "/pics/a.jpg";
        QTest::newRow("pattern ending in a star") << "/pics/*" << "/pics/*";
        QTest::newRow("dot five from the end is a folder") << "/pics/a.jpeg" << "/pics/a.jpeg/";
    }
    void trailingSeparator()
    {
        QFETCH(QString, value);
        QTEST(AddressRules::WithTrailingSeparator(value), "address");
    }

    void shortenedText()
    {
        const auto characters = [](const QString& text) { return int(text.size()); };
        QCOMPARE(AddressRules::ShortenedText("/pics/trip/", 11, characters), "/pics/trip/");
        QCOMPARE(AddressRules::ShortenedText("/pics/trip/", 10, characters), "/pics/...");
        QCOMPARE(AddressRules::ShortenedText("/a/", 1, characters), "...");
    }

    void addressExists_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("exists");
        QTest::newRow("folder") << "pics/trip" << true;
        QTest::newRow("picture file") << "pics/a.jpg" << true;
        QTest::newRow("pattern with matches") << "pics/*.jpg" << true;
        QTest::newRow("pattern without matches") << "pics/*.png" << false;
        QTest::newRow("missing folder") << "pics/gone/" << false;
    }
    void addressExists()
    {
        QFETCH(QString, typed);
        QTEST(AddressRules::AddressExists(world(typed)), "exists");
        // A relative path would depend on the working folder.
        QVERIFY(!AddressRules::AddressExists(typed));
    }

    void emptyAddressIsPicturesAndRaisesOnce()
    {
        ucTxtAddress bar;
        QSignalSpy changed(&bar, &ucTxtAddress::NewAddress);
        bar.setAddress({});
        bar.setAddress(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
        QCOMPARE(bar.Address(),
                 QStandardPaths::writableLocation(QStandardPaths::PicturesLocation) + u'/');
        QCOMPARE(changed.size(), 1);
    }

    void backButton_data()
    {
        QTest::addColumn<QStringList>("visits");
        QTest::addColumn<int>("backs");
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("canGoBack");
        const QStringList revisit{"/a/", "/b/", "/a/", "/c/"};
        QTest::newRow("first address") << QStringList{"/a/"} << 0 << "/a/" << false;
        QTest::newRow("back twice") << QStringList{"/a/", "/b/", "/c/"} << 2 << "/a/" << false;
        QTest::newRow("revisited folder counts once") << revisit << 1 << "/a/" << true;
        QTest::newRow("then the one before") << revisit << 2 << "/b/" << false;
        const QStringList seven{"/a/", "/b/", "/c/", "/d/", "/e/", "/f/", "/g/"};
        QTest::newRow("five earlier folders are kept") << seven << 5 << "/b/" << false;
    }
    void backButton()
    {
        QFETCH(QStringList, visits);
        QFETCH(int, backs);
        QFETCH(QString, address);
        QFETCH(bool, canGoBack);
        ucTxtAddress bar;
        for (const QString& folder : visits)
            bar.setAddress(folder);
        QSignalSpy changed(&bar, &ucTxtAddress::NewAddress);
        for (int i = 0; i < backs; ++i)
            bar.imgBack()->click();
        QCOMPARE(changed.size(), backs);
        QCOMPARE(bar.Address(), address);
        QCOMPARE(bar.imgBack()->isEnabled(), canGoBack);
    }

    void enterKey_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("refused");
        QTest::newRow("existing folder") << "pics/trip" << "pics/trip/" << false;
        QTest::newRow("picture file") << "pics/a.jpg" << "pics/a.jpg" << false;
        QTest::newRow("missing folder") << "pics/gone" << "pics/" << true;
    }
    void enterKey()
    {
        QFETCH(QString, typed);
        QFETCH(QString, address);
        QFETCH(bool, refused);
        ucTxtAddress bar;
        QVERIFY(showWidth(bar, 4000));
        bar.setAddress(world(QStringLiteral("pics/")));
        QSignalSpy changed(&bar, &ucTxtAddress::NewAddress);
        bar.txtAddress()->setText(world(typed));
        QTest::keyClick(bar.txtAddress(), Qt::Key_Return);
        QCOMPARE(bar.Address(), world(address));
        QCOMPARE(changed.size(), refused ? 0 : 1);
        QCOMPARE(bar.txtAddress()->text(), refused ? AddressRules::NotFoundText : world(address));

        QTest::keyClick(bar.txtAddress(), Qt::Key_Escape);
        QCOMPARE(bar.txtAddress()->text(), world(address));
    }

    void longAddressIsShortenedToFit()
    {
        ucTxtAddress bar;
        QVERIFY(showWidth(bar, 200));
        const QString longAddress = QStringLiteral("/pictures/%1/").arg(QString(60, u'x'));
        bar.setAddress(longAddress);
        QCOMPARE(bar.Address(), longAddress);
        QCOMPARE(bar.txtAddress()->text(), longAddress.chopped(5) + "...");
        bar.resize(4000, bar.height());
        QTRY_COMPARE(bar.txtAddress()->text(), longAddress);
    }

    void folderUp_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("up");
        QTest::newRow("nested folder goes up one") << "/pics/trip/" << "/pics/";
        QTest::newRow("root stays root") << "/" << "/";
        QTest::newRow("picture goes to its folder") << "/pics/trip/a.jpg" << "/pics/trip/";
        QTest::newRow("name without separator is kept") << "pics" << "pics";
    }
    void folderUp()
    {
        QFETCH(QString, path);
        QTEST(FolderRules::FolderUp(path), "up");
    }

    void folderUpButtonFollowsCurrentPath()
    {
        ucFolders bar;
        QAction* up = bar.Button(1);
        QVERIFY(!up->isEnabled());
        bar.setCurrentPath(QStringLiteral("/pics/trip/"));
        QSignalSpy changed(&bar, &ucFolders::FolderChanged);
        up->trigger();
        QCOMPARE(changed.value(0).value(0).toString(), QStringLiteral("/pics/"));
        bar.setCurrentPath({});
        QVERIFY(!up->isEnabled());
    }

    void specialFolderButtons_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("location");
        QTest::newRow("desktop") << 3 << int(QStandardPaths::DesktopLocation);
        QTest::newRow("documents") << 4 << int(QStandardPaths::DocumentsLocation);
        QTest::newRow("pictures") << 5 << int(QStandardPaths::PicturesLocation);
    }
    void specialFolderButtons()
    {
        QFETCH(int, index);
        QFETCH(int, location);
        ucFolders bar;
        QSignalSpy changed(&bar, &ucFolders::FolderChanged);
        bar.Button(index)->trigger();
        const auto where = QStandardPaths::StandardLocation(location);
        QCOMPARE(changed.value(0).value(0).toString(),
                 QStandardPaths::writableLocation(where) + u'/');
    }
};

LUMBRA_TEST_MAIN(tst_AddressBar)
#include "tst_addressbar.moc"
