#include "app/DialogAnswers.h"
#include "TestWorld.h"

#include "app/FileChooser.h"
#include "imaging/PictureEdits.h"
#include "imaging/PictureLoader.h"
#include "viewing/frmWorkshop.h"

#include <QCryptographicHash>
#include <QImageReader>

#include <memory>

using Kind = PictureEdits::Kind;
Q_DECLARE_METATYPE(PictureEdits::Kind)

namespace {

// 3 x 2 pixels, each corner its own colour, so every turn and flip shows where it went.
QImage corners()
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setPixel(0, 0, qRgb(255, 0, 0));
    image.setPixel(2, 0, qRgb(0, 255, 0));
    image.setPixel(0, 1, qRgb(0, 0, 255));
    image.setPixel(2, 1, qRgb(0, 0, 0));
    return image;
}

QByteArray hashOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly)
               ? QCryptographicHash::hash(file.readAll(), QCryptographicHash::Md5)
               : QByteArray();
}

} // namespace

class tst_Workshop : public QObject
{
    Q_OBJECT

    int m_folders = 0;

private slots:
    void cleanup() { FileChooser::SetAnswer({}); }

    void appliesEditsInOrder_data()
    {
        QTest::addColumn<QList<Kind>>("edits");
        QTest::addColumn<bool>("undoLast");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QRgb>("topLeft");
        QTest::addColumn<QRgb>("topRight");
        const QRgb red = qRgb(255, 0, 0), green = qRgb(0, 255, 0), blue = qRgb(0, 0, 255),
                   black = qRgb(0, 0, 0);
        QTest::newRow("rotate right: the bottom-left corner comes to the top")
            << QList<Kind>{Kind::RotateRight} << false << QSize(2, 3) << blue << red;
        QTest::newRow("rotate left: the top-right corner comes to the top left")
            << QList<Kind>{Kind::RotateLeft} << false << QSize(2, 3) << green << black;
        QTest::newRow("flip horizontal")
            << QList<Kind>{Kind::FlipHorizontal} << false << QSize(3, 2) << green << red;
        QTest::newRow("flip vertical")
            << QList<Kind>{Kind::FlipVertical} << false << QSize(3, 2) << blue << black;
        QTest::newRow("an edit taken back") << QList<Kind>{Kind::FlipVertical, Kind::RotateRight}
                                            << true << QSize(3, 2) << blue << black;
    }

    void appliesEditsInOrder()
    {
        QFETCH(QList<Kind>, edits);
        QFETCH(bool, undoLast);
        QFETCH(QSize, size);
        PictureEdits list;
        for (Kind kind : edits)
            list.Add(kind);
        if (undoLast)
            list.UndoLast();
        const QImage original = corners();
        const QImage result = list.Apply(original);
        QCOMPARE(result.size(), size);
        QCOMPARE(list.ResultSize(original.size()), size);
        QTEST(result.pixel(0, 0), "topLeft");
        QTEST(result.pixel(size.width() - 1, 0), "topRight");
        QCOMPARE(original, corners());
    }

    void keepsProportions_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        // The width the height gives back: rounding may leave it a pixel or two off.
        QTest::addColumn<int>("widthBack");
        QTest::newRow("landscape halved") << QSize(1600, 1200) << 800 << 600 << 800;
        QTest::newRow("portrait") << QSize(1200, 1600) << 300 << 400 << 300;
        QTest::newRow("rounded to the nearest pixel") << QSize(1000, 333) << 500 << 167 << 502;
        QTest::newRow("never below one pixel") << QSize(3000, 10) << 100 << 1 << 300;
    }

    void keepsProportions()
    {
        QFETCH(QSize, size);
        QFETCH(int, width);
        QFETCH(int, height);
        QCOMPARE(PictureEdits::HeightFor(size, width), height);
        QTEST(PictureEdits::WidthFor(size, height), "widthBack");
    }

    void savesUnderANewName_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("written");
        QTest::addColumn<QByteArray>("format");
        QTest::addColumn<bool>("originalKept");
        QTest::newRow("JPEG") << "turned.jpg" << 0 << "turned.jpg" << QByteArray("jpeg") << true;
        QTest::newRow("no extension: the original's format")
            << "turned" << 0 << "turned.png" << QByteArray("png") << true;
        QTest::newRow("the original, not replaced after no")
            << "beach.png" << int(QMessageBox::No) << "beach.png" << QByteArray("png") << true;
        QTest::newRow("the original, replaced after yes")
            << "beach.png" << int(QMessageBox::Yes) << "beach.png" << QByteArray("png") << false;
    }

    void savesUnderANewName()
    {
        QFETCH(QString, typed);
        QFETCH(int, answer);
        QFETCH(QString, written);
        QFETCH(QByteArray, format);
        QFETCH(bool, originalKept);
        const QString folder =
            property("worldPath").toString() + QStringLiteral("/shop%1/").arg(++m_folders);
        QDir().mkpath(folder);
        QImage picture(40, 20, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        QVERIFY(picture.save(folder + "beach.png"));
        const QByteArray before = hashOf(folder + "beach.png");

        frmWorkshop workshop;
        QVERIFY(workshop.OpenPicture(folder + "beach.png"));
        workshop.RotateRight();
        QVERIFY(workshop.Edited());
        FileChooser::Request asked;
        FileChooser::SetAnswer([&](const FileChooser::Request& request) {
            asked = request;
            return QStringList{folder + typed};
        });
        DialogAnswers answers({QMessageBox::StandardButton(answer)});
        const bool saved = workshop.SaveAs();

        QCOMPARE(asked.fileName, QStringLiteral("beach (edited).png"));
        QCOMPARE(answers.seen.size(), answer ? 1 : 0);
        QCOMPARE(saved, answer != int(QMessageBox::No));
        QCOMPARE(workshop.Edited(), !saved);
        QCOMPARE(hashOf(folder + "beach.png") == before, originalKept);
        QImageReader reader(folder + written);
        QCOMPARE(reader.format(), format);
        QCOMPARE(reader.size(), saved ? QSize(20, 40) : QSize(40, 20));
    }
};

LUMBRA_TEST_MAIN(tst_Workshop)
#include "tst_workshop.moc"
