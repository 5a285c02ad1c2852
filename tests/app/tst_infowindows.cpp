#include "TestWorld.h"

#include "app/frmGoodbye.h"
#include "app/frmHelp.h"
#include "app/frmSplash.h"

#include <QElapsedTimer>
#include <QIcon>
#include <QListWidget>
#include <QPointer>
#include <QScrollBar>
#include <QSvgRenderer>
#include <QTextBrowser>

class tst_infowindows : public QObject
{
    Q_OBJECT

private slots:
    void splashFinishesOnce_data()
    {
        QTest::addColumn<bool>("atStartUp");
        QTest::addColumn<bool>("click");
        QTest::newRow("at start-up, held to the end") << true << false;
        QTest::newRow("from the Help menu, clicked") << false << true;
    }
    void splashFinishesOnce()
    {
        QFETCH(bool, atStartUp);
        QFETCH(bool, click);
        QPointer<frmSplash> splash = new frmSplash(atStartUp);
        QSignalSpy finished(splash.data(), &frmSplash::Finished);
        splash->Start();
        QVERIFY(splash->isVisible());
        if (click)
            QTest::mousePress(splash.data(), Qt::LeftButton); // once handled, the window is on its way out
        else
            QVERIFY(finished.wait(frmSplash::HoldMilliseconds * 5));
        QTRY_VERIFY(splash.isNull());
        QCOMPARE(finished.count(), 1);
    }

    void goodbyeLeavesNothingBehind()
    {
        // As at shutdown: the main window is already hidden.
        QWidget main;
        main.show();
        main.hide();
        QSignalSpy lastClosed(qApp, &QGuiApplication::lastWindowClosed);
        QElapsedTimer shown;
        shown.start();
        frmGoodbye::ShowBriefly(150);
        QVERIFY(shown.elapsed() >= 150);
        for (QWidget* window : QApplication::topLevelWidgets())
            QVERIFY2(!qobject_cast<frmGoodbye*>(window), "the farewell window outlived the call");
        QVERIFY(main.isHidden());
        QCOMPARE(lastClosed.count(), 0);
    }

    void helpShowsTopics()
    {
        frmHelp help;
        auto* text = help.findChild<QTextBrowser*>();
        auto* topics = help.findChild<QListWidget*>();
        QVERIFY(text && topics && topics->count() > 5);
        help.show();
        QVERIFY(QTest::qWaitForWindowExposed(&help));
        const int last = topics->count() - 1;
        help.ShowTopic(topics->item(last)->data(Qt::UserRole).toString());
        QCOMPARE(topics->currentRow(), last);
        QVERIFY(text->verticalScrollBar()->value() > 0);
        // An unknown topic goes back to the top.
        help.ShowTopic(QStringLiteral("no-such-topic"));
        QCOMPARE(topics->currentRow(), 0);
        QCOMPARE(text->verticalScrollBar()->value(), 0);
    }

    // A few icons the main window shows at once; the app icon's sizes are the install check's.
    void iconsRender_data()
    {
        QTest::addColumn<QString>("resource");
        for (const char* name : {"lumbra", "thumbs", "myimages", "slideshow"})
            QTest::newRow(name) << QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name));
    }
    void iconsRender()
    {
        QFETCH(QString, resource);
        QVERIFY2(QSvgRenderer(resource).isValid(), "missing from the resources, or not valid SVG");
        const QImage image = QIcon(resource).pixmap(24, 24).toImage();
        int painted = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                painted += qAlpha(image.pixel(x, y)) > 0;
        QVERIFY2(painted >= 24 * 24 / 10, qPrintable(QStringLiteral("only %1 pixels painted").arg(painted)));
    }
};

LUMBRA_TEST_MAIN(tst_infowindows)
#include "tst_infowindows.moc"
