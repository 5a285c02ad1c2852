#include "TestWorld.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "app/UndoLog.h"
#include "browser/FileOps.h"
#include "browser/frmMyImages.h"
#include "browser/ucPictureList.h"
#include "common/AppGlobals.h"
#include "common/ucTxtAddress.h"
#include "common/Utilities.h"
#include "gallery/frmThumbnails.h"
#include "gallery/ThumbGrid.h"
#include "gallery/ucCoolProg.h"

#include <QImage>
#include <QLineEdit>

#include <memory>

namespace {

SettingsStore& settings()
{
    return SettingsStore::global();
}

void makeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

// name=content for every file of folder, so a test sees both what is there and which is which.
QStringList filesIn(const QString& folder)
{
    QStringList files;
    for (const QString& name : QDir(folder).entryList(QDir::Files, QDir::Name))
        files << name + u'=' + QString::fromLatin1(contentOf(folder + name));
    return files;
}

} // namespace

class tst_Undo : public QObject
{
    Q_OBJECT

    std::unique_ptr<ucCoolProg> m_strip;
    int m_folders = 0;

    QString freshFolder(const QStringList& names)
    {
        const QString folder =
            property("worldPath").toString() + QStringLiteral("/undo%1/").arg(++m_folders);
        QDir().mkpath(folder);
        // Each file's content is its own name, so a restored file can be told from another.
        for (const QString& name : names)
            makeFile(folder + name, name.toLatin1());
        return folder;
    }

    static std::unique_ptr<frmMyImages> browserOn(const QString& folder)
    {
        settings().write(Keys::BrowsePath.in(QStringLiteral("frmMyImages")), folder);
        auto browser = std::make_unique<frmMyImages>();
        browser->resize(800, 500);
        browser->show();
        if (!QTest::qWaitForWindowExposed(browser.get()))
            return {};
        return browser;
    }

    static void select(frmMyImages& browser, const QStringList& names)
    {
        bool first = true;
        for (const QString& name : names) {
            browser.lvList()->selectRow(browser.lvList()->rowOf(name), first);
            first = false;
        }
    }

private slots:
    void initTestCase()
    {
        m_strip = std::make_unique<ucCoolProg>();
        Utilities::SetStatusStrip(m_strip.get());
        Globals().Options.fill(0);
        QDir().mkpath(qEnvironmentVariable("XDG_DATA_HOME"));
    }

    void cleanupTestCase() { Utilities::SetStatusStrip(nullptr); }

    void undoesTheLastOperation_data()
    {
        QTest::addColumn<QString>("operation");
        // A file made after the operation, before the undo: the place it takes is wanted back.
        QTest::addColumn<QString>("squatter");
        QTest::addColumn<QStringList>("sourceAfterUndo");
        QTest::addColumn<QStringList>("targetAfterUndo");
        QTest::addColumn<bool>("reported");

        const QStringList untouched{"a.jpg=a.jpg", "b.jpg=b.jpg", "c.jpg=c.jpg"};
        QTest::newRow("rename, renamed back")
            << "rename"
            << "" << untouched << QStringList{"z.jpg=z.jpg"} << false;
        QTest::newRow("rename, old name taken meanwhile, a Copy Of name")
            << "rename"
            << "a.jpg"
            << QStringList{"Copy Of a.jpg=a.jpg", "a.jpg=squatter", "b.jpg=b.jpg", "c.jpg=c.jpg"}
            << QStringList{"z.jpg=z.jpg"} << true;
        QTest::newRow("delete, restored from the trash")
            << "delete"
            << "" << untouched << QStringList{"z.jpg=z.jpg"} << false;
        QTest::newRow("delete, place taken meanwhile, a Copy Of name")
            << "delete"
            << "b.jpg"
            << QStringList{"Copy Of b.jpg=b.jpg", "a.jpg=a.jpg", "b.jpg=squatter", "c.jpg=c.jpg"}
            << QStringList{"z.jpg=z.jpg"} << true;
        QTest::newRow("copy and paste, the copies go to the trash")
            << "copy"
            << "" << untouched << QStringList{"z.jpg=z.jpg"} << false;
        QTest::newRow("cut and paste, moved back")
            << "cut"
            << "" << untouched << QStringList{"z.jpg=z.jpg"} << false;
        QTest::newRow("cut and paste, place taken meanwhile, a Copy Of name")
            << "cut"
            << "a.jpg"
            << QStringList{"Copy Of a.jpg=a.jpg", "a.jpg=squatter", "b.jpg=b.jpg", "c.jpg=c.jpg"}
            << QStringList{"z.jpg=z.jpg"} << true;
    }

    void undoesTheLastOperation()
    {
        QFETCH(QString, operation);
        QFETCH(QString, squatter);
        QFETCH(QStringList, sourceAfterUndo);
        QFETCH(QStringList, targetAfterUndo);
        QFETCH(bool, reported);
        // Trashed names differ from row to row, so the trash never renames one.
        const QString source = freshFolder({"a.jpg", "b.jpg", "c.jpg"});
        const QString target = freshFolder({"z.jpg"});
        auto browser = browserOn(source);
        QVERIFY(browser);

        if (operation == "rename") {
            select(*browser, {"a.jpg"});
            browser->RenameImage();
            QLineEdit* editor = nullptr;
            QTRY_VERIFY((editor = qobject_cast<QLineEdit*>(QApplication::focusWidget())));
            editor->setText(QStringLiteral("sea"));
            QTest::keyClick(editor, Qt::Key_Return);
            QTRY_VERIFY(QFile::exists(source + "sea.jpg"));
        } else if (operation == "delete") {
            select(*browser, {"b.jpg", "c.jpg"});
            browser->DeleteItems();
            QVERIFY(!QFile::exists(source + "b.jpg"));
        } else {
            select(*browser, {"a.jpg", "c.jpg"});
            browser->CutCopy(operation == "cut");
            browser->txtAddress()->setAddress(target);
            browser->PasteImages();
            QVERIFY(QFile::exists(target + "c.jpg"));
            browser->txtAddress()->setAddress(source);
        }
        QVERIFY(UndoLog::global().CanUndo());
        if (!squatter.isEmpty())
            makeFile(source + squatter, "squatter");

        const UndoLog::Outcome outcome = UndoLog::global().Undo();
        QVERIFY(outcome.ok);
        QCOMPARE(!outcome.report.isEmpty(), reported);
        QCOMPARE(filesIn(source), sourceAfterUndo);
        QCOMPARE(filesIn(target), targetAfterUndo);
        // The browser lists what is there again.
        QTRY_COMPARE(browser->lvList()->count(), int(QDir(source).entryList(QDir::Files).size()));
        QVERIFY(!UndoLog::global().CanUndo());
        QVERIFY(!UndoLog::global().WhyNot().isEmpty());
    }

    void undoOfATrashedFileThatLeftTheTrashIsReported()
    {
        const QString source = freshFolder({"gone.jpg"});
        auto browser = browserOn(source);
        QVERIFY(browser);
        select(*browser, {"gone.jpg"});
        browser->DeleteItems();
        const QString trashed = qEnvironmentVariable("XDG_DATA_HOME") + "/Trash/files/gone.jpg";
        QVERIFY(QFile::remove(trashed));

        const UndoLog::Outcome outcome = UndoLog::global().Undo();
        QVERIFY(!outcome.ok);
        QVERIFY2(outcome.report.contains("gone.jpg"), qPrintable(outcome.report));
    }

    void galleryRemovalIsShownAgain()
    {
        const QString folder = freshFolder({});
        for (const char* name : {"p.png", "q.png", "r.png"}) {
            QImage image(20, 20, QImage::Format_RGB32);
            image.fill(Qt::red);
            QVERIFY(image.save(folder + name));
        }
        settings().write(Keys::Explain_Delete, QStringLiteral("TRUE"));
        frmThumbnails gallery;
        gallery.resize(800, 500);
        gallery.show();
        gallery.ShowPictures({folder + "p.png", folder + "q.png", folder + "r.png"});
        QTRY_VERIFY(!gallery.PassRunning());
        QTRY_COMPARE(gallery.picFrame()->count(), 3);
        const int cell = 1;
        QCOMPARE(gallery.FileOf(cell), folder + "q.png");
        Q_EMIT gallery.picFrame()->CellClicked(cell);
        QCOMPARE(gallery.CurrentIndex(), cell);
        QVERIFY(QMetaObject::invokeMethod(&gallery, "DeleteItems"));
        QVERIFY(gallery.picFrame()->isCellHidden(cell));
        QCOMPARE(gallery.PictureCount(), 2);

        QVERIFY(UndoLog::global().Undo().ok);
        QVERIFY(!gallery.picFrame()->isCellHidden(cell));
        QCOMPARE(gallery.PictureCount(), 3);
        QVERIFY(QFile::exists(folder + "q.png"));
    }
};

LUMBRA_TEST_MAIN(tst_Undo)
#include "tst_undo.moc"
