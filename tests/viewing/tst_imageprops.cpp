#include "TestWorld.h"

#include "common/AppGlobals.h"
#include "common/Utilities.h"
#include "viewing/frmImageProps.h"
#include "viewing/ImagePropsText.h"
#include "viewing/ucImgPreview.h"

#include <QImage>
#include <QLabel>
#include <QLocale>

class tst_ImageProps : public QObject
{
    Q_OBJECT

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
    // reads, so the time and folder rules are checked on the texts alone.
    void texts_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QDateTime>("modified");
        QTest::addColumn<QStringList>("info");
        const auto row = [](const char* tag, const QString& folder, const QDateTime& modified,
                            const QString& time, const QString& date) {
            QTest::newRow(tag) << folder + "a.jpg" << modified
                               << QStringList{"a.jpg",      folder, "2 KB", "400 pixels",
                                              "300 pixels", time,   date};
        };
        row("file at the root, folder keeps its separator", "/",
            QDateTime(QDate(2002, 11, 5), QTime(15, 7)), "3:07 PM, Tuesday", "Nov 5, 2002");
        row("just after midnight", "/p/", QDateTime(QDate(2021, 1, 1), QTime(0, 5)),
            "12:05 AM, Friday", "Jan 1, 2021");
        row("noon", "/p/", QDateTime(QDate(2019, 6, 30), QTime(12, 0)), "12:00 PM, Sunday",
            "Jun 30, 2019");
        row("gone before its date was read", "/p/", QDateTime(), "", "");
    }
    void texts()
    {
        QFETCH(QString, path);
        QFETCH(QDateTime, modified);
        // Day and month names stay English whatever the user's language.
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        const ImagePropsText::Texts texts =
            ImagePropsText::Describe(path, QStringLiteral("2 KB"), QSize(400, 300), modified);
        QLocale::setDefault(QLocale::c());
        QCOMPARE(texts.caption, QStringLiteral("Image Properties for a.jpg"));
        QTEST(QStringList(texts.info.begin(), texts.info.end()), "info");
    }

    // The dialog reads the file: its size text and the picture's own size, not the preview's;
    // of a vanished file only the name is left.
    void dialogReadsTheFile_data()
    {
        QTest::addColumn<bool>("present");
        QTest::newRow("larger than the preview") << true;
        QTest::newRow("vanished") << false;
    }
    void dialogReadsTheFile()
    {
        QFETCH(bool, present);
        const QString path = property("worldPath").toString() + QStringLiteral("/Beach.png");
        QVERIFY(QImage(1600, 900, QImage::Format_RGB32).save(path));
        if (!present)
            QVERIFY(QFile::remove(path));
        Globals().CurrentPicture = path;
        frmImageProps* dialog = frmImageProps::ShowCurrent();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->ucImage->isVisible(), present);
        const QStringList info = infoOf(dialog);
        const QStringList read{"Beach.png", property("worldPath").toString() + u'/',
                               Utilities::FileSizeText(path).value_or(""), "1600 pixels",
                               "900 pixels"};
        QCOMPARE(info.mid(0, 5), present ? read : QStringList(5, QString()));
        QCOMPARE(info.last().isEmpty(), !present);
    }
};

LUMBRA_TEST_MAIN(tst_ImageProps)
#include "tst_imageprops.moc"
