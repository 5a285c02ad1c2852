#include "BrowserBench.h"

#include "browser/DesktopClipboard.h"
#include "browser/FileOps.h"
#include "browser/frmMyImages.h"
#include "browser/frmSlideshow.h"
#include "common/ucTxtAddress.h"
#include "gallery/FilesFound.h"
#include "viewing/PictureOpener.h"
#include "viewing/ucImgPreview.h"

#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QScopeGuard>
#include <QStandardItemModel>
#include <QTreeView>

using namespace PictureListRules;

class tst_MyBrowser : public BrowserBench
{
    Q_OBJECT

    static inline const QString Section = QStringLiteral("frmMyImages");

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void init()
    {
        Globals().Options[3] = 0;
        settings().write(Keys::Sortation.in(Section), 0);
        settings().write(Keys::View_Type.in(Section), 2);
        settings().write(Keys::LastSelected.in(Section), QString());
    }

    void rowTexts_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("bytes");
        QTest::addColumn<bool>("upperCase"); // the browser's; the builder keeps the case
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("size");
        row("empty file counts as 1 KB", "e.jpg", 0, true, "JPG File", "1 KB");
        row("1,499 bytes round down", "e.jpg", 1499, true, "JPG File", "1 KB");
        row("1,500 bytes halve to even 2", "e.jpg", 1500, true, "JPG File", "2 KB");
        row("2,500 bytes halve to even 2", "e.jpg", 2500, true, "JPG File", "2 KB");
        row("1,500,000 bytes grouped", "big.bmp", 1500000, true, "BMP File", "1,500 KB");
        row("four-letter extension", "photo.jpeg", 10, true, "JPEG File", "1 KB");
        row("mixed-case extension, builder", "shot.Gif", 10, false, "Gif File", "1 KB");
        row("no dot in the last four, builder", "photo.jpeg", 10, false, "jpeg File", "1 KB");
    }

    void rowTexts()
    {
        QFETCH(QString, name);
        QFETCH(int, bytes);
        QFETCH(bool, upperCase);
        const QDateTime modified(QDate(2005, 1, 15), QTime(14, 30, 5));
        const auto texts = RowTexts(name, bytes, modified, upperCase);
        QCOMPARE(texts[NameColumn], name);
        QTEST(texts[TypeColumn], "type");
        QTEST(texts[SizeColumn], "size");
        // Nine digits, so that the texts sort as the numbers do.
        QCOMPARE(texts[SizeKeyColumn].size(), 9);
        QCOMPARE(texts[SizeKeyColumn].toLongLong(), bytes);
        QCOMPARE(texts[DateColumn], QStringLiteral("1/15/05 2:30:05 PM"));
        QCOMPARE(texts[DateKeyColumn], QStringLiteral("01152005"));
        // At midnight the date stands alone.
        QCOMPARE(RowTexts(name, bytes, modified.date().startOfDay(), upperCase)[DateColumn],
                 QStringLiteral("1/15/05"));
    }

    void listsOnlyPictures_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QStringList>("listed");
        row("a picture and a text file", QStringList{"a.jpg", "notes.txt"}, QStringList{"a.jpg"});
        row("no picture: views off", QStringList{"readme.txt"}, QStringList{});
    }

    // Arriving from a folder where a picture is previewed: the preview is cleared.
    void listsOnlyPictures()
    {
        QFETCH(QStringList, names);
        QFETCH(QStringList, listed);
        const QString folder = freshFolder(names);
        const QDateTime modified(QDate(2005, 1, 15), QTime(14, 30, 5));
        for (const QString& name : listed)
            makeFile(folder + name, QByteArray(1500, 'x'), modified);
        auto browser = openOn<frmMyImages>(freshFolder({"b.jpg"}));
        QVERIFY(browser);
        browser->SelectItem(0);
        browser->txtAddress()->setAddress(folder);

        const ucPictureList* list = browser->lvList();
        QCOMPARE(namesInOrder(list), listed);
        for (int column = 0; column < ColumnCount && !listed.isEmpty(); ++column)
            QCOMPARE(list->text(0, column), RowTexts(listed[0], 1500, modified, true)[column]);
        QCOMPARE(m_strip.Panel(2)->text(), QStringLiteral("Images: %1").arg(listed.size()));
        for (int i = 1; i <= 3; ++i)
            QCOMPARE(browser->ViewButton(i)->isEnabled(), !listed.isEmpty());
        QVERIFY(browser->ucPreview()->FileName().isEmpty());
        QCOMPARE(settings().read(Section, Keys::BrowsePath.key), folder);
    }

    void reselectsTheLastSelected_data()
    {
        QTest::addColumn<bool>("sameFolder");
        row("picture of this folder", true);
        row("picture of another folder", false);
    }

    void reselectsTheLastSelected()
    {
        QFETCH(bool, sameFolder);
        const QString folder = freshFolder({"a.jpg", "b.jpg", "c.jpg"});
        const QString other = freshFolder({"b.jpg"});
        settings().write(Keys::LastSelected.in(Section), (sameFolder ? folder : other) + "b.jpg");

        auto browser = openOn<frmMyImages>(folder);
        QVERIFY(browser);
        QCOMPARE(browser->lvList()->selectedRows(), sameFolder ? QList<int>{1} : QList<int>{});
        QCOMPARE(browser->ucPreview()->FileName(), sameFolder ? folder + "b.jpg" : QString());
        QCOMPARE(browser->lblSelected()->text(), sameFolder ? QStringLiteral("b.jpg") : QString());

        // Choosing another picture previews it and remembers it.
        browser->SelectItem(2);
        QCOMPARE(browser->ucPreview()->FileName(), folder + "c.jpg");
        QCOMPARE(settings().read(Section, Keys::LastSelected.key), folder + "c.jpg");
    }

    void sorts_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QStringList>("order");
        QTest::addColumn<QString>("sortation");
        const QStringList bySize{"Tiny.jpg", "small.jpg", "big.jpg"};
        row("loaded by name, any case", "", QStringList{"big.jpg", "small.jpg", "Tiny.jpg"}, "0");
        row("SortItems(2) by exact bytes", "SortItems 2", bySize, "4");
        row("Size column by exact bytes", "click 3", bySize, "0");
        row("Size column twice reverses", "click 3,click 3",
            QStringList{"big.jpg", "small.jpg", "Tiny.jpg"}, "0");
        row("Modified column month first", "click 4",
            QStringList{"small.jpg", "big.jpg", "Tiny.jpg"}, "0");
        row("SortItems(3) by the date text", "SortItems 3",
            QStringList{"small.jpg", "Tiny.jpg", "big.jpg"}, "3");
    }

    void sorts()
    {
        QFETCH(QString, action);
        // Both small files show "2 KB"; only the exact size tells them apart.
        const QString folder = freshFolder();
        makeFile(folder + "big.jpg", QByteArray(1600, 'x'), QDateTime(QDate(2003, 2, 20), {14, 0}));
        makeFile(folder + "small.jpg", QByteArray(1500, 'x'),
                 QDateTime(QDate(2005, 1, 15), {12, 0}));
        makeFile(folder + "Tiny.jpg", QByteArray(100, 'x'), QDateTime(QDate(2004, 10, 3), {9, 0}));

        auto browser = openOn<frmMyImages>(folder);
        QVERIFY(browser);
        QHeaderView* header = browser->lvList()->treeView()->header();
        for (const QString& step : action.split(u',', Qt::SkipEmptyParts)) {
            const int number = step.section(u' ', 1).toInt();
            if (step.startsWith(QLatin1String("SortItems"))) {
                browser->SortItems(number);
            } else {
                const int x = header->sectionViewportPosition(number - 1) +
                              header->sectionSize(number - 1) / 2;
                QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                                  QPoint(x, header->height() / 2));
            }
        }
        QTEST(namesInOrder(browser->lvList()), "order");
        QTEST(settings().read(Section, Keys::Sortation.key), "sortation");
    }

    void switchesViews_data()
    {
        QTest::addColumn<int>("stored"); // the view type the window opens with
        QTest::addColumn<int>("digit");  // of Ctrl+Shift; 0: the button pressed; -1: nothing
        QTest::addColumn<int>("button"); // the view type button checked then
        QTest::addColumn<int>("mode");
        row("0 stored by hand opens as a list", 0, -1, 3, int(ListView));
        row("button 2 details", 1, 0, 2, int(ReportView));
        row("Ctrl+Shift+2 list", 1, 2, 3, int(ListView));
    }

    void switchesViews()
    {
        QFETCH(int, stored);
        QFETCH(int, digit);
        QFETCH(int, button);
        QFETCH(int, mode);
        settings().write(Keys::View_Type.in(Section), stored);
        auto browser = openOn<frmMyImages>(freshFolder({"a.jpg"}));
        QVERIFY(browser);
        ucPictureList* list = browser->lvList();
        if (digit == 0) {
            browser->ViewButton(button)->trigger();
        } else if (digit > 0) {
            browser->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(browser.get()));
            list->view()->setFocus();
            QTest::keyClick(list->view(), Qt::Key(Qt::Key_0 + digit),
                            Qt::ControlModifier | Qt::ShiftModifier);
            QCOMPARE(settings().read(Section, Keys::View_Type.key), QString::number(button));
        }
        QCOMPARE(int(list->mode()), mode);
        QCOMPARE(list->currentWidget() == list->treeView(), mode == ReportView);
        for (int i = 1; i <= 3; ++i)
            QCOMPARE(browser->ViewButton(i)->isChecked(), i == button);
    }

    void opensPictures_data()
    {
        QTest::addColumn<QString>("gesture");
        QTest::addColumn<bool>("opens");
        row("double click", "double", true);
        row("click on the icon", "icon", true);
        row("click on the name", "name", false);
        row("Enter on the selected picture", "enter", true);
    }

    void opensPictures()
    {
        QFETCH(QString, gesture);
        QFETCH(bool, opens);
        const QString folder = freshFolder({"a.jpg", "b.jpg"});
        auto browser = openOn<frmMyImages>(folder);
        QVERIFY(browser);
        QStringList opened;
        PictureOpener::SetHandler([&opened](const QString& path) { opened.append(path); });
        const auto reset = qScopeGuard([] { PictureOpener::SetHandler({}); });

        ucPictureList* list = browser->lvList();
        QWidget* viewport = list->treeView()->viewport();
        const QRect rowRect = list->treeView()->visualRect(list->model()->index(1, 0));
        if (gesture == QLatin1String("double")) {
            QTest::mouseDClick(viewport, Qt::LeftButton, {}, rowRect.center());
        } else if (gesture == QLatin1String("icon")) {
            QTest::mouseClick(viewport, Qt::LeftButton, {}, list->iconRect(1).center());
        } else if (gesture == QLatin1String("name")) {
            QTest::mouseClick(viewport, Qt::LeftButton, {},
                              QPoint(rowRect.right() - 4, rowRect.center().y()));
        } else {
            browser->SelectItem(1);
            list->treeView()->setFocus();
            QTest::keyClick(list->treeView(), Qt::Key_Return);
        }
        QCOMPARE(opened, opens ? QStringList{folder + "b.jpg"} : QStringList{});
        QCOMPARE(browser->ucPreview()->FileName(), folder + "b.jpg");
    }

    // The naming rules themselves are tst_fileops' business; here the edit reaches the file.
    void renamesInPlace_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("result");
        row("extension kept", "sea", "sea.jpg");
        row("clash reported, old name kept", "other", "beach.jpg");
    }

    void renamesInPlace()
    {
        QFETCH(QString, typed);
        QFETCH(QString, result);
        const QString folder = freshFolder({"beach.jpg", "other.jpg"});
        auto browser = openOn<frmMyImages>(folder);
        QVERIFY(browser);
        browser->SelectItem(browser->lvList()->rowOf("beach.jpg"));
        DialogAnswers failure({QMessageBox::Ok});

        browser->RenameImage();
        QLineEdit* editor = nullptr;
        QTRY_VERIFY((editor = qobject_cast<QLineEdit*>(QApplication::focusWidget())));
        QCOMPARE(editor->text(), QStringLiteral("beach.jpg"));
        editor->setText(typed);
        QTest::keyClick(editor, Qt::Key_Return);

        QTRY_VERIFY(browser->lvList()->rowOf(result) >= 0);
        QCOMPARE(browser->lvList()->count(), 2);
        QStringList files{result + "=beach.jpg", "other.jpg=other.jpg"};
        files.sort();
        QCOMPARE(filesIn(folder), files);
        if (result == "beach.jpg") {
            QTRY_COMPARE(failure.seen,
                         QStringList{FileOps::RenameTitle() + u'|' + FileOps::RenameFailedText()});
        } else {
            QTRY_COMPARE(browser->ucPreview()->FileName(), folder + result);
            QVERIFY(failure.seen.isEmpty());
        }
    }

    void deletes_data()
    {
        QTest::addColumn<QString>("chosen"); // of the pictures a to d
        QTest::addColumn<int>("answer");     // to the question; 0: none asked
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("selectedAfter");
        row("two, asked, yes", "ac", int(QMessageBox::Yes), "bd", "b");
        row("two, asked, no", "bc", int(QMessageBox::No), "abcd", "bc");
        row("two, not asked", "bc", 0, "ad", "d");
        row("the last, selection steps back", "cd", 0, "ab", "b");
    }

    void deletes()
    {
        QFETCH(QString, chosen);
        QFETCH(int, answer);
        QFETCH(QString, left);
        QFETCH(QString, selectedAfter);
        // Names differ from row to row, so the trash never has to rename one.
        const QString prefix = QStringLiteral("del%1-").arg(m_folders + 1);
        const auto named = [&prefix](const QString& letters) {
            QStringList names;
            for (const QChar letter : letters)
                names << prefix + letter + ".jpg";
            return names;
        };
        const QString folder = freshFolder(named("abcd"));
        Globals().Options[3] = answer ? 1 : 0;
        auto browser = openOn<frmMyImages>(folder);
        QVERIFY(browser);
        ucPictureList* list = browser->lvList();
        selectNames(list, named(chosen));

        DialogAnswers question({QMessageBox::StandardButton(answer)});
        browser->DeleteItems();
        QCOMPARE(question.seen.value(0),
                 answer ? FileOps::DeleteTitle() + u'|' + FileOps::DeleteQuestion(2) : QString());
        QCOMPARE(namesInOrder(list), named(left));
        QCOMPARE(m_strip.Panel(2)->text(), QStringLiteral("Images: %1").arg(left.size()));
        QList<int> selected;
        for (const QString& name : named(selectedAfter))
            selected.append(list->rowOf(name));
        QCOMPARE(list->selectedRows(), selected);
        // Every file whole: in its folder when kept, in the trash when deleted.
        const QStringList here = filesIn(folder), inTrash = filesIn(trashed(""));
        for (const QString& name : named("abcd")) {
            const bool kept = left.contains(name[prefix.size()]);
            QCOMPARE(here.contains(name + u'=' + name), kept);
            QCOMPARE(inTrash.contains(name + u'=' + name), !kept);
        }
    }

    void pastes_data()
    {
        QTest::addColumn<bool>("cut");
        QTest::addColumn<bool>("sameFolder");
        QTest::addColumn<QStringList>("targetRows");
        QTest::addColumn<QStringList>("sourceLeft");
        const QStringList pqr{"p.jpg", "q.jpg", "r.jpg"}, pqz{"p.jpg", "q.jpg", "z.jpg"};
        const QStringList copied{"Copy Of p.jpg", "Copy Of q.jpg", "p.jpg", "q.jpg", "r.jpg"};
        row("copy elsewhere", false, false, pqz, pqr);
        row("cut elsewhere", true, false, pqz, QStringList{"r.jpg"});
        row("copy here", false, true, copied, copied);
        row("cut here", true, true, pqr, pqr);
    }

    void pastes()
    {
        QFETCH(bool, cut);
        QFETCH(bool, sameFolder);
        QFETCH(QStringList, targetRows);
        QFETCH(QStringList, sourceLeft);
        const QString source = freshFolder({"p.jpg", "q.jpg", "r.jpg"});
        const QString target = sameFolder ? source : freshFolder({"z.jpg"});
        auto browser = openOn<frmMyImages>(source);
        QVERIFY(browser);
        ucPictureList* list = browser->lvList();
        selectNames(list, {"p.jpg", "q.jpg"});

        browser->CutCopy(cut);
        QVERIFY(browser->ClipboardList());
        QCOMPARE(list->isGhosted(list->rowOf("p.jpg")), cut);
        QVERIFY(!list->isGhosted(list->rowOf("r.jpg")));

        browser->txtAddress()->setAddress(target);
        browser->PasteImages();
        QCOMPARE(namesInOrder(list), targetRows);
        // Every file holds what it held before, a copy what its original holds.
        QStringList files;
        for (const QString& name : targetRows)
            files << name + u'=' + QString(name).remove(QStringLiteral("Copy Of "));
        QCOMPARE(filesIn(target), files);
        QCOMPARE(QDir(source).entryList(QDir::Files, QDir::Name), sourceLeft);
        for (int row = 0; row < list->count(); ++row)
            QVERIFY2(!list->isGhosted(row), qPrintable(list->text(row)));
        // A copy can be pasted again; a cut is used up.
        QCOMPARE(browser->ClipboardList() != nullptr, !cut);
        if (!sameFolder || !cut)
            QCOMPARE(browser->lblSelected()->text(),
                     QString(sameFolder ? "Copy Of q.jpg" : "q.jpg"));
    }

    void pastesWhatAFileManagerCopied()
    {
        const QString elsewhere = freshFolder({"w.jpg", "notes.txt"});
        const QString target = freshFolder();
        auto browser = openOn<frmMyImages>(freshFolder({"p.jpg"}));
        QVERIFY(browser);
        browser->SelectItem(0);
        browser->CutCopy(false);
        // A file manager copies two files after the browser did.
        DesktopClipboard::Put({elsewhere + "w.jpg", elsewhere + "notes.txt"}, false);

        browser->txtAddress()->setAddress(target);
        browser->PasteImages();
        QCOMPARE(namesInOrder(browser->lvList()), QStringList{"w.jpg"});
        QCOMPARE(filesIn(target), QStringList{"w.jpg=w.jpg"});
    }

    // Rows dragged out reach a file manager as copies of their files; the builder's rows
    // only move within it, so they never carry files a file manager could take away.
    void dragsOutCopies()
    {
        const QString folder = freshFolder({"a.jpg", "b.jpg", "c.jpg"});
        auto browser = openOn<frmMyImages>(folder);
        QVERIFY(browser);
        QStandardItemModel* model = browser->lvList()->model();
        QCOMPARE(model->supportedDragActions(), Qt::CopyAction);
        const std::unique_ptr<QMimeData> data(
            model->mimeData({model->index(2, 0), model->index(0, 1), model->index(0, 0)}));
        QVERIFY(data);
        const auto contents = DesktopClipboard::Read(data.get());
        QVERIFY(contents);
        QCOMPARE(contents->paths, (QStringList{folder + "a.jpg", folder + "c.jpg"}));
        QVERIFY(!contents->cut);

        auto builder = openOn<frmSlideshow>(folder);
        QVERIFY(builder);
        QStandardItemModel* rows = builder->lvList()->model();
        const std::unique_ptr<QMimeData> moved(rows->mimeData({rows->index(0, 0)}));
        QVERIFY(moved && !moved->hasUrls());
    }

    void findsTheVolume_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("root");
        row("folder on a mounted volume", "/home/me/pics/", "/home");
        row("name that only starts like a volume", "/homework/", "/");
        row("deepest volume wins", "/media/usb/dcim/", "/media/usb");
    }

    void findsTheVolume()
    {
        QFETCH(QString, path);
        QTEST(VolumeRootOf(path, {"/", "/home", "/media/usb", "/media"}), "root");
    }
};

LUMBRA_TEST_MAIN(tst_MyBrowser)
#include "tst_mybrowser.moc"
