#include "TestWorld.h"

#include "app/frmGoodbye.h"
#include "app/MainMenus.h"
#include "app/MenuTable.h"
#include "app/frmHelp.h"
#include "app/frmSplash.h"

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QIcon>
#include <QImageReader>
#include <QListWidget>
#include <QPointer>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSvgRenderer>
#include <QTextBlock>
#include <QTextBrowser>

namespace {

QString sourcePath(const QString& relative)
{
    return QStringLiteral(LUMBRA_SOURCE_DIR "/") + relative;
}

// The anchors a document defines, and the anchors its internal links point at.
void collectAnchors(const QTextDocument& document, QSet<QString>& names, QStringList& links)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment) {
            const QTextCharFormat format = fragment.fragment().charFormat();
            for (const QString& name : format.anchorNames())
                names.insert(name);
            if (format.anchorHref().startsWith(u'#'))
                links.append(format.anchorHref().mid(1));
        }
    }
}

// The text of each section that starts at one of anchors, heading included, by anchor.
QHash<QString, QString> sectionTexts(const QTextDocument& document, const QSet<QString>& anchors)
{
    QHash<QString, QString> texts;
    QString current;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment)
            for (const QString& name : fragment.fragment().charFormat().anchorNames())
                if (anchors.contains(name))
                    current = name;
        if (!current.isEmpty())
            texts[current] += block.text() + u'\n';
    }
    return texts;
}

} // namespace

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
        QCOMPARE(finished.count(), 0);
        QElapsedTimer held;
        held.start();
        if (click) {
            // Only the press: once it is handled the window is on its way out.
            QTest::mousePress(splash.data(), Qt::LeftButton);
            QCOMPARE(finished.count(), 1);
        } else {
            QVERIFY(finished.wait(frmSplash::HoldMilliseconds * 5));
            QVERIFY2(held.elapsed() >= frmSplash::HoldMilliseconds * 9 / 10,
                     qPrintable(QStringLiteral("ended after %1 ms").arg(held.elapsed())));
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

    void helpTopicsLeadSomewhere()
    {
        frmHelp help;
        QCOMPARE(help.windowTitle(), QStringLiteral("Lumbra Help"));
        auto* text = help.findChild<QTextBrowser*>();
        auto* topics = help.findChild<QListWidget*>();
        QVERIFY(text && topics);
        QVERIFY2(text->toPlainText().size() > 2000, "the help page did not load");

        QSet<QString> anchors;
        QStringList links;
        collectAnchors(*text->document(), anchors, links);
        QVERIFY(topics->count() > 5);
        QSet<QString> listed;
        for (int row = 0; row < topics->count(); ++row) {
            const QString anchor = topics->item(row)->data(Qt::UserRole).toString();
            QVERIFY2(anchors.contains(anchor), qPrintable(QStringLiteral("topic #") + anchor));
            listed.insert(anchor);
        }
        // Every topic has text of its own beyond its heading, and every link leads to a topic.
        const QHash<QString, QString> sections = sectionTexts(*text->document(), listed);
        for (const QString& anchor : std::as_const(listed)) {
            const QString section = sections.value(anchor).trimmed();
            const qsizetype heading = section.indexOf(u'\n');
            QVERIFY2(heading > 0 && section.size() - heading > 80,
                     qPrintable(QStringLiteral("topic #") + anchor + QStringLiteral(" is empty")));
        }
        QVERIFY(!links.isEmpty());
        for (const QString& link : std::as_const(links))
            QVERIFY2(listed.contains(link), qPrintable(QStringLiteral("link to #") + link));

        help.show();
        QVERIFY(QTest::qWaitForWindowExposed(&help));
        const int last = topics->count() - 1;
        help.ShowTopic(topics->item(last)->data(Qt::UserRole).toString());
        QCOMPARE(topics->currentRow(), last);
        QVERIFY(text->verticalScrollBar()->value() > 0);
        help.ShowTopic(QString());
        QCOMPARE(topics->currentRow(), 0);
        QCOMPARE(text->verticalScrollBar()->value(), 0);
        help.ShowTopic(QStringLiteral("about"));
        QCOMPARE(topics->currentItem()->data(Qt::UserRole).toString(), QStringLiteral("about"));
        help.ShowTopic(QStringLiteral("no-such-topic"));
        QCOMPARE(topics->currentRow(), 0);
        QCOMPARE(text->verticalScrollBar()->value(), 0);
    }

    void helpNamesEveryCommand()
    {
        frmHelp help;
        const QString page = help.findChild<QTextBrowser*>()->toPlainText();
        // Entries the main window hides, and the pop-ups' own names, are not commands.
        const QStringList notCommands = {QStringLiteral("Internet Explorer\u00AE Background"),
                                         QStringLiteral("Internet Explorer")};
        QStringList captions;
        for (const MenuTable::Array& array : MenuTable::Arrays()) {
            if (array.name == MenuTable::Popups)
                continue;
            for (const MenuTable::Entry& entry : array.entries)
                if (!MainMenus::IsTitle(array.name, entry.index))
                    captions << QString(entry.caption).remove(u'&').trimmed();
        }
        for (const MenuTable::ToolButton& button : MenuTable::ToolbarButtons())
            captions << button.text;
        for (const QString& caption : std::as_const(captions)) {
            if (caption.isEmpty() || caption == QLatin1String("-") || notCommands.contains(caption))
                continue;
            QVERIFY2(page.contains(caption, Qt::CaseInsensitive),
                     qPrintable(QStringLiteral("the help never names ") + caption));
        }
    }

    void iconsRender_data()
    {
        QTest::addColumn<QString>("resource");
        // Every icon listed for the build, and every icon file, which must be listed to be found.
        QFile list(sourcePath(QStringLiteral("resources/CMakeLists.txt")));
        QVERIFY(list.open(QIODevice::ReadOnly | QIODevice::Text));
        QStringList names;
        static const QRegularExpression listed(QStringLiteral(R"(^\s*icons/([\w-]+\.svg)\s*$)"),
                                               QRegularExpression::MultilineOption);
        for (const auto& match : listed.globalMatch(QString::fromUtf8(list.readAll())))
            names.append(match.captured(1));
        names += QDir(sourcePath(QStringLiteral("resources/icons")))
                     .entryList({QStringLiteral("*.svg")});
        names.removeDuplicates();
        if (names.isEmpty())
            names.append(QStringLiteral("no icons listed"));
        for (const QString& name : std::as_const(names))
            QTest::newRow(qPrintable(name)) << QStringLiteral(":/icons/") + name;
    }

    void iconsRender()
    {
        QFETCH(QString, resource);
        QVERIFY2(QSvgRenderer(resource).isValid(), "missing from the resources, or not valid SVG");
        const QImage image = QIcon(resource).pixmap(24, 24).toImage();
        QVERIFY(!image.isNull());
        int painted = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                painted += qAlpha(image.pixel(x, y)) > 0;
        QVERIFY2(painted >= image.width() * image.height() / 10,
                 qPrintable(QStringLiteral("only %1 pixels painted").arg(painted)));
    }

    void samplesLoad_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("format");
        QTest::addColumn<int>("sizes");
        // The format as told from the content; the .dib must be a BMP file, whatever its name.
        const QHash<QString, QByteArray> formats = {
            {QStringLiteral("bmp"), "bmp"}, {QStringLiteral("dib"), "bmp"},
            {QStringLiteral("gif"), "gif"}, {QStringLiteral("jpg"), "jpeg"},
            {QStringLiteral("png"), "png"}, {QStringLiteral("tif"), "tiff"},
            {QStringLiteral("ico"), "ico"}, {QStringLiteral("cur"), "ico"},
        };
        // The metafile is for the program's own player; the rest are the generator and its notes.
        const QStringList notPictures = {QStringLiteral("wmf"), QStringLiteral("py"),
                                         QStringLiteral("txt")};
        const QDir samples(sourcePath(QStringLiteral("resources/samples")));
        for (const QFileInfo& file : samples.entryInfoList(QDir::Files, QDir::Name)) {
            const QString suffix = file.suffix().toLower();
            if (notPictures.contains(suffix))
                continue;
            QTest::newRow(qPrintable(file.fileName())) << file.filePath() << formats.value(suffix)
                                                       << (suffix == QLatin1String("ico") ? 3 : 1);
        }
    }

    void samplesLoad()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, format);
        QFETCH(int, sizes);
        QVERIFY2(!format.isEmpty(), "a sample of a type this test does not know");
        // Told from the content alone: by its name Qt would take a .dib for a headerless bitmap.
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QBuffer content;
        content.setData(file.readAll());
        content.open(QIODevice::ReadOnly);
        QCOMPARE(QImageReader::imageFormat(&content), format);

        QImageReader reader(path, format);
        QSet<int> widths;
        for (int i = 0; i < qMax(1, reader.imageCount()); ++i) {
            // Icons are read by number, animations frame after frame.
            if (i > 0)
                reader.jumpToImage(i);
            const QImage image = reader.read();
            QVERIFY2(!image.isNull(),
                     qPrintable(QStringLiteral("image %1: ").arg(i) + reader.errorString()));
            widths.insert(image.width());
        }
        QVERIFY2(widths.size() >= sizes, "fewer sizes than the file should hold");
    }
};

LUMBRA_TEST_MAIN(tst_infowindows)
#include "tst_infowindows.moc"
