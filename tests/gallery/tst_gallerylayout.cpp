#include "TestWorld.h"

#include "gallery/GalleryLayout.h"
#include "gallery/ThumbGrid.h"

using namespace GalleryLayout;

class tst_GalleryLayout : public QObject
{
    Q_OBJECT

    // Box 100: margin 7, step 110, so cell (row r, column c) covers 7 + 110c .. + 100.
    static QPoint centreOf(int row, int column) { return {57 + 110 * column, 57 + 110 * row}; }

    static void showGrid(ThumbGrid& grid, int count)
    {
        grid.resize(400, 300);
        grid.setBox(100);
        grid.setColumns(3);
        grid.setCount(count);
        grid.show();
        QVERIFY(QTest::qWaitForWindowExposed(&grid));
    }

private Q_SLOTS:
    void columns_data()
    {
        QTest::addColumn<int>("box");
        QTest::addColumn<int>("innerWidth");
        QTest::addColumn<int>("sideBar");
        QTest::addColumn<int>("columns");
        QTest::newRow("pitch 45, 375 free") << 40 << 500 << 100 << 8;
        QTest::newRow("exactly two pitches") << 40 << 115 << 0 << 2;
        QTest::newRow("one pixel short of two") << 40 << 114 << 0 << 1;
        QTest::newRow("pitch 249 rounds up from 248.6") << 220 << 523 << 0 << 2;
        QTest::newRow("narrower than one pitch keeps one") << 220 << 200 << 0 << 1;
    }
    void columns()
    {
        QFETCH(int, box);
        QFETCH(int, innerWidth);
        QFETCH(int, sideBar);
        QFETCH(int, columns);
        QCOMPARE(Columns(box, innerWidth, sideBar), columns);
    }

    void cellPos_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("box");
        QTest::addColumn<QPointF>("pos");
        QTest::newRow("first cell sits at the margin") << 0 << 3 << 100 << QPointF(7, 7);
        QTest::newRow("wraps to the second row") << 3 << 3 << 100 << QPointF(7, 117);
        QTest::newRow("fractional margin of a 40 box") << 5 << 4 << 40 << QPointF(46.8, 46.8);
    }
    void cellPos()
    {
        QFETCH(int, index);
        QFETCH(int, columns);
        QFETCH(int, box);
        QFETCH(QPointF, pos);
        QCOMPARE(CellPos(index, columns, box), pos);
    }

    void canvas_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("rows");
        QTest::addColumn<double>("height"); // at box 80
        QTest::newRow("ten in three columns need four rows") << 10 << 3 << 4 << 355.2;
        QTest::newRow("full rows add none") << 9 << 3 << 3 << 266.4;
        QTest::newRow("empty folder") << 0 << 3 << 0 << 0.0;
    }
    void canvas()
    {
        QFETCH(int, count);
        QFETCH(int, columns);
        QTEST(Rows(count, columns), "rows");
        QTEST(CanvasHeight(count, columns, 80), "height");
    }

    void scroll_data()
    {
        QTest::addColumn<double>("canvas");
        QTest::addColumn<int>("viewport");
        QTest::addColumn<int>("thumb");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<int>("max");
        QTest::addColumn<int>("large");
        QTest::addColumn<int>("small");
        QTest::newRow("taller canvas") << 355.2 << 300 << 80 << true << 55 << 240 << 40;
        QTest::newRow("canvas as high as the viewport")
            << 300.0 << 300 << 80 << false << 0 << 240 << 40;
        QTest::newRow("halves round to even") << 1000.5 << 400 << 45 << true << 600 << 135 << 22;
        QTest::newRow("odd half rounds up") << 1001.5 << 400 << 47 << true << 602 << 141 << 24;
    }
    void scroll()
    {
        QFETCH(double, canvas);
        QFETCH(int, viewport);
        QFETCH(int, thumb);
        const ScrollSetup setup = ScrollFor(canvas, viewport, thumb);
        QTEST(setup.enabled, "enabled");
        QTEST(setup.max, "max");
        QTEST(setup.largeChange, "large");
        QTEST(setup.smallChange, "small");
    }

    void fitInCell_data()
    {
        QTest::addColumn<QSizeF>("picture");
        QTest::addColumn<QRectF>("placed");
        QTest::newRow("wide, fitted by width") << QSizeF(400, 200) << QRectF(0, 19.5, 78, 39);
        QTest::newRow("small, own size, centred") << QSizeF(30, 20) << QRectF(24, 29, 30, 20);
        QTest::newRow("tall, fitted by height") << QSizeF(100, 400) << QRectF(29.25, 0, 19.5, 78);
        QTest::newRow("no size, nothing to place") << QSizeF(0, 0) << QRectF();
    }
    void fitInCell()
    {
        QFETCH(QSizeF, picture);
        QFETCH(QRectF, placed);
        QCOMPARE(FitInCell(picture, 80), placed);
    }

    void indexAt_data()
    {
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<int>("index");
        QTest::newRow("centre of the last") << QPointF(centreOf(2, 0)) << 6;
        QTest::newRow("just inside a corner") << QPointF(7.5, 117.5) << 3;
        QTest::newRow("just past a bottom right corner") << QPointF(217.5, 217.5) << -1;
        QTest::newRow("outer margin") << QPointF(3, 3) << -1;
        QTest::newRow("gap between columns") << QPointF(112, 57) << -1;
        QTest::newRow("empty place after the last") << QPointF(centreOf(2, 1)) << -1;
    }
    void indexAt()
    {
        QFETCH(QPointF, point);
        QFETCH(int, index);
        QCOMPARE(IndexAt(point, 3, 100, 7), index);
    }

    void visibleRange_data()
    {
        QTest::addColumn<double>("top");
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::newRow("first row only") << 0.0 << 117 << 30 << 0 << 2;
        QTest::newRow("one pixel of the second row") << 0.0 << 118 << 30 << 0 << 5;
        QTest::newRow("only the gap between rows") << 107.0 << 10 << 30 << -1 << -1;
        QTest::newRow("partly filled last row") << 900.0 << 300 << 28 << 24 << 27;
        QTest::newRow("past the canvas") << 5000.0 << 300 << 30 << -1 << -1;
    }
    void visibleRange()
    {
        QFETCH(double, top);
        QFETCH(int, height);
        QFETCH(int, count);
        QFETCH(int, first);
        QFETCH(int, last);
        QCOMPARE(VisibleRange(top, height, 3, 100, count), std::make_pair(first, last));
    }

    void click_data()
    {
        QTest::addColumn<int>("scrollTop");
        QTest::addColumn<int>("hidden");
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<int>("index");
        QTest::newRow("on a cell") << 0 << -1 << centreOf(0, 1) << 1;
        QTest::newRow("on a removed cell") << 0 << 1 << centreOf(0, 1) << -1;
        QTest::newRow("scrolled by a row") << 110 << -1 << centreOf(0, 0) << 3;
    }
    void click()
    {
        QFETCH(int, scrollTop);
        QFETCH(int, hidden);
        QFETCH(QPoint, point);
        QFETCH(int, index);
        ThumbGrid grid;
        showGrid(grid, 7);
        grid.setScrollTop(scrollTop);
        grid.setCellHidden(hidden, true);
        QSignalSpy clicked(&grid, &ThumbGrid::CellClicked);
        // The host reads the new check state in its click handler.
        bool checkedWhenClicked = false;
        connect(&grid, &ThumbGrid::CellClicked, this,
                [&](int i) { checkedWhenClicked = grid.isChecked(i); });

        QTest::mouseClick(&grid, Qt::LeftButton, {}, point);
        QCOMPARE(grid.checkedCount(), index >= 0 ? 1 : 0);
        if (index < 0) {
            QCOMPARE(clicked.count(), 0);
            return;
        }
        QCOMPARE(clicked.count(), 1);
        QCOMPARE(clicked.at(0).at(0).toInt(), index);
        QVERIFY(checkedWhenClicked);
        QTest::mouseClick(&grid, Qt::LeftButton, {}, point);
        QVERIFY(!grid.isChecked(index));
        QCOMPARE(grid.checkedCount(), 0);
    }

    // A huge folder paints one screenful: the provider is asked only for the cells in view.
    void paintsOnlyVisibleCells()
    {
        ThumbGrid grid;
        grid.resize(400, 300);
        grid.setBox(40);
        grid.setColumns(8);
        grid.setCount(100000);
        QSignalSpy rangeChanged(&grid, &ThumbGrid::VisibleRangeChanged);
        grid.setScrollTop(300000);
        QCOMPARE(rangeChanged.count(), 1);
        const auto [first, last] = grid.visibleRange();
        QCOMPARE(rangeChanged.at(0).at(0).toInt(), first);

        int calls = 0;
        grid.setPictureSource([&](int) {
            ++calls;
            return QImage(20, 10, QImage::Format_RGB32);
        });
        grid.grab();
        QCOMPARE(calls, last - first + 1);
        QVERIFY(calls < 100);
    }
};

LUMBRA_TEST_MAIN(tst_GalleryLayout)
#include "tst_gallerylayout.moc"
