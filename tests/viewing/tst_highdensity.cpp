#include "TestWorld.h"

#include "browser/SlideDecoder.h"
#include "viewing/ucImgPreview.h"

#include <QImage>
#include <QPixmap>

// Runs on a screen of two device pixels per logical pixel (QT_SCALE_FACTOR=2, set by the
// build): pictures must be decoded for the device pixels, or they are blown up and blurred.
class tst_HighDensity : public QObject
{
    Q_OBJECT

    // Columns of alternating black and white device pixels: any blur turns them grey.
    QString stripes(const QString& name, QSize size)
    {
        QImage image(size, QImage::Format_RGB32);
        for (int x = 0; x < size.width(); ++x)
            for (int y = 0; y < size.height(); ++y)
                image.setPixel(x, y, x % 2 ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
        const QString path = property("worldPath").toString() + u'/' + name;
        image.save(path);
        return path;
    }

    // The share of the element's device pixels that are still pure black or white.
    static double crispShare(ucImgPreview& preview)
    {
        const QImage shown = preview.grab().toImage();
        const qreal ratio = shown.devicePixelRatio();
        const QRect element = QRectF(preview.ElementRect().topLeft() * ratio,
                                     preview.ElementRect().size() * ratio)
                                  .toRect()
                                  .adjusted(2, 2, -2, -2);
        int crisp = 0;
        int all = 0;
        for (int y = element.top(); y <= element.bottom(); y += 7)
            for (int x = element.left(); x <= element.right(); ++x) {
                const int grey = qGray(shown.pixel(x, y));
                crisp += grey < 40 || grey > 215 ? 1 : 0;
                ++all;
            }
        return all ? double(crisp) / all : 0;
    }

private Q_SLOTS:
    void initTestCase() { QCOMPARE(qApp->devicePixelRatio(), 2.0); }

    void previewDecodesForDevicePixels_data()
    {
        QTest::addColumn<QSize>("natural");
        QTest::addColumn<bool>("stretch");
        QTest::addColumn<QSize>("decoded");
        QTest::addColumn<qreal>("ratio");
        // The pane is 400x300 logical: 800x600 device pixels.
        QTest::newRow("large picture: every device pixel") << QSize(800, 400) << false << QSize(800, 400) << 2.0;
        QTest::newRow("larger still: decoded down to them") << QSize(1600, 800) << false << QSize(800, 400) << 2.0;
        QTest::newRow("small picture: its own pixels, its own size") << QSize(100, 50) << false << QSize(100, 50) << 1.0;
        QTest::newRow("stretched: enlarged to device pixels") << QSize(100, 50) << true << QSize(800, 400) << 2.0;
    }
    void previewDecodesForDevicePixels()
    {
        QFETCH(QSize, natural);
        QFETCH(bool, stretch);
        QFETCH(QSize, decoded);
        QFETCH(qreal, ratio);
        ucImgPreview preview;
        preview.resize(400, 300);
        preview.setStretchMode(stretch);
        QSignalSpy loaded(&preview, &ucImgPreview::Loaded);
        preview.setFileName(stripes(QStringLiteral("stripes.png"), natural));
        QVERIFY(loaded.wait());
        QCOMPARE(preview.DecodedImage().size(), decoded);
        QCOMPARE(preview.DecodedImage().devicePixelRatio(), ratio);
        if (natural == decoded && ratio == 2.0)
            QVERIFY2(crispShare(preview) > 0.95, "the picture was drawn blurred");
    }

    // A slide decoded ahead is as sharp as one the pane decodes itself.
    void slideDecodedAheadForDevicePixels()
    {
        ucImgPreview preview;
        preview.resize(400, 300);
        preview.show();
        QVERIFY(QTest::qWaitForWindowExposed(&preview));
        SlideDecoder decoder(&preview);
        const QString first = stripes(QStringLiteral("first.png"), QSize(200, 100));
        const QString next = stripes(QStringLiteral("next.png"), QSize(800, 400));
        QSignalSpy prepared(&decoder, &SlideDecoder::Prepared);
        decoder.Show(first, next);
        QVERIFY(prepared.wait());
        QVERIFY(decoder.IsReady(next));
        decoder.Show(next, {});
        QCOMPARE(preview.DecodedImage().size(), QSize(800, 400));
        QCOMPARE(preview.DecodedImage().devicePixelRatio(), 2.0);
        QVERIFY2(crispShare(preview) > 0.95, "the slide was drawn blurred");
    }
};

LUMBRA_TEST_MAIN(tst_HighDensity)
#include "tst_highdensity.moc"
