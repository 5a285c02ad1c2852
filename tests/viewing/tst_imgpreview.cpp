#include "TestWorld.h"

#include "common/AppGlobals.h"
#include "viewing/ucImgPreview.h"

#include <QImage>

class tst_ImgPreview : public QObject
{
    Q_OBJECT

    QString picture(const QString& name, QSize size)
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::darkGreen);
        const QString path = property("worldPath").toString() + u'/' + name;
        image.save(path);
        return path;
    }

private Q_SLOTS:
    void fitsCentresAndDecodesAtTheSizeShown_data()
    {
        QTest::addColumn<QSize>("natural");
        QTest::addColumn<QRectF>("element");
        QTest::newRow("wide picture fitted by width") << QSize(800, 400) << QRectF(0, 50, 400, 200);
        QTest::newRow("small picture kept and centred")
            << QSize(100, 50) << QRectF(150, 125, 100, 50);
    }
    void fitsCentresAndDecodesAtTheSizeShown()
    {
        QFETCH(QSize, natural);
        QFETCH(QRectF, element);
        ucImgPreview preview;
        preview.resize(400, 300);
        QSignalSpy loaded(&preview, &ucImgPreview::Loaded);
        const QString path = picture(QStringLiteral("fit.png"), natural);
        preview.setFileName(path);
        QCOMPARE(preview.ImgWidth(), natural.width());
        QCOMPARE(preview.ImgHeight(), natural.height());
        QCOMPARE(preview.ElementRect(), element);
        QVERIFY(preview.ElementVisible());
        QCOMPARE(Globals().CurrentPicture, path);
        QVERIFY(loaded.wait());
        QCOMPARE(loaded.value(0).value(0).toBool(), true);
        QVERIFY(preview.DecodedImage().width() <= int(element.width()) + 1);
        QVERIFY(preview.DecodedImage().height() <= int(element.height()) + 1);
    }

    void sameNameKeepsThePictureUnlessStretching()
    {
        ucImgPreview preview;
        preview.resize(400, 300);
        const QString path = picture(QStringLiteral("same.png"), QSize(800, 400));
        preview.setFileName(path);
        picture(QStringLiteral("same.png"), QSize(200, 200));
        preview.setFileName(path);
        QCOMPARE(preview.ImgWidth(), 800);

        // Stretch mode always reads the file, and records the element's size at that moment.
        preview.setStretchMode(true);
        preview.setFileName(path);
        QCOMPARE(preview.ImgWidth(), 400);
        QCOMPARE(preview.ImgHeight(), 200);
        QCOMPARE(preview.ElementRect(), QRectF(0, 0, 400, 300));
    }

    void unreadableFileHidesThePicture()
    {
        ucImgPreview preview;
        preview.resize(400, 300);
        const QString path = property("worldPath").toString() + QStringLiteral("/broken.jpg");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("not a picture at all");
        file.close();
        QSignalSpy loaded(&preview, &ucImgPreview::Loaded);
        preview.setFileName(path);
        QVERIFY(!preview.ElementVisible());
        QCOMPARE(loaded.count(), 1);
        QCOMPARE(loaded.value(0).value(0).toBool(), false);
    }
};

LUMBRA_TEST_MAIN(tst_ImgPreview)
#include "tst_imgpreview.moc"
