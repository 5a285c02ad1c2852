#include "DialogAnswers.h"
#include "TestWorld.h"

#include "app/MainMenus.h"
#include "app/MenuTable.h"
#include "app/RestoreDefaults.h"
#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "app/UndoLog.h"
#include "app/mdiMain.h"
#include "common/AppGlobals.h"
#include "common/MsgBox.h"
#include "viewing/frmImageProps.h"

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QLabel>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSettings>
#include <QTimer>

// A child window that records the operations the main window calls on it.
class RecordingChild : public QWidget
{
    Q_OBJECT
public:
    QStringList calls;
    Q_INVOKABLE void SortItems(int order) { calls << QStringLiteral("SortItems %1").arg(order); }
    Q_INVOKABLE void RefreshMe(bool keepList) { calls << QStringLiteral("RefreshMe %1").arg(keepList); }
    Q_INVOKABLE void DeleteItems() { calls << QStringLiteral("DeleteItems"); }
    Q_INVOKABLE void RenameImage() { calls << QStringLiteral("RenameImage"); }
    Q_INVOKABLE void CutCopy(bool cut) { calls << QStringLiteral("CutCopy %1").arg(cut); }
    Q_INVOKABLE void PasteImages() { calls << QStringLiteral("PasteImages"); }
    Q_INVOKABLE void ShowBar(int bar, bool visible) { calls << QStringLiteral("ShowBar %1 %2").arg(bar).arg(visible); }
};

class tst_Menus : public QObject
{
    Q_OBJECT

    std::unique_ptr<mdiMain> makeMain()
    {
        auto main = std::make_unique<mdiMain>();
        main->Load();
        main->show();
        [[maybe_unused]] const bool settled = QTest::qWaitFor([&] { return !main->StartingUp(); });
        return main;
    }

    static QMdiSubWindow* addChild(mdiMain& main, QWidget* child, const QString& name)
    {
        child->setObjectName(name);
        QMdiSubWindow* sub = main.Area()->addSubWindow(child);
        sub->show();
        main.Area()->setActiveSubWindow(sub);
        // Commands aimed at a child are enabled a moment after one becomes active.
        [[maybe_unused]] const bool enabled =
            QTest::qWaitFor([&] { return main.Menus()->Action("mnuEdit", 3)->isEnabled(); });
        return sub;
    }

private Q_SLOTS:
    void initTestCase()
    {
        Globals().Options.fill(0);
        Globals().Options[11] = 1;
    }

    void captionsAndIndices_data()
    {
        QTest::addColumn<QString>("array");
        QTest::addColumn<QString>("entries");
        // index:caption pairs separated by "|"; a missing index is a gap with no entry.
        QTest::newRow("mnuFile") << "mnuFile"
                                 << "0:Lumbra\u00A9  -  File...|1:&Open|2:&Close|3:Close &All|4:Save Options|5:&Save|"
                                    "6:Save &As...|7:Print Options|8:Page Set&up|9:&Print|10:-|11:Prope&rties|"
                                    "12:Recent Pictures|18:-|19:&Exit";
        QTest::newRow("mnuEdit") << "mnuEdit" << "0:Edit...|1:&Undo|2:-|3:&Cut|4:&Copy|5:&Paste";
        QTest::newRow("mnuView_Controls") << "mnuView_Controls"
                                          << "0:View...|1:&Toolbar|2:&Address Bar|3:&Preview Pane|4:-|5:&Full Screen";
        QTest::newRow("mnuTools") << "mnuTools"
                                  << "0:Tools...|1:My &Images|3:&Thumbnails|5:&Slide Show|7:&Workshop|8:-|9:&Options...";
        QTest::newRow("mnuStuff") << "mnuStuff"
                                  << "0:Cool Stuff!|1:&ScreenShot!|3:&Wallpaper|4:Internet &Explorer\u00AE Background|"
                                     "5:&Restore Defaults";
        QTest::newRow("mnuWallpaper") << "mnuWallpaper"
                                      << "0:Wallpaper Options...|1:Set As Wallpaper!|2:Style|3:&Center|4:&Streched|5:&Tiled";
        QTest::newRow("mnuWindow") << "mnuWindow"
                                   << "0:&Cascade|1:Tile &Horizontally|2:Tile &Vertically|3:-|4:A&rrange Icons";
        QTest::newRow("mnuHelp") << "mnuHelp"
                                 << "0:Lumbra\u00AE - Help...|1:Help &Overview|2:&Tips... |3:-|6:-|7:&About Lumbra|"
                                    "8:&Splash Screen|9:-|10:&Go to our Web Site|11:&Email Customer Support";
        QTest::newRow("mnuSys") << "mnuSys" << "0:Lumbra\u00AE|1:&Restore|2:&Screenshot!|3:-|4:&About|5:-|6:&Exit";
        QTest::newRow("mnuPopup_ImageOptions")
            << "mnuPopup_ImageOptions"
            << "0:&Full Screen|1:-|3:&Sort by|4:&Refresh|5:-|6:&Zip My Picture(s)|7:Se&t As|8:-|9:Cu&t|10:&Copy|"
               "11:&Paste|12:-|13:&Rename|14:Save &As...|15:Prin&t|16:&Delete|17:-|18:&Properties";
        QTest::newRow("mnuSort_By") << "mnuSort_By" << "0:&Name|1:&Type|2:&Size|3:&Date";
        QTest::newRow("mnuImageOptions_SetAs") << "mnuImageOptions_SetAs" << "0:&Wallpaper|1:Internet Explorer";
        QTest::newRow("mnuImgPreview_Options") << "mnuImgPreview_Options"
                                               << "0:&Strech To Fit|1:&Keep Aspect|2:-|6:&Properties";
        QTest::newRow("mnuAlbums") << "mnuAlbums"
                                   << "0:Photo Albums|1:-|2:Rename|3:&Delete Album|4:-|5:Album &Properties";
    }
    void captionsAndIndices()
    {
        QFETCH(QString, array);
        QFETCH(QString, entries);
        QWidget owner;
        MainMenus menus(&owner);
        QMap<int, QString> expected;
        for (const QString& entry : entries.split(u'|'))
            expected.insert(entry.section(u':', 0, 0).toInt(), entry.section(u':', 1));
        for (int index = 0; index <= 20; ++index) {
            QAction* action = menus.Action(array, index);
            if (array == QLatin1String("mnuFile") && index >= 13 && index <= 17) {
                QVERIFY2(action, "recent picture entries exist");
                continue;
            }
            if (!expected.contains(index)) {
                QVERIFY2(!action, qPrintable(QStringLiteral("gap at %1").arg(index)));
                continue;
            }
            QVERIFY2(action, qPrintable(QStringLiteral("entry %1").arg(index)));
            if (expected[index] == QLatin1String("-"))
                QVERIFY(action->isSeparator());
            else
                QCOMPARE(action->text(), expected[index]);
        }
        // The actions sit in their menu in index order.
        QMenu* menu = menus.Menu(array);
        QVERIFY(menu);
        QCOMPARE(menu->actions().first(), menus.Action(array, expected.firstKey()));
        QCOMPARE(menu->actions().last(), menus.Action(array, expected.lastKey()));
    }

    void menuBarAndSubmenus()
    {
        auto main = makeMain();
        QStringList titles;
        for (QAction* action : main->menuBar()->actions())
            titles << action->text();
        QCOMPARE(titles, (QStringList{"&File", "&Edit", "&View", "&Tools", "&Stuff", "&Window", "&Help"}));
        MainMenus* menus = main->Menus();
        QCOMPARE(menus->Action("mnuStuff", 3)->menu(), menus->Menu("mnuWallpaper"));
        QCOMPARE(menus->Action("mnuPopup_ImageOptions", 3)->menu(), menus->Menu("mnuSort_By"));
        QCOMPARE(menus->Action("mnuPopup_ImageOptions", 7)->menu(), menus->Menu("mnuImageOptions_SetAs"));
        QVERIFY(!menus->Action("mnuFile", 13)->isVisible());
    }

    void routesToChildThatHasTheOperation_data()
    {
        QTest::addColumn<QString>("array");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("call");
        QTest::newRow("sort by size") << "mnuSort_By" << 2 << "SortItems 2";
        QTest::newRow("refresh") << "mnuPopup_ImageOptions" << 4 << "RefreshMe 0";
        QTest::newRow("cut") << "mnuEdit" << 3 << "CutCopy 1";
        QTest::newRow("copy") << "mnuEdit" << 4 << "CutCopy 0";
        QTest::newRow("paste") << "mnuEdit" << 5 << "PasteImages";
        QTest::newRow("pop-up cut") << "mnuPopup_ImageOptions" << 9 << "CutCopy 1";
        QTest::newRow("rename") << "mnuPopup_ImageOptions" << 13 << "RenameImage";
        QTest::newRow("delete") << "mnuPopup_ImageOptions" << 16 << "DeleteItems";
        QTest::newRow("toolbar delete") << "tlbMain" << 8 << "DeleteItems";
        QTest::newRow("toolbar refresh") << "tlbMain" << 9 << "RefreshMe 0";
        QTest::newRow("hide the toolbar") << "mnuView_Controls" << 1 << "ShowBar 1 1";
    }
    void routesToChildThatHasTheOperation()
    {
        QFETCH(QString, array);
        QFETCH(int, index);
        QFETCH(QString, call);
        auto main = makeMain();
        auto* child = new RecordingChild;
        addChild(*main, child, QStringLiteral("frmRecording"));
        QTest::failOnWarning(QRegularExpression(QStringLiteral("invokeMethod|No such method")));
        if (array == QLatin1String("tlbMain"))
            main->tlbMain_ButtonClick(index);
        else
            main->Menus()->Action(array, index)->trigger();
        QCOMPARE(child->calls, QStringList{call});
    }

    void childLackingTheOperationIsSkipped()
    {
        auto main = makeMain();
        auto* plain = new QWidget;
        addChild(*main, plain, QStringLiteral("frmPlain"));
        QTest::failOnWarning(QRegularExpression(QStringLiteral("invokeMethod|No such method")));
        // Print says there is no picture to print: close whatever box comes up.
        QTimer closer;
        connect(&closer, &QTimer::timeout, [] {
            if (QWidget* box = QApplication::activeModalWidget())
                box->close();
        });
        closer.start(10);
        for (const char* array : {"mnuSort_By", "mnuEdit", "mnuPopup_ImageOptions"})
            for (int index = 0; index < 19; ++index)
                if (QAction* action = main->Menus()->Action(QLatin1String(array), index))
                    if (!action->isSeparator() && !action->menu())
                        action->trigger();
        QCOMPARE(main->ActiveChild(), plain);
    }

    void propertiesEntriesDescribeTheCurrentPicture_data()
    {
        QTest::addColumn<QString>("array");
        QTest::addColumn<int>("index");
        QTest::newRow("File") << "mnuFile" << 11;
        QTest::newRow("picture menu") << "mnuPopup_ImageOptions" << 18;
        QTest::newRow("preview menu") << "mnuImgPreview_Options" << 6;
    }

    void propertiesEntriesDescribeTheCurrentPicture()
    {
        QFETCH(QString, array);
        QFETCH(int, index);
        auto main = makeMain();
        addChild(*main, new RecordingChild, QStringLiteral("frmThumbnails"));
        const QString picture = property("worldPath").toString() + QStringLiteral("/props.png");
        QImage(30, 20, QImage::Format_RGB32).save(picture);
        Globals().CurrentPicture = picture;
        main->Menus()->Action(array, index)->trigger();
        QTRY_VERIFY(frmImageProps::Current());
        QVERIFY(frmImageProps::Current()->lblCaption->text().endsWith(QStringLiteral("props.png")));
        delete frmImageProps::Current();
        Globals().CurrentPicture.clear();
    }

    void viewEntryWritesItsOwnKey()
    {
        auto main = makeMain();
        auto* child = new RecordingChild;
        addChild(*main, child, QStringLiteral("frmMyImages"));
        main->Menus()->Action("mnuView_Controls", 2)->trigger();
        main->Menus()->Action("mnuView_Controls", 2)->trigger();
        QCOMPARE(child->calls, (QStringList{"ShowBar 2 1", "ShowBar 2 0"}));
        QCOMPARE(SettingsStore::global().read("frmMyImages", "View_2"), QStringLiteral("False"));
        QVERIFY(!SettingsStore::global().contains("frmMyImages", "View_ 2"));
    }

    void arrangeIconsLinesUpMinimisedWindows()
    {
        auto main = makeMain();
        main->resize(900, 700);
        QList<QMdiSubWindow*> subs;
        for (int i = 0; i < 3; ++i) {
            QMdiSubWindow* sub = addChild(*main, new QWidget, QStringLiteral("frmChild%1").arg(i));
            sub->showMinimized();
            sub->move(40 + 100 * i, 30 * i);
            subs << sub;
        }
        main->Menus()->Action("mnuWindow", 4)->trigger();
        const QRect area = main->Area()->viewport()->rect();
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(subs[i]->geometry().bottom(), area.bottom());
            QCOMPARE(subs[i]->x(), i * subs[0]->width());
        }
    }

    void tileFillsTheArea_data()
    {
        QTest::addColumn<int>("entry");
        QTest::addColumn<bool>("rows");
        QTest::newRow("tile horizontally: rows") << 1 << true;
        QTest::newRow("tile vertically: columns") << 2 << false;
    }
    void tileFillsTheArea()
    {
        QFETCH(int, entry);
        QFETCH(bool, rows);
        auto main = makeMain();
        main->resize(900, 700);
        QList<QMdiSubWindow*> subs;
        for (int i = 0; i < 3; ++i)
            subs << addChild(*main, new QWidget, QStringLiteral("frmChild%1").arg(i));
        main->Menus()->Action("mnuWindow", entry)->trigger();
        const QRect area = main->Area()->viewport()->rect();
        int covered = 0;
        for (QMdiSubWindow* sub : subs) {
            QCOMPARE(rows ? sub->width() : sub->height(), rows ? area.width() : area.height());
            covered += rows ? sub->height() : sub->width();
        }
        QCOMPARE(covered, rows ? area.height() : area.width());
    }

    void wallpaperStyleTicks_data()
    {
        QTest::addColumn<int>("entry");
        QTest::addColumn<QString>("ticked");
        QTest::newRow("center") << 3 << "3";
        QTest::newRow("tiled") << 5 << "5";
        QTest::newRow("style caption unticks all") << 2 << "";
    }
    void wallpaperStyleTicks()
    {
        QFETCH(int, entry);
        auto main = makeMain();
        main->Menus()->Action("mnuWallpaper", 5)->trigger();
        main->Menus()->Action("mnuWallpaper", entry)->trigger();
        QString actual;
        for (int i = 3; i <= 5; ++i)
            if (main->Menus()->Action("mnuWallpaper", i)->isChecked())
                actual += QString::number(i);
        QTEST(actual, "ticked");
        QCOMPARE(SettingsStore::global().read("mdiMain", "Wallpaper_Style"), QString::number(entry));
        // The ticks come back at the next start.
        auto next = makeMain();
        for (int i = 3; i <= 5; ++i)
            QCOMPARE(next->Menus()->Action("mnuWallpaper", i)->isChecked(), i == entry);
    }

    void recentEntriesShowFileNames()
    {
        auto main = makeMain();
        main->ProposeRecent(QStringLiteral("/pics/trip/beach.jpg"));
        main->ProposeRecent(QStringLiteral("/pics/cat.png"));
        QAction* first = main->Menus()->Action("mnuFile", 13);
        QVERIFY(first->isVisible());
        QCOMPARE(first->text(), QStringLiteral("&1 cat.png"));
        QCOMPARE(main->Menus()->Action("mnuFile", 14)->text(), QStringLiteral("&2 beach.jpg"));
        QVERIFY(!main->Menus()->Action("mnuFile", 15)->isVisible());
        QSignalSpy open(main.get(), &mdiMain::OpenPictureRequested);
        main->Menus()->Action("mnuFile", 14)->trigger();
        QCOMPARE(open.value(0).value(0).toString(), QStringLiteral("/pics/trip/beach.jpg"));
        // Viewing it makes it the newest entry.
        QCOMPARE(SettingsStore::global().read("mdiMain", "File_Recent_0"), QStringLiteral("/pics/trip/beach.jpg"));
        QCOMPARE(first->text(), QStringLiteral("&1 beach.jpg"));
    }

    void undoEntryFollowsTheLog()
    {
        auto main = makeMain();
        QAction* undo = main->Menus()->Action("mnuEdit", 1);
        UndoLog::global().Forget(QStringLiteral("Nothing yet."));
        QVERIFY(!undo->isEnabled());
        QCOMPARE(undo->toolTip(), QStringLiteral("Nothing yet."));

        int undone = 0;
        UndoLog::global().Record(QStringLiteral("Rename"), [&undone] {
            ++undone;
            return UndoLog::Outcome{};
        });
        QVERIFY(undo->isEnabled());
        QCOMPARE(undo->toolTip(), QStringLiteral("Undo Rename"));
        undo->trigger();
        undo->trigger();
        QCOMPARE(undone, 1);
        QVERIFY(!undo->isEnabled());
        QVERIFY(undo->toolTip().contains(QStringLiteral("Rename")));
    }

    void restoresDefaultsWhenConfirmed_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("restored");
        QTest::newRow("yes: every setting back to its default") << int(QMessageBox::Yes) << true;
        QTest::newRow("no: nothing changes") << int(QMessageBox::No) << false;
    }

    void restoresDefaultsWhenConfirmed()
    {
        QFETCH(int, answer);
        QFETCH(bool, restored);
        auto main = makeMain();
        SettingsStore& store = SettingsStore::global();
        store.write(Keys::Option(11), 0);
        store.write(Keys::MyColor, 255);
        store.write(QStringLiteral("frmThumbnails"), QStringLiteral("ThumbSize"), 3);
        Globals().Options[11] = 0;
        Globals().MyColor = 255;
        Globals().CurrentPicture = QStringLiteral("/pics/beach.jpg");
        main->ProposeRecent(QStringLiteral("/pics/beach.jpg"));
        addChild(*main, new QWidget, QStringLiteral("frmThumbnails"));

        DialogAnswers answers({QMessageBox::StandardButton(answer)});
        main->mnuStuff_Click(5);
        QCOMPARE(answers.seen, QStringList{RestoreDefaults::Title() + u'|' +
                                           MsgBox::Lines(RestoreDefaults::Question())});

        QCOMPARE(main->Area()->subWindowList().isEmpty(), restored);
        QCOMPARE(store.contains(QStringLiteral("frmThumbnails"), QStringLiteral("ThumbSize")), !restored);
        QCOMPARE(Globals().MyColor, restored ? 12648384L : 255L);
        QCOMPARE(Globals().option(11), restored);
        QCOMPARE(main->Recent().Item(0).isEmpty(), restored);
        QCOMPARE(Globals().CurrentPicture, QStringLiteral("/pics/beach.jpg"));
        store.flush();
        // The next start reads none of the old values back.
        QSettings file(store.filePath(), QSettings::IniFormat);
        for (const char* key : {"MyColor", "Options_11", "frmThumbnails/ThumbSize", "mdiMain/Dimensions0"})
            QVERIFY2(file.contains(key) != restored, key);
    }
};

LUMBRA_TEST_MAIN(tst_Menus)
#include "tst_menus.moc"
