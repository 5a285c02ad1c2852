#include "TestWorld.h"

#include "browser/DesktopClipboard.h"
#include "gallery/ThumbGrid.h"

#include <QDrag>
#include <QMimeData>
#include <QTimer>

// What a drag out of the gallery hands a file manager.
class tst_ThumbDrag : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dragData_data()
    {
        QTest::addColumn<QList<int>>("checked");
        QTest::addColumn<QList<int>>("hidden");
        QTest::addColumn<int>("pressed");
        QTest::addColumn<QStringList>("files");
        QTest::newRow("checked cell takes every checked cell, in gallery order")
            << QList<int>{3, 1} << QList<int>{} << 3 << QStringList{"/p/1 one.jpg", "/p/3.png"};
        QTest::newRow("unchecked cell goes alone")
            << QList<int>{1, 3} << QList<int>{} << 2 << QStringList{"/p/2.gif"};
        QTest::newRow("removed cells are not dragged")
            << QList<int>{0, 2} << QList<int>{2} << 0 << QStringList{"/p/0.bmp"};
        QTest::newRow("nothing under the press")
            << QList<int>{} << QList<int>{} << -1 << QStringList{};
    }
    void dragData()
    {
        QFETCH(QList<int>, checked);
        QFETCH(QList<int>, hidden);
        QFETCH(int, pressed);
        QFETCH(QStringList, files);
        const QStringList paths{"/p/0.bmp", "/p/1 one.jpg", "/p/2.gif", "/p/3.png"};
        ThumbGrid grid;
        grid.setCount(int(paths.size()));
        grid.setFileSource([&](int index) { return paths.value(index); });
        for (int index : checked)
            grid.setChecked(index, true);
        for (int index : hidden)
            grid.setCellHidden(index, true);

        const std::unique_ptr<QMimeData> data = grid.MakeDragData(pressed);
        if (files.isEmpty()) {
            QVERIFY(!data);
            return;
        }
        QVERIFY(data);
        // What a file manager does with the drop: the same files, offered as a copy.
        const std::optional<DesktopClipboard::Contents> read = DesktopClipboard::Read(data.get());
        QVERIFY(read);
        QCOMPARE(read->paths, files);
        QVERIFY(!read->cut);
    }

    // A press that moves past the drag distance starts a drag, and the button coming up
    // afterwards must not toggle the cell; a smaller wobble is still a click.
    void dragIsNotAClick_data()
    {
        QTest::addColumn<int>("distance");
        QTest::addColumn<bool>("dragged");
        QTest::newRow("wobble within the drag distance")
            << QApplication::startDragDistance() / 2 << false;
        QTest::newRow("past the drag distance") << QApplication::startDragDistance() + 5 << true;
    }
    void dragIsNotAClick()
    {
        QFETCH(int, distance);
        QFETCH(bool, dragged);
        ThumbGrid grid;
        grid.resize(300, 300);
        grid.setBox(60);
        grid.setColumns(3);
        grid.setCount(3);
        grid.setFileSource([](int index) { return QStringLiteral("/p/%1.jpg").arg(index); });
        grid.show();
        QVERIFY(QTest::qWaitForWindowExposed(&grid));
        const QPoint from = grid.cellRect(0).center().toPoint();
        const QPoint to = from + QPoint(distance, 0);

        // Where the platform runs the drag in a loop of its own, Escape ends it as it would
        // for the user.
        QTimer::singleShot(100, &grid, [&] { QTest::keyClick(&grid, Qt::Key_Escape); });
        QTest::mousePress(&grid, Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, QPointF(to), grid.mapToGlobal(QPointF(to)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&grid, &move);
        // The finished drag is left to deferred deletion, so it is still there to be seen.
        QCOMPARE(grid.findChild<QDrag*>() != nullptr, dragged);
        QTest::mouseRelease(&grid, Qt::LeftButton, {}, to);
        QCOMPARE(grid.isChecked(0), !dragged);
    }
};

LUMBRA_TEST_MAIN(tst_ThumbDrag)
#include "tst_thumbdrag.moc"
