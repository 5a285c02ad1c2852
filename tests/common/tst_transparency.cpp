#include "TestWorld.h"

#include "common/modTransparency.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

class tst_Transparency : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void applyOpacity_data()
    {
        QTest::addColumn<int>("opacity");
        QTest::addColumn<double>("expected");
        QTest::newRow("invisible") << 0 << 0.0;
        QTest::newRow("half way") << 125 << 0.49;
        QTest::newRow("250 is fully opaque") << 250 << 1.0;
    }
    void applyOpacity()
    {
        QFETCH(int, opacity);
        QFETCH(double, expected);
        QWidget window;
        window.show();
        // Start from a blended state, so "opaque" has to undo it.
        modTransparency::ApplyOpacity(&window, 40);
        modTransparency::ApplyOpacity(&window, opacity);
        QVERIFY(qAbs(window.windowOpacity() - expected) < 0.01);
    }

    void fadeInEndsOpaqueAndShown()
    {
        QWidget window;
        modTransparency::FadeWindow(&window, true);
        QVERIFY(window.isVisible());
        QCOMPARE(window.windowOpacity(), 1.0);
        modTransparency::FadeWindow(&window, false);
        QVERIFY(window.windowOpacity() < 0.01);
        modTransparency::SetSeeThrough(&window, false);
        QCOMPARE(window.windowOpacity(), 1.0);
    }

    void windowClosedDuringFade()
    {
        auto* window = new QWidget;
        window->setAttribute(Qt::WA_DeleteOnClose);
        QPointer<QWidget> guard(window);
        window->show();
        QTimer::singleShot(5, window, &QWidget::close);
        modTransparency::FadeWindow(window, false);
        QTRY_VERIFY(!guard);
    }
};

LUMBRA_TEST_MAIN(tst_Transparency)
#include "tst_transparency.moc"
