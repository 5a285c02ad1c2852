#include "TestWorld.h"

#include "app/SettingsStore.h"
#include "controls/ucSideBar.h"

#include <QAction>
#include <QLabel>
#include <QMainWindow>
#include <QSignalSpy>
#include <QToolButton>

namespace {

const QString Form = QStringLiteral("frmTest");

// A main window with a central widget and one bar holding a label.
struct Window
{
    explicit Window(int index = 0)
    {
        main.setCentralWidget(central);
        main.setAnimated(false);
        main.setGeometry(40, 40, 640, 480);
        bar = new ucSideBar(index, Form, &main);
        content->setMinimumSize(150, 90);
        bar->setContentWidget(content);
    }
    bool show()
    {
        main.show();
        return QTest::qWaitForWindowExposed(&main);
    }
    int extent() const { return bar->Orientation() == Qt::Vertical ? bar->width() : bar->height(); }

    QMainWindow main;
    QWidget* central = new QWidget;
    ucSideBar* bar = nullptr;
    QLabel* content = new QLabel(QStringLiteral("contents"));
};

// Read through a store of its own, so the value must have reached the file.
QString storedOnDisk(const QString& key)
{
    SettingsStore::global().flush();
    return SettingsStore(SettingsStore::defaultPath()).read(Form, key);
}

void sendMouse(QWidget* target, QEvent::Type type, QPoint global, Qt::MouseButton button,
               Qt::MouseButtons buttons)
{
    QMouseEvent event(type, target->mapFromGlobal(global), global, button, buttons, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

} // namespace

class tst_ucSideBar : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QFile::remove(SettingsStore::defaultPath());
        SettingsStore::reopenGlobal();
    }

    void docking_data()
    {
        QTest::addColumn<int>("side");
        QTest::addColumn<int>("expected");
        QTest::addColumn<Qt::Orientation>("orientation");

        QTest::newRow("top") << 1 << 1 << Qt::Horizontal;
        QTest::newRow("bottom") << 2 << 2 << Qt::Horizontal;
        QTest::newRow("left") << 3 << 3 << Qt::Vertical;
        QTest::newRow("right") << 4 << 4 << Qt::Vertical;
        QTest::newRow("0 ignored") << 0 << 4 << Qt::Vertical;
    }

    void docking()
    {
        QFETCH(int, side);
        QFETCH(int, expected);
        QFETCH(Qt::Orientation, orientation);

        Window w;
        QVERIFY(w.show());
        if (side != expected)
            w.bar->Dock(expected);
        QSignalSpy docked(w.bar, &ucSideBar::Docked);
        w.bar->Dock(side);

        QCOMPARE(w.bar->Align(), expected);
        QCOMPARE(w.bar->Orientation(), orientation);
        QCOMPARE(docked.size(), side == expected ? 1 : 0);
        const auto onItsSide = [&] {
            const QRect b = w.bar->geometry();
            const QRect c = w.central->geometry();
            return expected == 1   ? b.bottom() < c.top()
                   : expected == 2 ? b.top() > c.bottom()
                   : expected == 3 ? b.right() < c.left()
                                   : b.left() > c.right();
        };
        QTRY_VERIFY(onItsSide());
        // Only a drag by the user records the side.
        QVERIFY(!SettingsStore::global().contains(Form, QStringLiteral("SideBar_Align_0")));
    }

    void rolling_data()
    {
        QTest::addColumn<int>("side");
        QTest::addColumn<int>("small");

        QTest::newRow("left, default strip") << 3 << 10;
        QTest::newRow("bottom, wider strip") << 2 << 16;
    }

    void rolling()
    {
        QFETCH(int, side);
        QFETCH(int, small);

        Window w;
        w.bar->Dock(side);
        w.bar->setRoll_SmallWidth(small);
        QVERIFY(w.show());
        QTRY_VERIFY(w.extent() > 3 * small);
        const int full = w.extent();

        // Whoever lays out around the bar hears the final size last.
        QSignalSpy rolled(w.bar, &ucSideBar::Rolling);
        QSignalSpy ended(w.bar, &ucSideBar::EndRolling);
        for (const bool up : {true, false}) {
            up ? w.bar->RollUp() : w.bar->RollOut();
            QCOMPARE(w.bar->isRolledUp(), up);
            QVERIFY(ended.wait());
            const int size = up ? small : full;
            QCOMPARE(rolled.last().at(0).toInt(), size);
            QTRY_COMPARE(w.extent(), size);
            QCOMPARE(w.content->isVisible(), !up);
            QVERIFY(w.bar->findChild<QToolButton*>()->isVisible());
        }
        // Rolled up, the bar takes its strip along to the top, where it runs the whole width.
        w.bar->RollUp();
        QVERIFY(ended.wait());
        w.bar->Dock(1);
        QTRY_COMPARE(w.bar->width(), w.main.width());
        QCOMPARE(w.bar->height(), small);
    }

    // The state is read at creation and written only when the user rolls the bar; one the
    // user rolled up stays up when code asks for it.
    void storedState_data()
    {
        QTest::addColumn<QString>("stored"); // null: nothing stored
        QTest::addColumn<QString>("how");
        QTest::addColumn<bool>("upAtStart");
        QTest::addColumn<bool>("upAfter");
        QTest::addColumn<QString>("written");
        QTest::newRow("nothing stored, code rolls up without writing")
            << QString() << "code" << false << true << QString();
        QTest::newRow("False, code cannot roll it out") << "False"
                                                        << "code" << true << true << "False";
        QTest::newRow("not a boolean") << "maybe" << "code" << false << true << "maybe";
        QTest::newRow("button rolls up") << "True" << "button" << false << true << "False";
        QTest::newRow("button rolls out") << "False" << "button" << true << false << "True";
        QTest::newRow("menu") << "False" << "menu" << true << false << "True";
        QTest::newRow("strip") << "False" << "strip" << true << false << "True";
        QTest::newRow("disabled") << "True" << "disabled" << false << false << "True";
    }

    void storedState()
    {
        QFETCH(QString, stored);
        QFETCH(QString, how);
        QFETCH(bool, upAtStart);
        QFETCH(bool, upAfter);

        const QString key = QStringLiteral("ucSidebar|ucSideBar(2)");
        if (!stored.isNull())
            SettingsStore::global().write(Form, key, stored);
        Window w(2);
        QVERIFY(w.show());
        QCOMPARE(w.bar->isRolledUp(), upAtStart);
        QTRY_COMPARE(w.extent() == w.bar->Roll_SmallWidth(), upAtStart);
        auto* button = w.bar->findChild<QToolButton*>();

        if (how == u"button") {
            QTest::mouseClick(button, Qt::LeftButton);
        } else if (how == u"menu") {
            w.bar->findChild<QAction*>(QStringLiteral("mnuShow"))->trigger();
        } else if (how == u"strip") {
            QWidget* strip = w.bar->titleBarWidget();
            const QPoint at = strip->mapToGlobal(QPoint(strip->width() / 2, strip->height() - 5));
            QVERIFY(!button->rect().contains(button->mapFromGlobal(at)));
            sendMouse(strip, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
            sendMouse(strip, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
        } else if (how == u"code") {
            w.bar->ToggleRoll();
        } else {
            w.bar->setEnabledState(false);
            QVERIFY(!w.content->isEnabled());
            QTest::mouseClick(button, Qt::LeftButton);
            w.bar->UserToggle();
        }

        QCOMPARE(w.bar->isRolledUp(), upAfter);
        QTEST(storedOnDisk(key), "written");
        if (how != u"code")
            QCOMPARE(w.bar->ManualHide(), upAfter);
    }

    void userDragWritesSide()
    {
        Window w(2);
        QVERIFY(w.show());
        QSignalSpy dragMode(w.bar, &ucSideBar::DragModeChanged);

        // Press on the title, move past the drag distance, then let go at the right edge.
        QWidget* title = w.bar->titleBarWidget();
        const QPoint start = title->mapToGlobal(title->rect().center());
        const QPoint target = w.main.mapToGlobal(QPoint(w.main.width() - 10, w.main.height() / 2));
        sendMouse(w.bar, QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
        sendMouse(w.bar, QEvent::MouseMove, start + QPoint(30, 0), Qt::NoButton, Qt::LeftButton);
        QCOMPARE(dragMode.size(), 1);
        QCOMPARE(dragMode.at(0).at(0).toBool(), true);
        sendMouse(w.bar, QEvent::MouseMove, target, Qt::NoButton, Qt::LeftButton);
        sendMouse(w.bar, QEvent::MouseButtonRelease, target, Qt::LeftButton, Qt::NoButton);

        QTRY_COMPARE(dragMode.size(), 2);
        QCOMPARE(dragMode.at(1).at(0).toBool(), false);
        QCOMPARE(w.bar->Align(), 4);
        QCOMPARE(storedOnDisk(QStringLiteral("SideBar_Align_2")), QStringLiteral("4"));
        // The key read at start is another one and stays untouched.
        QVERIFY(!SettingsStore::global().contains(Form, QStringLiteral("SideBar_Align")));
    }
};

LUMBRA_TEST_MAIN(tst_ucSideBar)
#include "tst_ucsidebar.moc"
