#include "TestWorld.h"

#include "common/AppGlobals.h"
#include "common/Utilities.h"
#include "viewing/frmImageProps.h"
#include "viewing/frmViewImage.h"
#include "viewing/ImagePropsText.h"
#include "viewing/ucImgPreview.h"

#include <QAction>
#include <QImage>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QToolBar>

class tst_ImageProps : public QObject
{
    Q_OBJECT

    QString picture(const QString& name, QSize size = {400, 300})
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::darkYellow);
        const QString path = property("worldPath").toString() + u'/' + name;
        image.save(path);
        return path;
    }

    static QStringList infoOf(const frmImageProps* dialog)
    {
        QStringList lines;
        for (const QLabel* label : dialog->lblInfo)
            lines << label->text();
        return lines;
    }

private Q_SLOTS:
    void cleanup()
    {
        if (frmImageProps* dialog = frmImageProps::Current())
            dialog->close();
        QTRY_VERIFY(!frmImageProps::Current());
        Globals().CurrentPicture.clear();
    }

    // Files at the root cannot be made here, and a file cannot be made to vanish between two
    // reads, so these rules are checked on the texts alone.
    void rootFileAndLostDate_data()
    {
        QTest::addColumn<QDateTime>("modified");
        QTest::addColumn<QStringList>("when");
        QTest::newRow("file at the root, folder keeps its separator")
            << QDateTime(QDate(2002, 11, 5), QTime(15, 7))
            << QStringList{"3:07 PM, Tuesday", "Nov 5, 2002"};
        QTest::newRow("gone before its date was read") << QDateTime() << QStringList{"", ""};
    }
    void rootFileAndLostDate()
    {
        QFETCH(QDateTime, modified);
        QFETCH(QStringList, when);
        const ImagePropsText::Texts texts =
            ImagePropsText::Describe("/a.jpg", QStringLiteral("2 KB"), QSize(400, 300), modified);
        QCOMPARE(texts.caption, QStringLiteral("Image Properties for a.jpg"));
        QCOMPARE(QStringList(texts.info.begin(), texts.info.end()),
                 QStringList({"a.jpg", "/", "2 KB", "400 pixels", "300 pixels"}) + when);
    }

    void describesTheFile_data()
    {
        QTest::addColumn<QSize>("natural");
        QTest::addColumn<QDateTime>("modified");
        QTest::addColumn<QStringList>("when");
        QTest::newRow("afternoon, picture larger than the preview: its own size")
            << QSize(1600, 900) << QDateTime(QDate(2002, 11, 5), QTime(15, 7))
            << QStringList{"3:07 PM, Tuesday", "Nov 5, 2002"};
        QTest::newRow("just after midnight, picture smaller than the preview")
            << QSize(40, 30) << QDateTime(QDate(2021, 1, 1), QTime(0, 5))
            << QStringList{"12:05 AM, Friday", "Jan 1, 2021"};
        QTest::newRow("noon") << QSize(400, 300) << QDateTime(QDate(2019, 6, 30), QTime(12, 0))
                              << QStringList{"12:00 PM, Sunday", "Jun 30, 2019"};
    }
    void describesTheFile()
    {
        QFETCH(QSize, natural);
        QFETCH(QDateTime, modified);
        QFETCH(QStringList, when);
        QFile file(picture(QStringLiteral("Beach.png"), natural));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(modified, QFileDevice::FileModificationTime));
        file.close();
        Globals().CurrentPicture = file.fileName();
        // Day and month names stay English whatever the user's language.
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        frmImageProps* dialog = frmImageProps::ShowCurrent();
        QLocale::setDefault(QLocale::c());
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->windowOpacity(), 1.0);
        QCOMPARE(dialog->lblCaption->text(), QStringLiteral("Image Properties for Beach.png"));
        QCOMPARE(infoOf(dialog), QStringList({"Beach.png", property("worldPath").toString() + u'/',
                                              *Utilities::FileSizeText(file.fileName()),
                                              QString::number(natural.width()) + " pixels",
                                              QString::number(natural.height()) + " pixels"}) +
                                     when);
    }

    void vanishedPictureShowsOnlyItsName()
    {
        const QString path = picture(QStringLiteral("gone.png"));
        QVERIFY(QFile::remove(path));
        Globals().CurrentPicture = path;
        frmImageProps* dialog = frmImageProps::ShowCurrent();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->lblCaption->text(), QStringLiteral("Image Properties for gone.png"));
        QCOMPARE(infoOf(dialog), QStringList(7, QString()));
        QVERIFY(!dialog->ucImage->isVisible());
    }

    void picInfoOpensOneDialogThatFadesOut()
    {
        QVERIFY(!frmImageProps::ShowCurrent());
        frmViewImage window;
        window.setFile(picture(QStringLiteral("window.png")));
        window.Load();
        // The button describes the window's picture, whatever another pane showed last.
        Globals().CurrentPicture = picture(QStringLiteral("elsewhere.png"));
        window.Toolbar()->findChild<QAction*>(QStringLiteral("tlbMain(2)"))->trigger();
        frmImageProps* dialog = frmImageProps::Current();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->lblInfo[ImagePropsText::Name]->text(), QStringLiteral("window.png"));

        // Asked again for another picture, the open dialog turns to it.
        Globals().CurrentPicture = picture(QStringLiteral("second.png"));
        QCOMPARE(frmImageProps::ShowCurrent(), dialog);
        QCOMPARE(dialog->lblInfo[ImagePropsText::Name]->text(), QStringLiteral("second.png"));

        double opacityAtClose = -1;
        connect(dialog, &QDialog::accepted, this,
                [&] { opacityAtClose = dialog->windowOpacity(); });
        QTest::mouseClick(dialog->cmdOK, Qt::LeftButton);
        QTRY_VERIFY(!frmImageProps::Current());
        QCOMPARE(opacityAtClose, 0.0);
    }
};

LUMBRA_TEST_MAIN(tst_ImageProps)
#include "tst_imageprops.moc"
