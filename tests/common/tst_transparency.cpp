#include "TestWorld.h"

#include "common/modTransparency.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

class tst_Transparency : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
