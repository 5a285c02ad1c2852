#include "TestWorld.h"

#include "viewing/frmPageSetup.h"
#include "viewing/PageSetup.h"
#include "viewing/PicturePrinter.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>

class tst_PageSetup : public QObject
{
    Q_OBJECT

    QString m_folder;

private Q_SLOTS:
    void initTestCase() { m_folder = property("worldPath").toString(); }
    void init() { PageSetup::Current() = {}; }

    void acceptAndReopen_data()
    {
        QTest::addColumn<int>("layout");
        QTest::addColumn<int>("aspect");
        QTest::addColumn<int>("source");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("byOK");
        QTest::addColumn<QList<int>>("values");
        QTest::addColumn<QString>("copiesShown");
        QTest::newRow("portrait, stretched, third tray, 12 copies")
            << 1 << 1 << 2 << "12" << true << QList<int>{1, 1, 2, 11} << "12";
        QTest::newRow("letters among the digits are dropped")
            << 0 << 0 << 0 << "3x-. 5" << true << QList<int>{0, 0, 0, 34} << "35";
        QTest::newRow("empty copies box stored as -1, shown as 0")
            << 0 << 1 << 0 << "" << true << QList<int>{0, 1, 0, -1} << "0";
        QTest::newRow("closed without OK keeps the defaults")
            << 1 << 1 << 3 << "7" << false << QList<int>{0, 0, 0, 0} << "1";
    }
    void acceptAndReopen()
    {
        QFETCH(int, layout);
        QFETCH(int, aspect);
        QFETCH(int, source);
        QFETCH(QString, typed);
        QFETCH(bool, byOK);
        QFETCH(QList<int>, values);
        {
            frmPageSetup dialog;
            dialog.show();
            dialog.opLayout[std::size_t(layout)]->click();
            dialog.opAspect[std::size_t(aspect)]->click();
            dialog.cboSource->setCurrentIndex(source);
            dialog.txtCopies->clear();
            QTest::keyClicks(dialog.txtCopies, typed);
            dialog.chkCenter->click();
            if (byOK)
                QTest::mouseClick(dialog.cmdOK, Qt::LeftButton);
            else
                QTest::keyClick(&dialog, Qt::Key_Escape);
        }
        const auto& stored = PageSetup::Current().Values;
        QCOMPARE(QList<int>(stored.begin(), stored.end()), values);
        QCOMPARE(PageSetup::Current().Center, byOK);

        frmPageSetup again;
        QVERIFY(again.opLayout[std::size_t(values[0])]->isChecked());
        QVERIFY(again.opAspect[std::size_t(values[1])]->isChecked());
        QCOMPARE(again.cboSource->currentIndex(), values[2]);
        QTEST(again.txtCopies->text(), "copiesShown");
        QVERIFY(!again.chkCenter->isChecked());
    }

    void targetRect_data()
    {
        // A page of 8 x 10 inches at 300 dots per inch; 3780 dots per metre is 96 per inch.
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<QSizeF>("dpm");
        QTest::addColumn<QRectF>("page");
        QTest::addColumn<bool>("stretch");
        QTest::addColumn<bool>("centre");
        QTest::addColumn<QRectF>("expected");
        const QRectF page(0, 0, 2400, 3000);
        QTest::newRow("original, density unknown: 96 dpi, top left")
            << QSize(96, 48) << QSizeF() << page << false << false << QRectF(0, 0, 300, 150);
        QTest::newRow("original at the file's 300 dpi")
            << QSize(600, 300) << QSizeF(11811, 11811) << page << false << false
            << QRectF(0, 0, 600, 300);
        QTest::newRow("original, unequal densities keep the printed proportions")
            << QSize(96, 96) << QSizeF(3780, 7560) << page << false << false
            << QRectF(0, 0, 300, 150);
        QTest::newRow("original larger than the page is fitted, not cut, centred")
            << QSize(4800, 2400) << QSizeF() << page << false << true << QRectF(0, 900, 2400, 1200);
        QTest::newRow("stretched, wider than the page: fitted by width")
            << QSize(200, 100) << QSizeF() << page << true << false << QRectF(0, 0, 2400, 1200);
        QTest::newRow("stretched, taller than the page: fitted by height, centred")
            << QSize(100, 300) << QSizeF() << page << true << true << QRectF(700, 0, 1000, 3000);
        QTest::newRow("top left is the printable area's")
            << QSize(96, 48) << QSizeF() << QRectF(100, 200, 2400, 3000) << false << false
            << QRectF(100, 200, 300, 150);
    }
    void targetRect()
    {
        QFETCH(QSize, pixels);
        QFETCH(QSizeF, dpm);
        QFETCH(QRectF, page);
        QFETCH(bool, stretch);
        QFETCH(bool, centre);
        QFETCH(QRectF, expected);
        PageSetup setup;
        setup.Values[1] = stretch ? 1 : 0;
        setup.Center = centre;
        // Whole device dots are close enough; densities in dots per metre are not exact inches.
        QCOMPARE(PicturePrinter::TargetRect(pixels, dpm, page, 300, setup).toRect(),
                 expected.toRect());
    }

    // The whole print path on a PDF printer: an empty copies box still prints one page.
    void printsToPdf()
    {
        QImage image(200, 100, QImage::Format_RGB32);
        image.fill(Qt::red);
        const QString picture = m_folder + QStringLiteral("/red.png");
        QVERIFY(image.save(picture));
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(m_folder + QStringLiteral("/red.pdf"));
        PageSetup setup;
        setup.Values[3] = -1;
        QString reason;
        QVERIFY2(PicturePrinter::PrintFile(picture, printer, setup, &reason), qPrintable(reason));
        QFile pdf(printer.outputFileName());
        QVERIFY(pdf.open(QIODevice::ReadOnly));
        const QByteArray bytes = pdf.readAll();
        QVERIFY(bytes.startsWith("%PDF-"));
        QCOMPARE(bytes.count("/Type /Page\n"), 1);
    }
};

LUMBRA_TEST_MAIN(tst_PageSetup)
#include "tst_pagesetup.moc"
