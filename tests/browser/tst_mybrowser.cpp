#include "TestWorld.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "browser/DesktopClipboard.h"
#include "browser/FileOps.h"
#include "browser/frmMyImages.h"
#include "browser/PictureListRules.h"
#include "browser/ucPictureList.h"
#include "common/AppGlobals.h"
#include "common/ucTxtAddress.h"
#include "common/Utilities.h"
#include "gallery/FilesFound.h"
#include "gallery/ucCoolProg.h"
#include "viewing/PictureOpener.h"
#include "viewing/ucImgPreview.h"

#include <QAbstractButton>
#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QScopeGuard>
#include <QStandardItemModel>
#include <QTreeView>

#include <functional>
#include <memory>

using namespace PictureListRules;

namespace {

const QString Section = QStringLiteral("frmMyImages");

SettingsStore& settings()
{
    return SettingsStore::global();
}

struct DialogAnswer
{
    QString title;
    QString text;
    bool seen = false;
};

// Presses button on the next message box as soon as it is up, and keeps its title and text.
std::shared_ptr<DialogAnswer> pressNext(QMessageBox::StandardButton button)
{
    auto seen = std::make_shared<DialogAnswer>();
    auto* poll = new QTimer;
    QObject::connect(poll, &QTimer::timeout, poll, [poll, seen, button] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return;
        seen->title = box->windowTitle();
        seen->text = box->text();
        seen->seen = true;
        poll->stop();
        poll->deleteLater();
        box->button(button)->click();
    });
    poll->start(5);
    return seen;
}

// A file of the given length and modification time; the list needs no more than its name.
void makeFile(const QString& path, qint64 bytes, const QDateTime& modified = {})
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(bytes, 'x'));
    QVERIFY(file.flush());
    if (modified.isValid())
        QVERIFY(file.setFileTime(modified, QFileDevice::FileModificationTime));
}

QStringList namesInOrder(const ucPictureList* list)
{
    QStringList names;
    for (int row = 0; row < list->count(); ++row)
        names.append(list->text(row));
    return names;
}

QString trashed(const QString& name)
{
    return qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Trash/files/") + name;
}

} // namespace

class tst_MyBrowser : public QObject
{
    Q_OBJECT

    std::unique_ptr<ucCoolProg> m_strip;
    int m_folders = 0;

    QString freshFolder(const QStringList& names = {})
    {
        const QString folder =
            property("worldPath").toString() + QStringLiteral("/pics%1/").arg(++m_folders);
        QDir().mkpath(folder);
        for (const QString& name : names)
            makeFile(folder + name, 100);
        return folder;
    }

    // A browser showing folder, on screen so that clicks land.
    static std::unique_ptr<frmMyImages> browserOn(const QString& folder)
    {
        settings().write(Keys::BrowsePath.in(Section), folder);
        auto browser = std::make_unique<frmMyImages>();
        browser->resize(800, 500);
        browser->show();
        if (!QTest::qWaitForWindowExposed(browser.get()))
            return {};
        return browser;
    }

    static int rowOf(frmMyImages& browser, const QString& name)
    {
        return browser.lvList()->rowOf(name);
    }

private slots:
    void initTestCase()
    {
        m_strip = std::make_unique<ucCoolProg>();
        Utilities::SetStatusStrip(m_strip.get());
        Globals().Options.fill(0);
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        QDir().mkpath(qEnvironmentVariable("XDG_DATA_HOME"));
    }

    void cleanupTestCase() { Utilities::SetStatusStrip(nullptr); }

    void init()
    {
        Globals().Options[3] = 0;
        settings().write(Keys::Sortation.in(Section), 0);
        settings().write(Keys::View_Type.in(Section), 2);
        settings().write(Keys::LastSelected.in(Section), QString());
    }

    void fillsTheColumns_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("size");
        QTest::addColumn<QString>("sizeKey");
        QTest::newRow("empty file counts as 1 KB") << "empty.jpg" << 0LL << "JPG File"
                                                   << "1 KB"
                                                   << "000000000";
        QTest::newRow("999 bytes") << "b999.jpg" << 999LL << "JPG File"
                                   << "1 KB"
                                   << "000000999";
        QTest::newRow("1,499 bytes round down") << "b1499.jpg" << 1499LL << "JPG File"
                                                << "1 KB"
                                                << "000001499";
        QTest::newRow("1,500 bytes halve to even 2") << "b1500.jpg" << 1500LL << "JPG File"
                                                     << "2 KB"
                                                     << "000001500";
        QTest::newRow("2,500 bytes halve to even 2") << "b2500.jpg" << 2500LL << "JPG File"
                                                     << "2 KB"
                                                     << "000002500";
        QTest::newRow("1,500,000 bytes grouped") << "big.bmp" << 1500000LL << "BMP File"
                                                 << "1,500 KB"
                                                 << "001500000";
        QTest::newRow("four-letter extension") << "photo.jpeg" << 10LL << "JPEG File"
                                               << "1 KB"
                                               << "000000010";
        QTest::newRow("two dots") << "a.b.jpg" << 10LL << "JPG File"
                                  << "1 KB"
                                  << "000000010";
        QTest::newRow("lower-case name, upper-case type") << "shot.Gif" << 10LL << "GIF File"
                                                          << "1 KB"
                                                          << "000000010";
    }

    void fillsTheColumns()
    {
        QFETCH(QString, name);
        QFETCH(qint64, bytes);
        QFETCH(QString, type);
        QFETCH(QString, size);
        QFETCH(QString, sizeKey);
        const QString folder = freshFolder();
        const QDateTime modified(QDate(2005, 1, 15), QTime(14, 30, 5));
        makeFile(folder + name, bytes, modified);
        makeFile(folder + "notes.txt", 10);

        auto browser = browserOn(folder);
        QVERIFY(browser);
        const ucPictureList* list = browser->lvList();
        QCOMPARE(namesInOrder(list), QStringList{name});
        QCOMPARE(list->text(0, TypeColumn), type);
        QCOMPARE(list->text(0, SizeColumn), size);
        QCOMPARE(list->text(0, SizeKeyColumn), sizeKey);
        QCOMPARE(list->text(0, DateColumn), QStringLiteral("1/15/05 2:30:05 PM"));
        QCOMPARE(list->text(0, DateKeyColumn), QStringLiteral("01152005"));
        QCOMPARE(list->model()->item(0)->toolTip(), type);
        QCOMPARE(m_strip->Panel(2)->text(), QStringLiteral("Images: 1"));
        QVERIFY(browser->ViewButton(1)->isEnabled());
        QCOMPARE(settings().read(Section, Keys::BrowsePath.key), folder);
    }

    void emptyFolderDisablesTheViews()
    {
        const QString folder = freshFolder();
        makeFile(folder + "readme.txt", 10);
        auto browser = browserOn(freshFolder({"a.jpg"}));
        QVERIFY(browser);
        browser->txtAddress()->setAddress(folder);
        QCOMPARE(browser->lvList()->count(), 0);
        QCOMPARE(m_strip->Panel(2)->text(), QStringLiteral("Images: 0"));
        for (int i = 1; i <= 3; ++i)
            QVERIFY(!browser->ViewButton(i)->isEnabled());
        QVERIFY(browser->ucPreview()->FileName().isEmpty());
    }

    void reselectsTheLastSelected_data()
    {
        QTest::addColumn<bool>("sameFolder");
        QTest::newRow("picture of this folder") << true;
        QTest::newRow("picture of another folder") << false;
    }

    void reselectsTheLastSelected()
    {
        QFETCH(bool, sameFolder);
        const QString folder = freshFolder({"a.jpg", "b.jpg", "c.jpg"});
        const QString other = freshFolder({"b.jpg"});
        settings().write(Keys::LastSelected.in(Section), (sameFolder ? folder : other) + "b.jpg");

        auto browser = browserOn(folder);
        QVERIFY(browser);
        const QList<int> expected = sameFolder ? QList<int>{1} : QList<int>{};
        QCOMPARE(browser->lvList()->selectedRows(), expected);
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
        QTest::newRow("loaded by name, any case")
            << "" << QStringList{"big.jpg", "small.jpg", "Tiny.jpg"} << "0";
        QTest::newRow("SortItems(2) by exact bytes")
            << "SortItems 2" << QStringList{"Tiny.jpg", "small.jpg", "big.jpg"} << "4";
        QTest::newRow("Size column by exact bytes")
            << "click 3" << QStringList{"Tiny.jpg", "small.jpg", "big.jpg"} << "0";
        QTest::newRow("Size column twice reverses")
            << "click 3,click 3" << QStringList{"big.jpg", "small.jpg", "Tiny.jpg"} << "0";
        QTest::newRow("Modified column month first")
            << "click 4" << QStringList{"small.jpg", "big.jpg", "Tiny.jpg"} << "0";
        QTest::newRow("SortItems(3) by the date text")
            << "SortItems 3" << QStringList{"small.jpg", "Tiny.jpg", "big.jpg"} << "3";
        QTest::newRow("Filename column reverses the name order")
            << "click 1" << QStringList{"Tiny.jpg", "small.jpg", "big.jpg"} << "0";
    }

    void sorts()
    {
        QFETCH(QString, action);
        QFETCH(QStringList, order);
        QFETCH(QString, sortation);
        // Both small files show "2 KB"; only the exact size tells them apart.
        const QString folder = freshFolder();
        makeFile(folder + "big.jpg", 1600, QDateTime(QDate(2003, 2, 20), QTime(14, 0)));
        makeFile(folder + "small.jpg", 1500, QDateTime(QDate(2005, 1, 15), QTime(12, 0)));
        makeFile(folder + "Tiny.jpg", 100, QDateTime(QDate(2004, 10, 3), QTime(9, 0)));

        auto browser = browserOn(folder);
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
        QCOMPARE(namesInOrder(browser->lvList()), order);
        QCOMPARE(settings().read(Section, Keys::Sortation.key), sortation);
    }

    void switchesViews_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("digit");
        QTest::addColumn<int>("mode");
        QTest::newRow("button 1 large icons") << 1 << 0 << int(LargeIconsView);
        QTest::newRow("button 2 details") << 2 << 0 << int(ReportView);
        QTest::newRow("button 3 list") << 3 << 0 << int(ListView);
        QTest::newRow("Ctrl+Shift+1 large icons") << 1 << 1 << int(LargeIconsView);
        QTest::newRow("Ctrl+Shift+2 list") << 3 << 2 << int(ListView);
        QTest::newRow("Ctrl+Shift+3 details") << 2 << 3 << int(ReportView);
    }

    void switchesViews()
    {
        QFETCH(int, button);
        QFETCH(int, digit);
        QFETCH(int, mode);
        // Start from a view that none of the rows ends in.
        settings().write(Keys::View_Type.in(Section), button == 1 ? 3 : 1);
        auto browser = browserOn(freshFolder({"a.jpg"}));
        QVERIFY(browser);
        if (digit == 0) {
            browser->ViewButton(button)->trigger();
        } else {
            browser->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(browser.get()));
            browser->lvList()->view()->setFocus();
            QTest::keyClick(browser->lvList()->view(), Qt::Key(Qt::Key_0 + digit),
                            Qt::ControlModifier | Qt::ShiftModifier);
        }
        ucPictureList* list = browser->lvList();
        QCOMPARE(int(list->mode()), mode);
        QCOMPARE(list->currentWidget(), mode == ReportView
                                            ? static_cast<QWidget*>(list->treeView())
                                            : static_cast<QWidget*>(list->listView()));
        if (mode != ReportView)
            QCOMPARE(list->listView()->viewMode(),
                     mode == LargeIconsView ? QListView::IconMode : QListView::ListMode);
        for (int i = 1; i <= 3; ++i)
            QCOMPARE(browser->ViewButton(i)->isChecked(), i == button);
        QCOMPARE(settings().read(Section, Keys::View_Type.key), QString::number(button));
    }

    void opensPictures_data()
    {
        QTest::addColumn<QString>("gesture");
        QTest::addColumn<bool>("opens");
        QTest::newRow("double click") << "double" << true;
        QTest::newRow("click on the icon") << "icon" << true;
        QTest::newRow("click on the name") << "name" << false;
        QTest::newRow("Enter on the selected picture") << "enter" << true;
    }

    void opensPictures()
    {
        QFETCH(QString, gesture);
        QFETCH(bool, opens);
        const QString folder = freshFolder({"a.jpg", "b.jpg"});
        auto browser = browserOn(folder);
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

    void renamesInPlace_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("result");
        QTest::addColumn<bool>("refused");
        QTest::newRow("extension kept") << "sea"
                                        << "sea.jpg" << false;
        QTest::newRow("same extension typed") << "shore.jpg"
                                              << "shore.jpg" << false;
        QTest::newRow("other extension typed gains the old one") << "sea.png"
                                                                 << "sea.png.jpg" << false;
        QTest::newRow("clash reported, old name kept") << "other"
                                                       << "beach.jpg" << true;
    }

    void renamesInPlace()
    {
        QFETCH(QString, typed);
        QFETCH(QString, result);
        QFETCH(bool, refused);
        const QString folder = freshFolder({"beach.jpg", "other.jpg"});
        auto browser = browserOn(folder);
        QVERIFY(browser);
        browser->SelectItem(rowOf(*browser, "beach.jpg"));
        std::shared_ptr<DialogAnswer> failure;
        if (refused)
            failure = pressNext(QMessageBox::Ok);

        browser->RenameImage();
        QLineEdit* editor = nullptr;
        QTRY_VERIFY((editor = qobject_cast<QLineEdit*>(QApplication::focusWidget())));
        QCOMPARE(editor->text(), QStringLiteral("beach.jpg"));
        editor->setText(typed);
        QTest::keyClick(editor, Qt::Key_Return);

        QTRY_VERIFY(rowOf(*browser, result) >= 0);
        QVERIFY(QFile::exists(folder + result));
        if (refused) {
            QTRY_VERIFY(failure->seen);
            QCOMPARE(failure->title, FileOps::RenameTitle());
            QCOMPARE(failure->text, FileOps::RenameFailedText());
            QVERIFY(QFile::exists(folder + "other.jpg"));
        } else {
            QVERIFY(!QFile::exists(folder + "beach.jpg"));
            QTRY_COMPARE(browser->ucPreview()->FileName(), folder + result);
        }
        QCOMPARE(browser->lvList()->count(), 2);
    }

    void deletes_data()
    {
        QTest::addColumn<QStringList>("chosen");
        QTest::addColumn<bool>("confirm");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QStringList>("left");
        QTest::addColumn<QStringList>("selectedAfter");
        QTest::newRow("one, asked, yes") << QStringList{"a"} << true << int(QMessageBox::Yes)
                                         << QStringList{"b", "c", "d"} << QStringList{"b"};
        QTest::newRow("two, asked, yes") << QStringList{"a", "c"} << true << int(QMessageBox::Yes)
                                         << QStringList{"b", "d"} << QStringList{"b"};
        QTest::newRow("two, asked, no") << QStringList{"b", "c"} << true << int(QMessageBox::No)
                                        << QStringList{"a", "b", "c", "d"} << QStringList{"b", "c"};
        QTest::newRow("two, not asked")
            << QStringList{"b", "c"} << false << 0 << QStringList{"a", "d"} << QStringList{"d"};
        QTest::newRow("the last, selection steps back")
            << QStringList{"c", "d"} << false << 0 << QStringList{"a", "b"} << QStringList{"b"};
    }

    void deletes()
    {
        QFETCH(QStringList, chosen);
        QFETCH(bool, confirm);
        QFETCH(int, answer);
        QFETCH(QStringList, left);
        QFETCH(QStringList, selectedAfter);
        // Names differ from row to row, so the trash never has to rename one.
        const QString prefix = QStringLiteral("del%1-").arg(m_folders + 1);
        const auto named = [&prefix](const QStringList& letters) {
            QStringList names;
            for (const QString& letter : letters)
                names.append(prefix + letter + ".jpg");
            return names;
        };
        const QString folder = freshFolder(named({"a", "b", "c", "d"}));
        Globals().Options[3] = confirm ? 1 : 0;
        auto browser = browserOn(folder);
        QVERIFY(browser);
        for (const QString& name : named(chosen))
            browser->lvList()->selectRow(rowOf(*browser, name), false);

        std::shared_ptr<DialogAnswer> question;
        if (confirm)
            question = pressNext(QMessageBox::StandardButton(answer));
        browser->DeleteItems();

        if (confirm) {
            QVERIFY(question->seen);
            QCOMPARE(question->title, FileOps::DeleteTitle());
            QCOMPARE(question->text, FileOps::DeleteQuestion(int(chosen.size())));
        }
        QCOMPARE(namesInOrder(browser->lvList()), named(left));
        for (const QString& name : named(chosen)) {
            const bool gone = !left.contains(name.mid(prefix.size(), 1));
            QCOMPARE(QFile::exists(folder + name), !gone);
            QCOMPARE(QFile::exists(trashed(name)), gone);
        }
        QList<int> selected;
        for (const QString& name : named(selectedAfter))
            selected.append(rowOf(*browser, name));
        QCOMPARE(browser->lvList()->selectedRows(), selected);
        QCOMPARE(m_strip->Panel(2)->text(), QStringLiteral("Images: %1").arg(left.size()));
    }

    void pastes_data()
    {
        QTest::addColumn<bool>("cut");
        QTest::addColumn<bool>("sameFolder");
        QTest::addColumn<QStringList>("targetRows");
        QTest::addColumn<QStringList>("sourceLeft");
        QTest::newRow("copy elsewhere") << false << false << QStringList{"p.jpg", "q.jpg", "z.jpg"}
                                        << QStringList{"p.jpg", "q.jpg", "r.jpg"};
        QTest::newRow("cut elsewhere")
            << true << false << QStringList{"p.jpg", "q.jpg", "z.jpg"} << QStringList{"r.jpg"};
        QTest::newRow("copy here")
            << false << true
            << QStringList{"Copy Of p.jpg", "Copy Of q.jpg", "p.jpg", "q.jpg", "r.jpg"}
            << QStringList{"Copy Of p.jpg", "Copy Of q.jpg", "p.jpg", "q.jpg", "r.jpg"};
        QTest::newRow("cut here") << true << true << QStringList{"p.jpg", "q.jpg", "r.jpg"}
                                  << QStringList{"p.jpg", "q.jpg", "r.jpg"};
    }

    void pastes()
    {
        QFETCH(bool, cut);
        QFETCH(bool, sameFolder);
        QFETCH(QStringList, targetRows);
        QFETCH(QStringList, sourceLeft);
        const QString source = freshFolder({"p.jpg", "q.jpg", "r.jpg"});
        const QString target = sameFolder ? source : freshFolder({"z.jpg"});
        auto browser = browserOn(source);
        QVERIFY(browser);
        ucPictureList* list = browser->lvList();
        list->selectRow(rowOf(*browser, "p.jpg"), true);
        list->selectRow(rowOf(*browser, "q.jpg"), false);

        browser->CutCopy(cut);
        QVERIFY(browser->ClipboardList());
        QCOMPARE(browser->ClipboardList()->Tag(),
                 cut ? QStringLiteral("True") : QStringLiteral("False"));
        QCOMPARE(list->isGhosted(rowOf(*browser, "p.jpg")), cut);
        QVERIFY(!list->isGhosted(rowOf(*browser, "r.jpg")));

        browser->txtAddress()->setAddress(target);
        browser->PasteImages();
        QCOMPARE(namesInOrder(list), targetRows);
        QCOMPARE(QDir(source).entryList(QDir::Files, QDir::Name), sourceLeft);
        for (int row = 0; row < list->count(); ++row)
            QVERIFY2(!list->isGhosted(row), qPrintable(list->text(row)));
        // A copy can be pasted again; a cut is used up.
        QCOMPARE(browser->ClipboardList() != nullptr, !cut);
        if (!sameFolder || !cut)
            QCOMPARE(browser->lblSelected()->text(),
                     sameFolder ? QStringLiteral("Copy Of q.jpg") : QStringLiteral("q.jpg"));
    }

    void pastesWhatAFileManagerCopied()
    {
        const QString elsewhere = freshFolder({"w.jpg", "notes.txt"});
        const QString source = freshFolder({"p.jpg"});
        const QString target = freshFolder();
        auto browser = browserOn(source);
        QVERIFY(browser);
        browser->SelectItem(0);
        browser->CutCopy(false);
        // A file manager copies two files after the browser did.
        DesktopClipboard::Put({elsewhere + "w.jpg", elsewhere + "notes.txt"}, false);

        browser->txtAddress()->setAddress(target);
        browser->PasteImages();
        QCOMPARE(namesInOrder(browser->lvList()), QStringList{"w.jpg"});
        QCOMPARE(QDir(target).entryList(QDir::Files), QStringList{"w.jpg"});
    }

    // The rules the window applies, checked directly where the window does not show them.

    void typeTextKeepsCaseForTheBuilder_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("upperCase");
        QTest::addColumn<QString>("type");
        QTest::newRow("browser, lower-case extension") << "a.jpg" << true << "JPG File";
        QTest::newRow("builder, lower-case extension") << "a.jpg" << false << "jpg File";
        QTest::newRow("builder, upper-case extension") << "photo.JPG" << false << "JPG File";
        QTest::newRow("builder, no dot in the last four") << "photo.jpeg" << false << "jpeg File";
    }

    void typeTextKeepsCaseForTheBuilder()
    {
        QFETCH(QString, name);
        QFETCH(bool, upperCase);
        QFETCH(QString, type);
        QCOMPARE(TypeText(name, upperCase), type);
    }

    void mapsViewTypes_data()
    {
        QTest::addColumn<int>("viewType");
        QTest::addColumn<int>("mode");
        QTest::newRow("1 large icons") << 1 << int(LargeIconsView);
        QTest::newRow("2 details") << 2 << int(ReportView);
        QTest::newRow("3 list") << 3 << int(ListView);
        QTest::newRow("0 stored by hand means list") << 0 << int(ListView);
        QTest::newRow("4 stored by hand means list") << 4 << int(ListView);
    }

    void mapsViewTypes()
    {
        QFETCH(int, viewType);
        QFETCH(int, mode);
        QCOMPARE(int(ModeForViewType(viewType)), mode);
    }

    void findsTheVolume_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("root");
        QTest::newRow("folder on a mounted volume") << "/home/me/pics/"
                                                    << "/home";
        QTest::newRow("name that only starts like a volume") << "/homework/"
                                                             << "/";
        QTest::newRow("the volume's root itself") << "/media/usb"
                                                  << "/media/usb";
        QTest::newRow("deepest volume wins") << "/media/usb/dcim/"
                                             << "/media/usb";
        QTest::newRow("everything else on the root volume") << "/tmp/x/"
                                                            << "/";
    }

    void findsTheVolume()
    {
        QFETCH(QString, path);
        QFETCH(QString, root);
        QCOMPARE(VolumeRootOf(path, {"/", "/home", "/media/usb", "/media"}), root);
    }

    void keepsItsLayout()
    {
        settings().write(Keys::Splitter_Location.in(Section), 4500);
        settings().write(Keys::Col_(2).in(Section), 2400);
        Globals().Options[8] = 1;
        auto browser = browserOn(freshFolder({"a.jpg"}));
        QVERIFY(browser);
        QCOMPARE(browser->SplitterLocation(), 4500);
        QCOMPARE(browser->lvList()->columnWidth(1), 160);
        QVERIFY(browser->lvList()->hoverSelect());

        // Activation applies the hover option as it stands then.
        Globals().Options[8] = 0;
        QEvent activate(QEvent::WindowActivate);
        QApplication::sendEvent(browser.get(), &activate);
        QVERIFY(!browser->lvList()->hoverSelect());

        browser->lvList()->treeView()->header()->resizeSection(3, 100);
        QCOMPARE(settings().read(Section, Keys::Col_(4).key), QStringLiteral("1500"));
        QCOMPARE(settings().read(Section, Keys::Col_(2).key), QStringLiteral("2400"));
        browser->close();
        QCOMPARE(settings().read(Section, Keys::Splitter_Location.key), QStringLiteral("4500"));
    }
};

LUMBRA_TEST_MAIN(tst_MyBrowser)
#include "tst_mybrowser.moc"
