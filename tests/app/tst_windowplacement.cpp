#include "AppFixtures.h"
#include "TestWorld.h"

#include "app/MenuTable.h"
#include "common/WindowPlacement.h"

#include <QMdiArea>
#include <QMdiSubWindow>

class tst_WindowPlacement : public QObject
{
    Q_OBJECT

    static QMdiSubWindow* openGallery(mdiMain& main)
    {
        QWidget* child = main.OpenChild(MenuTable::ThumbnailsButton);
        return qobject_cast<QMdiSubWindow*>(child ? child->parentWidget() : nullptr);
    }

private Q_SLOTS:
    void fit_data()
    {
        QTest::addColumn<QRect>("saved");
        QTest::addColumn<QList<QRect>>("areas");
        QTest::addColumn<QRect>("placed");
        const QRect left(0, 0, 1920, 1080);
        const QRect right(1920, 0, 1280, 1024);
        QTest::newRow("on its screen, as saved")
            << QRect(100, 80, 800, 600) << QList<QRect>{left, right} << QRect(100, 80, 800, 600);
        QTest::newRow("its screen has gone: onto the one left")
            << QRect(2000, 100, 800, 600) << QList<QRect>{left} << QRect(1920 - 48, 100, 800, 600);
        QTest::newRow("larger than the screen: shrunk to it")
            << QRect(0, 0, 2500, 1400) << QList<QRect>{left} << QRect(0, 0, 1920, 1080);
        QTest::newRow("title bar above the screen: brought down")
            << QRect(100, -300, 800, 600) << QList<QRect>{left} << QRect(100, 0, 800, 600);
        QTest::newRow("mostly off the left edge: a grip stays on screen")
            << QRect(-2000, 100, 800, 600) << QList<QRect>{left} << QRect(48 - 800, 100, 800, 600);
        QTest::newRow("no screen at all") << QRect(0, 0, 10, 10) << QList<QRect>{} << QRect();
    }
    void fit()
    {
        QFETCH(QRect, saved);
        QFETCH(QList<QRect>, areas);
        QTEST(WindowPlacement::Fit(saved, areas), "placed");
    }

    // The main window and a child window come back where the user left them, through the
    // settings file.
    void mainAndChildComeBack()
    {
        const QRect mainPlace(40, 30, 760, 540);
        const QRect childPlace(20, 10, 380, 240);
        {
            mdiMain main;
            StartMain(main);
            main.move(mainPlace.topLeft());
            main.resize(mainPlace.size());
            QMdiSubWindow* sub = openGallery(main);
            QVERIFY(sub);
            sub->move(childPlace.topLeft());
            sub->resize(childPlace.size());
            QTRY_COMPARE(sub->size(), childPlace.size());
            sub->close();
            main.hide();
        }
        // Start again from what reached the settings file.
        SettingsStore::global().flush();
        SettingsStore::reopenGlobal();
        QCOMPARE(SettingsStore::global().read("frmThumbnails", "Left"), QString::number(20 * 15));
        QCOMPARE(SettingsStore::global().read("mdiMain", "Width"), QString::number(760 * 15));

        mdiMain main;
        StartMain(main);
        QCOMPARE(QRect(main.pos(), main.size()), mainPlace);
        QMdiSubWindow* sub = openGallery(main);
        QVERIFY(sub);
        QCOMPARE(QRect(sub->pos(), sub->size()), childPlace);
    }

    // A maximised window remembers the place it had before, not the whole screen.
    void maximisedKeepsNormalPlace()
    {
        QWidget window;
        WindowPlacement::Keep(&window, QStringLiteral("frmTest"));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.move(50, 60);
        window.resize(300, 200);
        QTRY_COMPARE(window.size(), QSize(300, 200));
        window.showMaximized();
        QTRY_VERIFY(window.isMaximized());
        window.close();
        QCOMPARE(WindowPlacement::Saved(QStringLiteral("frmTest")), QRect(50, 60, 300, 200));
    }
};

LUMBRA_TEST_MAIN(tst_WindowPlacement)
#include "tst_windowplacement.moc"
