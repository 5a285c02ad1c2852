#include "BrowserBench.h"

#include "app/UndoLog.h"
#include "browser/frmMyImages.h"
#include "common/ucTxtAddress.h"
#include "gallery/frmThumbnails.h"
#include "gallery/ThumbGrid.h"

#include <QLineEdit>

class tst_Undo : public BrowserBench
{
    Q_OBJECT

private slots:
    void undoesTheLastOperation_data()
    {
        QTest::addColumn<QString>("operation");
        // What happens after the operation, before the undo: "x taken" makes a file x,
        // "x purged" removes x from the trash.
        QTest::addColumn<QString>("meanwhile");
        QTest::addColumn<QStringList>("sourceAfterUndo");
        const QStringList untouched{"a.jpg=a.jpg", "b.jpg=b.jpg", "c.jpg=c.jpg"};
        const QStringList aTaken{"Copy Of a.jpg=a.jpg", "a.jpg=squatter", "b.jpg=b.jpg",
                                 "c.jpg=c.jpg"};
        row("rename, renamed back", "rename", "", untouched);
        row("rename, old name taken meanwhile, a Copy Of name", "rename", "a.jpg taken", aTaken);
        row("delete, restored from the trash", "delete", "", untouched);
        row("delete, place taken meanwhile, a Copy Of name", "delete", "b.jpg taken",
            QStringList{"Copy Of b.jpg=b.jpg", "a.jpg=a.jpg", "b.jpg=squatter", "c.jpg=c.jpg"});
        row("delete, one file purged from the trash, the other restored", "delete", "b.jpg purged",
            QStringList{"a.jpg=a.jpg", "c.jpg=c.jpg"});
        row("copy and paste, the copies go to the trash", "copy", "", untouched);
        row("cut and paste, moved back", "cut", "", untouched);
        row("cut and paste, place taken meanwhile, a Copy Of name", "cut", "a.jpg taken", aTaken);
    }

    void undoesTheLastOperation()
    {
        QFETCH(QString, operation);
        QFETCH(QString, meanwhile);
        const QString source = freshFolder({"a.jpg", "b.jpg", "c.jpg"});
        const QString target = freshFolder({"z.jpg"});
        auto browser = openOn<frmMyImages>(source);
        QVERIFY(browser);
        ucPictureList* list = browser->lvList();

        if (operation == "rename") {
            selectNames(list, {"a.jpg"});
            browser->RenameImage();
            QLineEdit* editor = nullptr;
            QTRY_VERIFY((editor = qobject_cast<QLineEdit*>(QApplication::focusWidget())));
            editor->setText(QStringLiteral("sea"));
            QTest::keyClick(editor, Qt::Key_Return);
            QTRY_VERIFY(QFile::exists(source + "sea.jpg"));
        } else if (operation == "delete") {
            selectNames(list, {"b.jpg", "c.jpg"});
            browser->DeleteItems();
            QVERIFY(!QFile::exists(source + "b.jpg"));
        } else {
            selectNames(list, {"a.jpg", "c.jpg"});
            browser->CutCopy(operation == "cut");
            browser->txtAddress()->setAddress(target);
            browser->PasteImages();
            QVERIFY(QFile::exists(target + "c.jpg"));
            browser->txtAddress()->setAddress(source);
        }
        QVERIFY(UndoLog::global().CanUndo());
        const QString name = meanwhile.section(u' ', 0, 0);
        if (meanwhile.endsWith("taken"))
            makeFile(source + name, "squatter");
        else if (meanwhile.endsWith("purged"))
            QVERIFY(QFile::remove(trashed(name)));

        const UndoLog::Outcome outcome = UndoLog::global().Undo();
        QCOMPARE(outcome.ok, !meanwhile.endsWith("purged"));
        QCOMPARE(outcome.report.isEmpty(), meanwhile.isEmpty());
        QVERIFY2(outcome.report.contains(name), qPrintable(outcome.report));
        QTEST(filesIn(source), "sourceAfterUndo");
        QCOMPARE(filesIn(target), QStringList{"z.jpg=z.jpg"});
        // The browser lists what is there again.
        QTRY_COMPARE(list->count(), int(QDir(source).entryList(QDir::Files).size()));
        QVERIFY(!UndoLog::global().CanUndo());
    }

    void galleryRemovalIsShownAgain()
    {
        const QString folder = freshFolder({"p.png", "q.png", "r.png"});
        settings().write(Keys::Explain_Delete, QStringLiteral("TRUE"));
        frmThumbnails gallery;
        gallery.resize(800, 500);
        gallery.show();
        gallery.ShowPictures({folder + "p.png", folder + "q.png", folder + "r.png"});
        QTRY_VERIFY(!gallery.PassRunning());
        QTRY_COMPARE(gallery.picFrame()->count(), 3);
        Q_EMIT gallery.picFrame()->CellClicked(1);
        gallery.DeleteItems();
        QVERIFY(gallery.picFrame()->isCellHidden(1));
        QCOMPARE(gallery.PictureCount(), 2);

        QVERIFY(UndoLog::global().Undo().ok);
        QVERIFY(!gallery.picFrame()->isCellHidden(1));
        QCOMPARE(gallery.PictureCount(), 3);
        QVERIFY(QFile::exists(folder + "q.png"));
    }
};

LUMBRA_TEST_MAIN(tst_Undo)
#include "tst_undo.moc"
