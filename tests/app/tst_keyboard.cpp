#include "TestWorld.h"

#include "app/frmAbout.h"
#include "app/frmHelp.h"
#include "app/frmOptions.h"
#include "app/frmTip.h"
#include "app/MainMenus.h"
#include "app/mdiMain.h"
#include "app/MenuTable.h"
#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "app/UndoLog.h"
#include "browser/PictureListWindow.h"
#include "browser/ucPictureList.h"
#include "common/AppGlobals.h"
#include "common/ucTxtAddress.h"
#include "gallery/frmThumbnails.h"
#include "gallery/frmThumbSize.h"
#include "gallery/GalleryLayout.h"
#include "gallery/ThumbGrid.h"
#include "viewing/frmImageProps.h"
#include "viewing/frmPageSetup.h"
#include "viewing/frmViewImage.h"
#include "viewing/frmWorkshop.h"
#include "viewing/PictureOpener.h"
#include "viewing/PictureWindows.h"
#include "viewing/ucImgPreview.h"

#include <QAbstractItemView>
#include <QAction>
#include <QDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include <memory>
#include <set>

namespace {

// What a menu shows of a caption: "&&" as "&", any other "&" gone.
QString shownText(QString caption)
{
    caption.replace(QStringLiteral("&&"), QStringLiteral("\x01"));
    caption.remove(QLatin1Char('&'));
    return caption.replace(QLatin1Char('\x01'), QLatin1Char('&'));
}

// The widgets in which an action's keys can fire: none for an action only a pop-up menu
// shows, as Qt fires those keys only through a menu bar or a widget holding the action.
QList<QWidget*> keyHolders(QAction* action)
{
    QList<QWidget*> holders;
    for (QObject* object : action->associatedObjects()) {
        if (auto* menu = qobject_cast<QMenu*>(object))
            holders << keyHolders(menu->menuAction());
        else if (auto* widget = qobject_cast<QWidget*>(object))
            holders << widget;
    }
    return holders;
}

// The ancestors of a and b (or they themselves) that are children of their nearest common
// ancestor: what the eye compares when it reads one after the other.
std::pair<QWidget*, QWidget*> siblingsOver(QWidget* a, QWidget* b)
{
    for (QWidget* upA = a; upA; upA = upA->parentWidget())
        for (QWidget* upB = b; upB; upB = upB->parentWidget())
            if (upA->parentWidget() && upA->parentWidget() == upB->parentWidget())
                return {upA, upB};
    return {a, b};
}

// Whether b comes after a for someone reading the window: further down, or to the right
// on the same line.
bool readsAfter(QWidget* a, QWidget* b)
{
    const auto [upA, upB] = siblingsOver(a, b);
    if (upA == upB || upA->isAncestorOf(upB) || upB->isAncestorOf(upA))
        return true;
    const QRect ra = upA->geometry(), rb = upB->geometry();
    const int overlap = qMin(ra.bottom(), rb.bottom()) - qMax(ra.top(), rb.top());
    if (overlap > qMin(ra.height(), rb.height()) / 2)
        return rb.left() >= ra.left();
    return rb.center().y() > ra.center().y();
}

// The class, name and text of a widget or an action, for messages.
QString describe(const QObject* object)
{
    QString text;
    if (auto* button = qobject_cast<const QAbstractButton*>(object))
        text = button->text();
    else if (auto* action = qobject_cast<const QAction*>(object))
        text = action->text();
    return QStringLiteral("%1 %2 \"%3\"")
        .arg(QLatin1String(object->metaObject()->className()), object->objectName(), text);
}

// Whether keys held by a and b with these contexts can be pressed with the same focus.
bool overlap(QWidget* a, Qt::ShortcutContext ca, QWidget* b, Qt::ShortcutContext cb)
{
    if (ca == Qt::ApplicationShortcut || cb == Qt::ApplicationShortcut)
        return true;
    if (ca == Qt::WindowShortcut || cb == Qt::WindowShortcut)
        return a->window() == b->window();
    return a == b || a->isAncestorOf(b) || b->isAncestorOf(a);
}

} // namespace

class tst_Keyboard : public QObject
{
    Q_OBJECT

    std::unique_ptr<mdiMain> m_main;
    QPointer<frmWorkshop> m_workshop;
    QString m_picture;

    QString world(const QString& relative) const
    {
        return property("worldPath").toString() + u'/' + relative;
    }

    QWidget* childOf(const char* place) const
    {
        const std::pair<const char*, const char*> windows[] = {{"gallery", "frmThumbnails"},
                                                               {"browser", "frmMyImages"},
                                                               {"builder", "frmSlideshow"},
                                                               {"picture window", "frmViewImage"}};
        for (const auto& [name, window] : windows)
            if (qstrcmp(name, place) == 0)
                for (QMdiSubWindow* sub : m_main->Area()->subWindowList())
                    if (sub->widget()->objectName() == QLatin1String(window))
                        return sub->widget();
        return nullptr;
    }

    // Where the focus goes for a place: the picture list or grid, or the picture window.
    QWidget* focusFor(const QString& place) const
    {
        const QByteArray name =
            place == QLatin1String("no menu bar") ? "picture window" : place.toLatin1();
        QWidget* window = childOf(name.constData());
        if (auto* list = qobject_cast<PictureListWindow*>(window))
            return list->lvList()->view();
        if (auto* gallery = qobject_cast<frmThumbnails*>(window))
            return gallery->picFrame();
        return window;
    }

    // Makes the window that holds widget the active one and gives widget the focus.
    void focusOn(QWidget* widget)
    {
        m_main->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_main.get()));
        for (QMdiSubWindow* sub : m_main->Area()->subWindowList())
            if (sub->isAncestorOf(widget))
                m_main->Area()->setActiveSubWindow(sub);
        widget->setFocus();
        // Commands aimed at a child are enabled a moment after one becomes active.
        QTRY_VERIFY(m_main->Menus()->Action(QStringLiteral("mnuEdit"), 3)->isEnabled());
        QTRY_COMPARE(QApplication::focusWidget(), widget);
    }

    // A gallery of 30 pictures in rows of four, scrolled: its grid has the focus and no
    // picture is selected yet.
    std::unique_ptr<frmThumbnails> gridOfFour()
    {
        const QString folder = world(QStringLiteral("thirty/"));
        if (!QDir(folder).exists()) {
            QDir().mkpath(folder);
            QImage picture(32, 24, QImage::Format_RGB32);
            for (int i = 0; i < 30; ++i) {
                picture.fill(QColor::fromHsv(i * 12, 200, 200));
                picture.save(folder + QStringLiteral("p%1.png").arg(i, 2, 10, QLatin1Char('0')));
            }
        }
        SettingsStore::global().write(Keys::ThumbSizeForGallery, 3);
        auto gallery = std::make_unique<frmThumbnails>();
        gallery->ShowBar(3, false);
        gallery->resize(430, 360);
        gallery->show();
        gallery->ShowFolder(folder);
        if (!QTest::qWaitForWindowActive(gallery.get()) ||
            !QTest::qWaitFor([&] { return !gallery->PassRunning() && gallery->Columns() == 4; },
                             20000))
            return {};
        gallery->picFrame()->setFocus();
        return gallery;
    }

    static std::set<int> checkedCells(const ThumbGrid* grid)
    {
        std::set<int> checked;
        for (int i = 0; i < grid->count(); ++i)
            if (grid->isChecked(i))
                checked.insert(i);
        return checked;
    }

private Q_SLOTS:
    void initTestCase()
    {
        Globals().Options.fill(0);
        Globals().Options[11] = 1;
        // Going to the tray by itself, so the options show the idle time's buttons.
        Globals().Options[0] = 1;
        m_picture = world(QStringLiteral("Tom & Jerry.png"));
        QImage picture(64, 48, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        QVERIFY(picture.save(m_picture));

        // The main window with every kind of child window open, as the user has it.
        m_main = std::make_unique<mdiMain>();
        m_main->Load();
        m_main->show();
        QVERIFY(QTest::qWaitForWindowActive(m_main.get()));
        QTRY_VERIFY(!m_main->StartingUp());
        for (int button :
             {MenuTable::MyImagesButton, MenuTable::SlideshowButton, MenuTable::ThumbnailsButton})
            QVERIFY(m_main->OpenChild(button));
        QVERIFY(PictureWindows::Open(m_picture));
        m_main->ProposeRecent(m_picture);
        m_main->ProposeRecent(world(QStringLiteral("R&B.png")));
        m_workshop = new frmWorkshop(m_main.get());
        // Something to undo, so Undo takes its keys.
        UndoLog::global().Record(QStringLiteral("Nothing"), [] { return UndoLog::Outcome{}; });
    }

    void cleanupTestCase() { m_main.reset(); }

    // Letters two entries of one menu share press to the first and need Enter; where the
    // captions are fixed that way, all but one of the entries have keys of their own.
    void mnemonicsLeadToOneEntry_data()
    {
        QTest::addColumn<QString>("array");
        QTest::addColumn<QString>("shared");
        const QHash<QString, QString> fixed = {
            {QStringLiteral("mnuFile"), QStringLiteral("A")},
            {QStringLiteral("mnuEdit"), QStringLiteral("C")},
            {QStringLiteral("mnuPopup_ImageOptions"), QStringLiteral("PRT")},
        };
        for (const MenuTable::Array& array : MenuTable::Arrays())
            if (array.name != MenuTable::Popups && array.name != QLatin1String("mnuTopMenus"))
                QTest::newRow(qPrintable(array.name)) << array.name << fixed.value(array.name);
    }
    void mnemonicsLeadToOneEntry()
    {
        QFETCH(QString, array);
        QMenu* menu = m_main->Menus()->Menu(array);
        // The open windows join the Window menu as it opens.
        Q_EMIT menu->aboutToShow();
        QMap<QChar, QList<QAction*>> byLetter;
        for (QAction* action : menu->actions()) {
            const QKeySequence mnemonic = QKeySequence::mnemonic(action->text());
            if (action->isVisible() && !action->isSeparator() && !mnemonic.isEmpty())
                byLetter[QChar(mnemonic[0].key())] << action;
        }
        QString shared;
        for (auto letter = byLetter.cbegin(); letter != byLetter.cend(); ++letter) {
            if (letter->size() < 2)
                continue;
            shared += letter.key();
            int keyless = 0;
            for (QAction* action : *letter)
                keyless += action->shortcuts().isEmpty() ? 1 : 0;
            QVERIFY2(keyless <= 1, qPrintable(QStringLiteral("%1: several entries on %2 and no key")
                                                  .arg(array, letter.key())));
        }
        QTEST(shared, "shared");
    }

    // Names of pictures and windows are shown as they are and never take an entry's letter.
    void namesInMenusKeepTheirAmpersands()
    {
        QAction* recent = m_main->Menus()->Action(QStringLiteral("mnuFile"), 13);
        QCOMPARE(shownText(recent->text()), QStringLiteral("1 R&B.png"));
        QCOMPARE(QKeySequence::mnemonic(recent->text()), QKeySequence(Qt::ALT | Qt::Key_1));
        QMenu* windows = m_main->Menus()->Menu(QStringLiteral("mnuWindow"));
        Q_EMIT windows->aboutToShow();
        QStringList shown;
        for (QAction* action : windows->actions())
            shown << shownText(action->text());
        QVERIFY2(shown.filter(QStringLiteral("Tom & Jerry.png")).size() == 1,
                 qPrintable(shown.join(u'|')));
    }

    // Each key of the main window reaches its entry wherever the focus is, and while the menu
    // bar is hidden; a key the focused child window answers itself stays with it.
    void keysReachTheirEntries_data()
    {
        QTest::addColumn<QString>("place");
        QTest::addColumn<QString>("array");
        QTest::addColumn<int>("index");
        QTest::addColumn<QKeySequence>("key");
        QTest::addColumn<bool>("reaches");
        // Where the focus is, and whether that is one of the picture lists.
        const std::pair<const char*, bool> places[] = {{"gallery", true},
                                                       {"browser", true},
                                                       {"builder", true},
                                                       {"picture window", false},
                                                       {"no menu bar", false}};
        for (const auto& [place, list] : places)
            for (const MenuTable::Array& array : MenuTable::Arrays())
                for (const MenuTable::Entry& entry : array.entries) {
                    if (!MenuTable::MainWindowKeys(array.name, entry.index))
                        continue;
                    for (const QKeySequence& key : MenuTable::Shortcuts(array.name, entry.index)) {
                        // The gallery reloads on F5 itself, at most every two seconds, and the
                        // lists delete on Shift+Delete rather than cut.
                        const bool ownKey =
                            (qstrcmp(place, "gallery") == 0 && key == QKeySequence(Qt::Key_F5)) ||
                            (list && key == QKeySequence(Qt::SHIFT | Qt::Key_Delete));
                        QTest::addRow("%s, %s(%d), %s", place, qPrintable(array.name), entry.index,
                                      qPrintable(key.toString()))
                            << QString::fromLatin1(place) << array.name << entry.index << key
                            << !ownKey;
                    }
                }
    }
    void keysReachTheirEntries()
    {
        QFETCH(QString, place);
        QFETCH(QKeySequence, key);
        // The entries report their clicks; nothing is carried out.
        QObject::disconnect(m_main->Menus(), &MainMenus::Clicked, m_main.get(), nullptr);
        QSignalSpy clicked(m_main->Menus(), &MainMenus::Clicked);
        m_main->MainMenu_View(place == QLatin1String("no menu bar") ? 2 : 0);
        focusOn(focusFor(place));

        const QKeyCombination pressed = key[0];
        QTest::keyClick(QApplication::focusWidget(), pressed.key(), pressed.keyboardModifiers());
        m_main->MainMenu_View(0);
        QFETCH(bool, reaches);
        QCOMPARE(clicked.size(), reaches ? 1 : 0);
        if (reaches) {
            QTEST(clicked[0][0].toString(), "array");
            QTEST(clicked[0][1].toInt(), "index");
        }
    }

    void gridMoves_data()
    {
        using GalleryLayout::Move;
        QTest::addColumn<int>("current");
        QTest::addColumn<Move>("move");
        QTest::addColumn<QList<int>>("removed");
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("expected");
        // Ten cells in rows of four: 0-3, 4-7, 8-9.
        QTest::newRow("right runs on into the next row")
            << 3 << Move::Right << QList<int>{} << 2 << 4;
        QTest::newRow("left stops at the first cell") << 0 << Move::Left << QList<int>{} << 2 << 0;
        QTest::newRow("right steps over a removed cell")
            << 4 << Move::Right << QList<int>{5} << 2 << 6;
        QTest::newRow("up keeps the column") << 6 << Move::Up << QList<int>{} << 2 << 2;
        QTest::newRow("up from the first row stays") << 2 << Move::Up << QList<int>{} << 2 << 2;
        QTest::newRow("down over a removed cell") << 1 << Move::Down << QList<int>{5} << 2 << 9;
        QTest::newRow("down into a short last row ends on its last cell")
            << 6 << Move::Down << QList<int>{} << 2 << 9;
        QTest::newRow("down from the last row stays") << 9 << Move::Down << QList<int>{} << 2 << 9;
        QTest::newRow("page down moves whole rows")
            << 1 << Move::PageDown << QList<int>{} << 1 << 5;
        QTest::newRow("page down past the end takes the last cell")
            << 4 << Move::PageDown << QList<int>{} << 2 << 9;
        QTest::newRow("page up stops in the first row's column")
            << 9 << Move::PageUp << QList<int>{} << 5 << 1;
        QTest::newRow("home skips removed cells") << 6 << Move::Home << QList<int>{0} << 2 << 1;
        QTest::newRow("end skips removed cells") << 2 << Move::End << QList<int>{9} << 2 << 8;
        QTest::newRow("without a current cell the first")
            << -1 << Move::Down << QList<int>{0} << 2 << 1;
        QTest::newRow("without a current cell End the last")
            << -1 << Move::End << QList<int>{} << 2 << 9;
        QTest::newRow("a removed current cell counts as none")
            << 5 << Move::Right << QList<int>{5} << 2 << 0;
        QTest::newRow("nothing shown")
            << 0 << Move::Right << QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9} << 2 << -1;
    }
    void gridMoves()
    {
        QFETCH(int, current);
        QFETCH(GalleryLayout::Move, move);
        QFETCH(QList<int>, removed);
        QFETCH(int, page);
        const auto hidden = [&](int index) { return removed.contains(index); };
        QTEST(GalleryLayout::MoveTo(current, move, 4, 10, page, hidden), "expected");
    }

    // The keys move the current picture as clicks do: it is previewed and scrolled into view,
    // Shift selects the run from where the selection began, Ctrl leaves the selection alone.
    void gridKeys_data()
    {
        QTest::addColumn<QList<QKeyCombination>>("keys");
        QTest::addColumn<int>("current");
        QTest::addColumn<QList<int>>("checked");
        using K = QKeyCombination;
        const Qt::KeyboardModifier shift = Qt::ShiftModifier, ctrl = Qt::ControlModifier;
        QTest::newRow("the first key takes the first picture in view")
            << QList<K>{K(Qt::Key_Right)} << 0 << QList<int>{0};
        QTest::newRow("right selects the next")
            << QList<K>{K(Qt::Key_Right), K(Qt::Key_Right)} << 1 << QList<int>{1};
        QTest::newRow("down keeps the column")
            << QList<K>{K(Qt::Key_Right), K(Qt::Key_Right), K(Qt::Key_Down)} << 5 << QList<int>{5};
        QTest::newRow("shift runs from the start")
            << QList<K>{K(Qt::Key_Home), K(shift, Qt::Key_Right), K(shift, Qt::Key_Down),
                        K(shift, Qt::Key_Left)}
            << 4 << QList<int>{0, 1, 2, 3, 4};
        QTest::newRow("ctrl leaves the selection")
            << QList<K>{K(Qt::Key_Home), K(ctrl, Qt::Key_Right), K(ctrl, Qt::Key_Right)} << 2
            << QList<int>{0};
        QTest::newRow("space adds the current one")
            << QList<K>{K(Qt::Key_Home), K(ctrl, Qt::Key_Down), K(Qt::Key_Space)} << 4
            << QList<int>{0, 4};
        QTest::newRow("end scrolls to the last")
            << QList<K>{K(Qt::Key_End)} << 29 << QList<int>{29};
        QTest::newRow("page down and up again")
            << QList<K>{K(Qt::Key_Home), K(Qt::Key_Right), K(Qt::Key_PageDown), K(Qt::Key_PageUp)}
            << 1 << QList<int>{1};
    }
    void gridKeys()
    {
        QFETCH(QList<QKeyCombination>, keys);
        QFETCH(int, current);
        QFETCH(QList<int>, checked);
        auto gallery = gridOfFour();
        QVERIFY(gallery);
        ThumbGrid* grid = gallery->picFrame();
        for (const QKeyCombination& key : keys)
            QTest::keyClick(grid, key.key(), key.keyboardModifiers());
        QCOMPARE(gallery->CurrentIndex(), current);
        QCOMPARE(grid->current(), current);
        QCOMPARE(checkedCells(grid), std::set<int>(checked.begin(), checked.end()));
        QCOMPARE(gallery->ucPreview()->FileName(), gallery->FileOf(current));
        QVERIFY(grid->rect().contains(grid->cellRect(current).toRect()));
    }

    void gridEnterOpensAndMenuKeysShowTheMenu()
    {
        auto gallery = gridOfFour();
        QVERIFY(gallery);
        ThumbGrid* grid = gallery->picFrame();
        QStringList opened;
        PictureOpener::SetHandler([&opened](const QString& path) { opened << path; });
        QSignalSpy menus(grid, &ThumbGrid::CellContextMenu);
        QTest::keyClick(grid, Qt::Key_Down);
        QTest::keyClick(grid, Qt::Key_Down);
        QTest::keyClick(grid, Qt::Key_Return);
        QTest::keyClick(grid, Qt::Key_F10, Qt::ShiftModifier);
        QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(),
                                  grid->mapToGlobal(QPoint()));
        QApplication::sendEvent(grid, &menuKey);
        PictureOpener::SetHandler({});
        QCOMPARE(opened, QStringList{gallery->FileOf(4)});
        QCOMPARE(menus.size(), 2);
        for (const QList<QVariant>& menu : menus) {
            QCOMPARE(menu[0].toInt(), 4);
            QVERIFY(grid->cellRect(4).contains(grid->mapFromGlobal(menu[1].toPoint())));
        }
    }

    void tabReachesTheGrid()
    {
        auto gallery = gridOfFour();
        QVERIFY(gallery);
        auto* address = gallery->findChild<QLineEdit*>(QStringLiteral("txtAddress"));
        address->setFocus();
        QTRY_COMPARE(QApplication::focusWidget(), address);
        for (int tab = 0; tab < 10 && QApplication::focusWidget() != gallery->picFrame(); ++tab)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), gallery->picFrame());
    }

    // The picture list shows the picture menu for its selected row, from the mouse and from
    // the keys, where the row is.
    void pictureListShowsThePictureMenu_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("right click") << "mouse";
        QTest::newRow("menu key") << "menu key";
        QTest::newRow("Shift+F10") << "Shift+F10";
    }
    void pictureListShowsThePictureMenu()
    {
        QFETCH(QString, how);
        auto* browser = static_cast<PictureListWindow*>(childOf("browser"));
        ucPictureList* list = browser->lvList();
        if (list->count() == 0) {
            browser->txtAddress()->setAddress(world(QStringLiteral("thirty/")));
            QTRY_VERIFY(list->count() == 30);
        }
        QAbstractItemView* view = list->view();
        focusOn(view);
        list->selectRow(2, true);
        const QRect row = view->visualRect(view->model()->index(2, 0));
        QSignalSpy asked(list, &ucPictureList::ContextMenuRequested);
        if (how == QLatin1String("mouse")) {
            QContextMenuEvent click(QContextMenuEvent::Mouse, row.center(),
                                    view->viewport()->mapToGlobal(row.center()));
            QApplication::sendEvent(view->viewport(), &click);
        } else if (how == QLatin1String("menu key")) {
            QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(),
                                  view->mapToGlobal(QPoint()));
            QApplication::sendEvent(view, &key);
        } else {
            QTest::keyClick(view, Qt::Key_F10, Qt::ShiftModifier);
        }
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked[0][0].toInt(), 2);
        QVERIFY(row.contains(view->viewport()->mapFromGlobal(asked[0][1].toPoint())));
        QMenu* menu = m_main->Menus()->Menu(QStringLiteral("mnuPopup_ImageOptions"));
        QTRY_VERIFY(menu->isVisible());
        menu->close();
    }

    // Tab reaches every control of a dialog or window, in the order the eye reads them; an
    // underlined letter leads to one control; Enter has a default button and Esc closes.
    void windowsTakeTheKeyboard_data()
    {
        QTest::addColumn<QString>("window");
        QTest::addColumn<int>("page");
        for (int page = 0; page < 4; ++page)
            QTest::addRow("options, page %d", page) << "options" << page;
        for (const char* window :
             {"thumbnail size", "page setup", "properties", "tip", "about", "workshop", "help"})
            QTest::newRow(window) << window << -1;
    }
    void windowsTakeTheKeyboard()
    {
        QFETCH(QString, window);
        QFETCH(int, page);
        Globals().CurrentPicture = m_picture;
        QPointer<QWidget> shown;
        if (window == QLatin1String("options"))
            shown = new frmOptions(m_main.get());
        else if (window == QLatin1String("thumbnail size"))
            shown = new frmThumbSize(nullptr, m_main.get());
        else if (window == QLatin1String("page setup"))
            shown = new frmPageSetup(m_main.get());
        else if (window == QLatin1String("properties"))
            shown = frmImageProps::ShowCurrent(m_main.get());
        else if (window == QLatin1String("tip"))
            shown = frmTip::Open(m_main.get());
        else if (window == QLatin1String("about"))
            shown = new frmAbout(m_main.get());
        else if (window == QLatin1String("workshop"))
            shown = new frmWorkshop(m_main.get());
        else
            shown = new frmHelp(m_main.get());
        const auto cleanup = qScopeGuard([&] { delete shown.data(); });
        if (auto* workshop = qobject_cast<frmWorkshop*>(shown.data()))
            workshop->OpenPicture(m_picture);
        if (auto* options = qobject_cast<frmOptions*>(shown.data()))
            options->SSTab1->setCurrentIndex(page);
        shown->show();
        shown->activateWindow();
        QVERIFY(QTest::qWaitForWindowExposed(shown));
        QTRY_VERIFY(shown->isActiveWindow());
        if (!QApplication::focusWidget() || QApplication::focusWidget()->window() != shown)
            QTest::keyClick(shown, Qt::Key_Tab);

        // Round the window with Tab, back to where it began.
        QList<QWidget*> walk{QApplication::focusWidget()};
        QVERIFY(walk.first());
        // A text browser takes Tab from link to link first.
        for (int step = 0; step < 300; ++step) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            if (QApplication::focusWidget() == walk.first())
                break;
            if (QApplication::focusWidget() != walk.last())
                walk << QApplication::focusWidget();
        }
        QVERIFY2(QApplication::focusWidget() == walk.first(), "Tab goes round");
        // The round starts anywhere: read it from the control nearest the top left.
        const auto topLeft =
            std::min_element(walk.begin(), walk.end(), [&](QWidget* a, QWidget* b) {
                return readsAfter(a, b) && !readsAfter(b, a);
            });
        std::rotate(walk.begin(), topLeft, walk.end());
        for (int i = 1; i < walk.size(); ++i)
            QVERIFY2(
                readsAfter(walk[i - 1], walk[i]),
                qPrintable(describe(walk[i]) + QStringLiteral(" after ") + describe(walk[i - 1])));

        QSet<QChar> letters;
        for (QWidget* widget : shown->findChildren<QWidget*>()) {
            if (!widget->isVisible() || !widget->isEnabled())
                continue;
            // Radio buttons of one group are one stop: the arrows move among them.
            auto* radio = qobject_cast<QRadioButton*>(widget);
            const bool groupReached =
                radio && std::any_of(walk.begin(), walk.end(), [&](QWidget* w) {
                    return qobject_cast<QRadioButton*>(w) &&
                           w->parentWidget() == radio->parentWidget();
                });
            if ((widget->focusPolicy() & Qt::TabFocus) && !widget->focusProxy() && !groupReached)
                QVERIFY2(walk.contains(widget),
                         qPrintable(describe(widget) + QStringLiteral(" is out of Tab's reach")));
            QString text;
            if (auto* label = qobject_cast<QLabel*>(widget)) {
                // A caption for a control ends in a colon; names of pictures show their "&".
                if (!label->text().trimmed().endsWith(u':') ||
                    QKeySequence::mnemonic(label->text()).isEmpty())
                    continue;
                text = label->text();
                QVERIFY2(label->buddy(), qPrintable(text + QStringLiteral(" leads nowhere")));
            } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
                text = button->text();
            }
            const QKeySequence mnemonic = QKeySequence::mnemonic(text);
            if (!mnemonic.isEmpty()) {
                const QChar letter(mnemonic[0].key());
                QVERIFY2(!letters.contains(letter),
                         qPrintable(text + QStringLiteral(": a second ") + letter));
                letters << letter;
            }
        }

        if (auto* dialog = qobject_cast<QDialog*>(shown.data())) {
            const auto buttons = dialog->findChildren<QPushButton*>();
            QVERIFY(std::any_of(buttons.begin(), buttons.end(),
                                [](QPushButton* b) { return b->isDefault(); }));
        }
        // Esc puts a dialog away; a window of its own closes with the close keys.
        const QKeySequence close = qobject_cast<QDialog*>(shown.data())
                                       ? QKeySequence(Qt::Key_Escape)
                                       : QKeySequence(QKeySequence::Close);
        QTest::keyClick(QApplication::focusWidget(), close[0].key(), close[0].keyboardModifiers());
        QTRY_VERIFY(!shown || !shown->isVisible());
    }

    // Toolbar buttons never take the focus: each is reached by Tab, has a letter of its own
    // or a key that works wherever the focus is in its window, or does what a key of the main
    // window does. The main window's own toolbar repeats menu entries.
    void toolbarButtonsHaveKeys_data()
    {
        QTest::addColumn<QString>("place");
        QTest::addColumn<QAction*>("action");
        for (const char* place : {"gallery", "browser", "builder", "picture window", "workshop"}) {
            QWidget* window = qstrcmp(place, "workshop") == 0 ? m_workshop : childOf(place);
            for (QToolBar* bar : window->findChildren<QToolBar*>())
                for (QAction* action : bar->actions())
                    // The picture window's magnifications carry no action.
                    if (qobject_cast<QToolButton*>(bar->widgetForAction(action)) &&
                        action->isVisible() && action->objectName() != QLatin1String("tlbMain(3)"))
                        QTest::addRow("%s: %s", place, qPrintable(action->text()))
                            << QString::fromLatin1(place) << action;
        }
    }
    void toolbarButtonsHaveKeys()
    {
        QFETCH(QString, place);
        QFETCH(QAction*, action);
        QToolButton* button = nullptr;
        for (QObject* holder : action->associatedObjects())
            if (auto* bar = qobject_cast<QToolBar*>(holder))
                button = qobject_cast<QToolButton*>(bar->widgetForAction(action));
        if ((button->focusPolicy() & Qt::TabFocus) ||
            !QKeySequence::mnemonic(button->text()).isEmpty())
            return;
        if (action->shortcuts().isEmpty()) {
            // Refresh is F5, a picture window's Props is File > Properties on its picture.
            const QHash<QString, QKeySequence> mainWindowKeys = {
                {QStringLiteral("refresh"), QKeySequence(Qt::Key_F5)},
                {QStringLiteral("tlbMain(2)"), QKeySequence(Qt::ALT | Qt::Key_Return)}};
            const QKeySequence key = mainWindowKeys.value(action->objectName());
            const auto held = m_main->actions();
            QVERIFY2(!key.isEmpty() &&
                         std::any_of(held.begin(), held.end(),
                                     [&](QAction* a) { return a->shortcuts().contains(key); }),
                     "out of the keyboard's reach");
            return;
        }
        if (!action->isEnabled())
            return;
        focusOn(focusFor(place));
        // Dialogs and menus the buttons bring up go away again.
        QTimer closer;
        connect(&closer, &QTimer::timeout, [] {
            for (QWidget* up :
                 {QApplication::activeModalWidget(), QApplication::activePopupWidget()})
                if (up)
                    up->close();
        });
        closer.start(10);
        QSignalSpy triggered(action, &QAction::triggered);
        const QKeyCombination key = action->shortcut()[0];
        QTest::keyClick(QApplication::focusWidget(), key.key(), key.keyboardModifiers());
        QCOMPARE(triggered.size(), 1);
    }

    // Qt fires neither of two actions that hold one key where both can be pressed.
    void noKeyHasTwoOwners()
    {
        struct Owner
        {
            QObject* object;
            QWidget* widget;
            Qt::ShortcutContext context;
        };
        QMultiHash<QKeySequence, Owner> owners;
        for (QAction* action : m_main->findChildren<QAction*>())
            for (QWidget* holder : keyHolders(action))
                for (const QKeySequence& key : action->shortcuts())
                    owners.insert(key, {action, holder, action->shortcutContext()});
        for (QShortcut* shortcut : m_main->findChildren<QShortcut*>())
            for (const QKeySequence& key : shortcut->keys())
                owners.insert(key, {shortcut, qobject_cast<QWidget*>(shortcut->parent()),
                                    shortcut->context()});
        for (const QKeySequence& key : owners.uniqueKeys()) {
            const QList<Owner> all = owners.values(key);
            for (int i = 0; i < all.size(); ++i)
                for (int j = i + 1; j < all.size(); ++j)
                    if (all[i].object != all[j].object)
                        QVERIFY2(
                            !overlap(all[i].widget, all[i].context, all[j].widget, all[j].context),
                            qPrintable(key.toString() + QStringLiteral(": ") +
                                       describe(all[i].object) + QStringLiteral(" and ") +
                                       describe(all[j].object)));
        }
    }
};

Q_DECLARE_METATYPE(GalleryLayout::Move)

LUMBRA_TEST_MAIN(tst_Keyboard)
#include "tst_keyboard.moc"
