#include "TestWorld.h"

#include "app/frmGoodbye.h"
#include "app/frmHelp.h"
#include "app/frmSplash.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QIcon>
#include <QImageReader>
#include <QListWidget>
#include <QPointer>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSvgRenderer>
#include <QTextBlock>
#include <QTextBrowser>

static QString sourcePath(const QString& relative)
{
    return QStringLiteral(LUMBRA_SOURCE_DIR "/") + relative;
}

class tst_infowindows : public QObject
{
    Q_OBJECT

private slots:
    void splashFinishesOnce_data()
    {
        QTest::addColumn<bool>("atStartUp");
        QTest::addColumn<bool>("click");
        QTest::newRow("at start-up, held to the end") << true << false;
        QTest::newRow("at start-up, clicked") << true << true;
        QTest::newRow("from the Help menu, held to the end") << false << false;
        QTest::newRow("from the Help menu, clicked") << false << true;
    }
    void splashFinishesOnce()
    {
        QFETCH(bool, atStartUp);
        QFETCH(bool, click);
        QPointer<frmSplash> splash = new frmSplash(atStartUp);
        QSignalSpy finished(splash.data(), &frmSplash::Finished);
        splash->Start();
        QVERIFY(splash->isVisible());
        QElapsedTimer held;
        held.start();
        if (click) {
            // Only the press: once it is handled the window is on its way out.
            QTest::mousePress(splash.data(), Qt::LeftButton);
            QCOMPARE(finished.count(), 1);
        } else {
            QVERIFY(finished.wait(frmSplash::HoldMilliseconds * 5));
            QVERIFY(held.elapsed() >= frmSplash::HoldMilliseconds * 9 / 10);
        }
        QTRY_VERIFY(splash.isNull());
        QCOMPARE(finished.count(), 1);
    }

    void goodbyeLeavesNothingBehind()
    {
        // As at shutdown: the main window is already hidden.
        QWidget main;
        main.show();
        main.hide();
        QSignalSpy lastClosed(qApp, &QGuiApplication::lastWindowClosed);
        QElapsedTimer shown;
        shown.start();
        frmGoodbye::ShowBriefly(150);
        QVERIFY(shown.elapsed() >= 150);
        for (QWidget* window : QApplication::topLevelWidgets())
            QVERIFY2(!qobject_cast<frmGoodbye*>(window), "the farewell window outlived the call");
        QVERIFY(main.isHidden());
        QCOMPARE(lastClosed.count(), 0);
    }

    void helpTopicsAndLinksLeadSomewhere()
    {
        frmHelp help;
        auto* text = help.findChild<QTextBrowser*>();
        auto* topics = help.findChild<QListWidget*>();
        QVERIFY(text && topics && topics->count() > 5);
        QSet<QString> anchors;
        QStringList links;
        for (QTextBlock block = text->document()->begin(); block.isValid(); block = block.next())
            for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment) {
                const QTextCharFormat format = fragment.fragment().charFormat();
                for (const QString& name : format.anchorNames())
                    anchors.insert(name);
                if (format.anchorHref().startsWith(u'#'))
                    links.append(format.anchorHref().mid(1));
            }
        QSet<QString> listed;
        for (int row = 0; row < topics->count(); ++row)
            listed.insert(topics->item(row)->data(Qt::UserRole).toString());
        QVERIFY2(anchors.contains(listed), "a topic without its place in the page");
        QVERIFY(!links.isEmpty());
        for (const QString& link : std::as_const(links))
            QVERIFY2(listed.contains(link), qPrintable(QStringLiteral("link to #") + link));

        help.show();
        QVERIFY(QTest::qWaitForWindowExposed(&help));
        const int last = topics->count() - 1;
        help.ShowTopic(topics->item(last)->data(Qt::UserRole).toString());
        QCOMPARE(topics->currentRow(), last);
        QVERIFY(text->verticalScrollBar()->value() > 0);
        // An unknown topic goes back to the top.
        help.ShowTopic(QStringLiteral("no-such-topic"));
        QCOMPARE(topics->currentRow(), 0);
        QCOMPARE(text->verticalScrollBar()->value(), 0);
    }

    void iconsRender_data()
    {
        QTest::addColumn<QString>("resource");
        // Every icon listed for the build, and every icon file, which must be listed to be found.
        QFile list(sourcePath(QStringLiteral("resources/CMakeLists.txt")));
        QVERIFY(list.open(QIODevice::ReadOnly | QIODevice::Text));
        static const QRegularExpression listed(QStringLiteral(R"(^\s*icons/([\w-]+\.svg)\s*$)"),
                                               QRegularExpression::MultilineOption);
        QStringList names = QDir(sourcePath(QStringLiteral("resources/icons"))).entryList({"*.svg"});
        for (const auto& match : listed.globalMatch(QString::fromUtf8(list.readAll())))
            names.append(match.captured(1));
        names.removeDuplicates();
        QVERIFY(!names.isEmpty());
        for (const QString& name : std::as_const(names))
            QTest::newRow(qPrintable(name)) << QStringLiteral(":/icons/") + name;
    }
    void iconsRender()
    {
        QFETCH(QString, resource);
        QVERIFY2(QSvgRenderer(resource).isValid(), "missing from the resources, or not valid SVG");
        const QImage image = QIcon(resource).pixmap(24, 24).toImage();
        int painted = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                painted += qAlpha(image.pixel(x, y)) > 0;
        QVERIFY2(painted >= 24 * 24 / 10, qPrintable(QStringLiteral("only %1 pixels painted").arg(painted)));
    }

    void samplesLoad_data()
    {
        QTest::addColumn<QString>("path");
        // The metafile is for the program's own player; the rest are the generator and its notes.
        const QDir samples(sourcePath(QStringLiteral("resources/samples")));
        for (const QFileInfo& file : samples.entryInfoList(QDir::Files, QDir::Name))
            if (!QStringList{"wmf", "py", "txt"}.contains(file.suffix().toLower()))
                QTest::newRow(qPrintable(file.fileName())) << file.filePath();
    }
    void samplesLoad()
    {
        QFETCH(QString, path);
        // Told from the content alone: by its name Qt would take a .dib for a headerless bitmap.
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QBuffer content;
        content.setData(file.readAll());
        content.open(QIODevice::ReadOnly);
        QImageReader reader(&content);
        // Icons are read by number, animations frame after frame.
        for (int i = 0; i < qMax(1, reader.imageCount()); ++i) {
            if (i > 0)
                reader.jumpToImage(i);
            QVERIFY2(!reader.read().isNull(), qPrintable(QStringLiteral("image %1: ").arg(i) + reader.errorString()));
        }
    }
};

LUMBRA_TEST_MAIN(tst_infowindows)
#include "tst_infowindows.moc"
