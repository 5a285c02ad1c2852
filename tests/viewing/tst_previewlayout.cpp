#include "TestWorld.h"

#include "viewing/PreviewLayout.h"

class tst_PreviewLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fit_data()
    {
        QTest::addColumn<QSizeF>("natural");
        QTest::addColumn<QSizeF>("inner");
        QTest::addColumn<QSizeF>("expected");
        QTest::newRow("smaller stays natural")
            << QSizeF(100, 50) << QSizeF(400, 300) << QSizeF(100, 50);
        QTest::newRow("wider than high, too high when fitted by width: by height")
            << QSizeF(800, 700) << QSizeF(400, 300) << QSizeF(300 / (700.0 / 800), 300);
        QTest::newRow("taller: fitted by height")
            << QSizeF(300, 600) << QSizeF(400, 300) << QSizeF(150, 300);
        QTest::newRow("square larger than the area takes the taller branch")
            << QSizeF(1000, 1000) << QSizeF(400, 300) << QSizeF(300, 300);
        QTest::newRow("taller, too wide when fitted by height: by width")
            << QSizeF(390, 400) << QSizeF(200, 300) << QSizeF(200, 200 / (390.0 / 400));
        QTest::newRow("area with a fraction rounds to even")
            << QSizeF(1000, 500) << QSizeF(400.5, 300) << QSizeF(400, 200);
        QTest::newRow("as large as a fractional area both ways shrinks")
            << QSizeF(400, 300) << QSizeF(399.6, 299.6) << QSizeF(400, 300);
    }
    void fit()
    {
        QFETCH(QSizeF, natural);
        QFETCH(QSizeF, inner);
        QFETCH(QSizeF, expected);
        const QSizeF fitted = PreviewLayout::FitSize(natural, inner);
        QVERIFY2(qAbs(fitted.width() - expected.width()) < 1e-9 &&
                     qAbs(fitted.height() - expected.height()) < 1e-9,
                 qPrintable(QStringLiteral("%1 x %2").arg(fitted.width()).arg(fitted.height())));
    }

    void zoomCycle()
    {
        // A 100-wide picture in a 180-wide container: 125, 150, 175, then back to natural size.
        const QSizeF picture(100, 80);
        QSizeF element = picture;
        int level = 0;
        QList<double> widths;
        QList<bool> stretched;
        for (int i = 0; i < 5; ++i) {
            const PreviewLayout::ZoomStep step =
                PreviewLayout::NextZoom(level, picture, 180, element);
            level = step.level;
            element = step.size;
            widths << element.width();
            stretched << step.stretch;
        }
        QCOMPARE(widths, (QList<double>{125, 150, 175, 100, 125}));
        QCOMPARE(stretched, (QList<bool>{true, true, true, false, true}));
        QCOMPARE(element.height(), 100.0);
        // Already at the width it would go back to, the element shrinks to a third.
        const auto same = PreviewLayout::NextZoom(0, picture, 110, picture);
        QCOMPARE(same.size, picture / 3);
    }
};

LUMBRA_TEST_MAIN(tst_PreviewLayout)
#include "tst_previewlayout.moc"
