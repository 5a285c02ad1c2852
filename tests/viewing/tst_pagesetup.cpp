#include "TestWorld.h"

#include "viewing/frmPageSetup.h"
#include "viewing/PageSetup.h"
#include "viewing/PicturePrinter.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPrinter>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QStandardPaths>

class tst_PageSetup : public QObject
{
    Q_OBJECT

    QString m_folder;

    static QString run(const QString& program, const QStringList& arguments)
    {
        QProcess process;
        process.start(program, arguments);
        if (!process.waitForFinished(30000) || process.exitCode() != 0)
            return {};
        return QString::fromUtf8(process.readAllStandardOutput());
    }

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

    void printsToPdf_data()
    {
        // Where the red picture is and where the paper stays white, as fractions of the page.
        QTest::addColumn<QList<int>>("values");
        QTest::addColumn<bool>("centre");
        QTest::addColumn<int>("pages");
        QTest::addColumn<bool>("wide");
        QTest::addColumn<QList<QPointF>>("red");
        QTest::addColumn<QList<QPointF>>("white");
        QTest::newRow("landscape, stretched, centred, two copies")
            << QList<int>{0, 1, 0, 1} << true << 2 << true << QList<QPointF>{{0.5, 0.5}}
            << QList<QPointF>{{0.5, 0.06}, {0.5, 0.94}};
        QTest::newRow("portrait, 2 x 1 inches, empty copies box prints one")
            << QList<int>{1, 0, 0, -1} << false << 1 << false << QList<QPointF>{{0.12, 0.05}}
            << QList<QPointF>{{0.5, 0.05}, {0.12, 0.2}};
    }
    void printsToPdf()
    {
        QFETCH(QList<int>, values);
        QFETCH(bool, centre);
        const QString pdfinfo = QStandardPaths::findExecutable(QStringLiteral("pdfinfo"));
        const QString pdftoppm = QStandardPaths::findExecutable(QStringLiteral("pdftoppm"));
        if (pdfinfo.isEmpty() || pdftoppm.isEmpty())
            QSKIP("pdfinfo and pdftoppm (poppler-utils) are needed to read the PDF back");

        // 200 x 100 pixels at 100 dots per inch: 2 x 1 inches on paper.
        QImage image(200, 100, QImage::Format_RGB32);
        image.fill(Qt::red);
        image.setDotsPerMeterX(3937);
        image.setDotsPerMeterY(3937);
        const QString picture = m_folder + QStringLiteral("/red.png");
        QVERIFY(image.save(picture));

        PageSetup setup;
        std::copy(values.begin(), values.end(), setup.Values.begin());
        setup.Center = centre;
        const QString pdf = m_folder + u'/' + QTest::currentDataTag() + QStringLiteral(".pdf");
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(pdf);
        printer.setPageSize(QPageSize(QPageSize::A4));
        QString reason;
        QVERIFY2(PicturePrinter::PrintFile(picture, printer, setup, &reason), qPrintable(reason));

        const QString info = run(pdfinfo, {pdf});
        const auto pages = QRegularExpression(QStringLiteral("Pages:\\s+(\\d+)")).match(info);
        const auto size =
            QRegularExpression(QStringLiteral("Page size:\\s+([\\d.]+) x ([\\d.]+)")).match(info);
        QVERIFY2(pages.hasMatch() && size.hasMatch(), qPrintable(info));
        QTEST(pages.captured(1).toInt(), "pages");
        QTEST(size.captured(1).toDouble() > size.captured(2).toDouble(), "wide");

        const QString rendered = m_folder + QStringLiteral("/rendered");
        run(pdftoppm, {QStringLiteral("-r"), QStringLiteral("20"), QStringLiteral("-singlefile"),
                       QStringLiteral("-png"), pdf, rendered});
        const QImage page(rendered + QStringLiteral(".png"));
        QVERIFY(!page.isNull());
        const auto colourAt = [&page](QPointF at) {
            return page.pixelColor(int(at.x() * page.width()), int(at.y() * page.height()));
        };
        QFETCH(QList<QPointF>, red);
        QFETCH(QList<QPointF>, white);
        for (const QPointF at : red)
            QVERIFY2(colourAt(at).red() > 200 && colourAt(at).green() < 60,
                     qPrintable(colourAt(at).name()));
        for (const QPointF at : white)
            QVERIFY2(colourAt(at).lightness() > 240, qPrintable(colourAt(at).name()));
    }
};

LUMBRA_TEST_MAIN(tst_PageSetup)
#include "tst_pagesetup.moc"
