#include "AppFixtures.h"
#include "DialogAnswers.h"
#include "TestWorld.h"

#include "app/MainMenus.h"
#include "app/RestoreDefaults.h"
#include "app/UndoLog.h"
#include "common/MsgBox.h"
#include "viewing/frmImageProps.h"

#include <QAction>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QRegularExpression>
#include <QSettings>

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

    static std::unique_ptr<mdiMain> makeMain()
    {
        auto main = std::make_unique<mdiMain>();
        StartMain(*main);
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

    static void checkNoMissingOperation()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral("invokeMethod|No such method")));
    }

private Q_SLOTS:
    void init()
    {
        FreshSettings();
        Globals().Options[11] = 1;
        Globals().CurrentPicture.clear();
    }

    void entriesFollowTheState_data()
    {
        QTest::addColumn<QString>("array");
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("alone"); // shown and enabled with no child window
        QTest::addColumn<bool>("withChild");
        QTest::newRow("Open") << "mnuFile" << 1 << true << true;
        QTest::newRow("Close All") << "mnuFile" << 3 << false << true;
        QTest::newRow("Copy") << "mnuEdit" << 4 << false << true;
        QTest::newRow("Options") << "mnuTools" << 9 << true << true;
        QTest::newRow("toolbar Delete") << "tlbMain" << 8 << false << true;
        // No meaning on this desktop; no recent pictures to put under the caption.
        QTest::newRow("browser background") << "mnuStuff" << 4 << false << false;
        QTest::newRow("set as browser background") << "mnuImageOptions_SetAs" << 1 << false << false;
        QTest::newRow("Recent Pictures caption") << "mnuFile" << 12 << false << false;
    }
    void entriesFollowTheState()
    {
        QFETCH(QString, array);
        QFETCH(int, index);
        auto main = makeMain();
        QAction* action = array == QLatin1String("tlbMain")
                              ? main->findChild<QAction*>(QStringLiteral("tlbMain(%1)").arg(index))
                              : main->Menus()->Action(array, index);
        QVERIFY(action);
        QTEST(action->isVisible() && action->isEnabled(), "alone");
        addChild(*main, new QWidget, QStringLiteral("frmPlain"));
        QTEST(action->isVisible() && action->isEnabled(), "withChild");
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
        QTest::newRow("rename") << "mnuPopup_ImageOptions" << 13 << "RenameImage";
        QTest::newRow("delete") << "mnuPopup_ImageOptions" << 16 << "DeleteItems";
        QTest::newRow("toolbar delete") << "tlbMain" << 8 << "DeleteItems";
        QTest::newRow("hide the toolbar") << "mnuView_Controls" << 1 << "ShowBar 1 1";
        QTest::newRow("File > Properties") << "mnuFile" << 11 << "properties";
        QTest::newRow("picture menu > Properties") << "mnuPopup_ImageOptions" << 18 << "properties";
        QTest::newRow("preview menu > Properties") << "mnuImgPreview_Options" << 6 << "properties";
    }
    void routesToChildThatHasTheOperation()
    {
        QFETCH(QString, array);
        QFETCH(int, index);
        QFETCH(QString, call);
        auto main = makeMain();
        auto* child = new RecordingChild;
        addChild(*main, child, QStringLiteral("frmThumbnails"));
        Globals().CurrentPicture = MakePicture(WorldPath(QStringLiteral("props.jpg")));
        checkNoMissingOperation();
        if (array == QLatin1String("tlbMain"))
            main->tlbMain_ButtonClick(index);
        else
            main->Menus()->Action(array, index)->trigger();
        if (call != QLatin1String("properties")) {
            QCOMPARE(child->calls.join(u','), call);
            return;
        }
        // The properties of the current picture.
        QTRY_VERIFY(frmImageProps::Current());
        QVERIFY(frmImageProps::Current()->lblCaption->text().endsWith(QStringLiteral("props.jpg")));
        delete frmImageProps::Current();
    }

    void childLackingTheOperationIsSkipped()
    {
        auto main = makeMain();
        auto* plain = new QWidget;
        addChild(*main, plain, QStringLiteral("frmPlain"));
        checkNoMissingOperation();
        DialogAnswers answers; // Print says there is no picture to print.
        for (const char* array : {"mnuSort_By", "mnuEdit", "mnuPopup_ImageOptions"})
            for (int index = 0; index < 19; ++index)
                if (QAction* action = main->Menus()->Action(QLatin1String(array), index))
                    if (!action->isSeparator() && !action->menu())
                        action->trigger();
        QCOMPARE(main->ActiveChild(), plain);
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

    void windowMenuTiles_data()
    {
        QTest::addColumn<int>("entry");
        QTest::newRow("tile horizontally: rows") << 1;
        QTest::newRow("tile vertically: columns") << 2;
    }
    void windowMenuTiles()
    {
        QFETCH(int, entry);
        auto main = makeMain();
        main->resize(900, 700);
        QList<QMdiSubWindow*> subs;
        for (int i = 0; i < 3; ++i)
            subs << addChild(*main, new QWidget, QStringLiteral("frmChild%1").arg(i));
        main->Menus()->Action("mnuWindow", entry)->trigger();
        const QRect area = main->Area()->viewport()->rect();
        QRect covered;
        int surface = 0;
        for (QMdiSubWindow* sub : std::as_const(subs)) {
            const QRect place = sub->geometry();
            QCOMPARE(entry == 1 ? place.width() : place.height(), entry == 1 ? area.width() : area.height());
            covered |= place;
            surface += place.width() * place.height();
        }
        // The tiles fill the area without overlapping.
        QCOMPARE(covered, area);
        QCOMPARE(surface, area.width() * area.height());
    }

    void wallpaperStyleTicks_data()
    {
        QTest::addColumn<int>("entry");
        QTest::addColumn<QString>("ticked");
        QTest::newRow("center") << 3 << "3";
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
        store.write("frmThumbnails", "ThumbSize", 3);
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
        QCOMPARE(Globals().MyColor, restored ? 12648384L : 255L);
        QCOMPARE(Globals().option(11), restored);
        QCOMPARE(main->Recent().Item(0).isEmpty(), restored);
        QCOMPARE(Globals().CurrentPicture, QStringLiteral("/pics/beach.jpg"));
        // The next start reads none of the old values back.
        store.flush();
        QSettings file(store.filePath(), QSettings::IniFormat);
        for (const char* key : {"MyColor", "Options_11", "frmThumbnails/ThumbSize", "mdiMain/Dimensions0"})
            QVERIFY2(file.contains(key) != restored, key);
    }
};

LUMBRA_TEST_MAIN(tst_Menus)
#include "tst_menus.moc"
