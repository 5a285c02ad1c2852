#include "BrowserBench.h"

#include "browser/frmSlideshow.h"
#include "browser/frmSlideshow_FS.h"
#include "browser/SlideshowSession.h"
#include "viewing/ucImgPreview.h"

#include <QAction>
#include <QStandardItemModel>
#include <QTreeView>

using namespace PictureListRules;

namespace {

QList<int> checkedRows(const ucPictureList* list)
{
    QList<int> rows;
    for (int row = 0; row < list->count(); ++row)
        if (list->isChecked(row))
            rows.append(row);
    return rows;
}

} // namespace

class tst_SlideBuilder : public BrowserBench
{
    Q_OBJECT

    static inline const QString Section = QStringLiteral("frmSlideshow");

private slots:
    void init()
    {
        settings().write(Keys::Sortation.in(Section), 0);
        settings().write(Keys::View_Type.in(Section), 2);
    }

    void fillsDifferentlyFromTheBrowser()
    {
        // The folder lists its files in an order of its own; the builder starts at the top
        // row of the sorted list, whatever was listed first or selected last.
        const QStringList names{"photo.png", "quay.png", "rose.png", "sky.png", "tree.png", "zebra.png"};
        const QString folder = freshFolder(names);
        settings().write(Keys::LastSelected.in(Section), folder + "zebra.png");

        auto builder = openOn<frmSlideshow>(folder);
        QVERIFY(builder);
        const ucPictureList* list = builder->lvList();
        QCOMPARE(namesInOrder(list), names);
        // The type keeps the extension's case.
        QCOMPARE(list->text(0, TypeColumn), QStringLiteral("png File"));
        QCOMPARE(list->selectedRows(), QList<int>{0});
        QCOMPARE(builder->ucPreview()->FileName(), folder + "photo.png");
        QCOMPARE(checkedRows(list), QList<int>{});
        QVERIFY(!builder->PlayButton(2)->isEnabled());
    }

    void checks_data()
    {
        QTest::addColumn<QList<int>>("checkedBefore");
        QTest::addColumn<QList<int>>("selected");
        QTest::addColumn<QString>("action");
        QTest::addColumn<QList<int>>("checkedAfter");
        const QList<int> none, all{0, 1, 2};
        row("double click on an unchecked list checks all", none, none, "double 1", all);
        row("double click on an all-checked list unchecks all", all, none, "double 1", none);
        row("double click on the one checked unchecks all", QList<int>{2}, none, "double 2", none);
        row("Check selected inverts each selected box", QList<int>{1}, QList<int>{1, 2}, "check",
            QList<int>{2});
    }

    void checks()
    {
        QFETCH(QList<int>, checkedBefore);
        QFETCH(QList<int>, selected);
        QFETCH(QString, action);
        QFETCH(QList<int>, checkedAfter);
        auto builder = openOn<frmSlideshow>(freshFolder({"a.png", "b.png", "c.png"}));
        QVERIFY(builder);
        ucPictureList* list = builder->lvList();
        for (int row : checkedBefore)
            list->setChecked(row, true);
        for (int row : selected)
            list->selectRow(row, row == selected.first());

        const int row = action.section(u' ', 1).toInt();
        if (action.startsWith(QLatin1String("double"))) {
            QTreeView* tree = list->treeView();
            const QRect rect = tree->visualRect(list->model()->index(row, SizeColumn));
            QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, rect.center());
        } else {
            builder->CheckButton()->trigger();
        }
        QCOMPARE(checkedRows(list), checkedAfter);
        QCOMPARE(builder->PlayButton(2)->isEnabled(), !checkedAfter.isEmpty());
    }

    void plays_data()
    {
        // The order itself, repeats included, is the player's: see tst_slideshow.
        QTest::addColumn<bool>("fullScreen");
        row("checked pictures once each in list order, then stop", false);
        row("full screen in the player, closed at the end", true);
    }

    void plays()
    {
        QFETCH(bool, fullScreen);
        const QStringList shown{"a.png", "c.png", "d.png"};
        settings().write(Keys::Timer_DelayWrite, 5);
        settings().write(Keys::tlbPlay_(4), 0);
        settings().write(Keys::tlbPlay_(5), 0);
        settings().write(Keys::tlbPlay_(7), fullScreen ? 1 : 0);
        const QString folder = freshFolder({"a.png", "b.png", "c.png", "d.png"});
        auto builder = openOn<frmSlideshow>(folder);
        QVERIFY(builder);
        for (int row : {0, 2, 3})
            builder->lvList()->setChecked(row, true);
        SlideshowSession& session = builder->Session();
        QTimer& timer = session.SlideTimer();

        // What is on show: the pane's picture, or the full-screen player's.
        QStringList seen;
        const auto record = [&] {
            const frmSlideshow_FS* player = session.FullScreenPlayer();
            QCOMPARE(player != nullptr, fullScreen);
            const ucImgPreview* target = player ? player->Slide() : builder->ucPreview();
            seen.append(target->FileName().mid(folder.size()));
        };
        // Connected after the show's own tick, so it sees what that tick showed; the tick that
        // ends the show shows nothing.
        connect(&timer, &QTimer::timeout, this, [&] {
            if (timer.isActive())
                record();
        });

        builder->PlayButton(2)->trigger();
        QCOMPARE(timer.interval(), 5000);
        QVERIFY(builder->PlayButton(1)->isVisible());
        record();
        timer.setInterval(20);
        QTRY_VERIFY(!timer.isActive());
        disconnect(&timer, nullptr, this, nullptr);
        QCOMPARE(seen, shown);
        QVERIFY(builder->PlayButton(2)->isVisible());
        QTRY_VERIFY(!session.FullScreenPlayer() || !session.FullScreenPlayer()->isVisible());
    }

    void dragReorders_data()
    {
        QTest::addColumn<QList<int>>("dragged");
        QTest::addColumn<int>("target"); // -1: below the last row
        QTest::addColumn<QStringList>("order");
        row("first onto last goes after it", QList<int>{0}, 3,
            QStringList{"b.png", "c.png", "d.png", "a.png"});
        row("last onto first goes before it", QList<int>{3}, 0,
            QStringList{"d.png", "a.png", "b.png", "c.png"});
        row("below the last row goes to the end", QList<int>{0}, -1,
            QStringList{"b.png", "c.png", "d.png", "a.png"});
        row("two apart onto a row between keep their order", QList<int>{0, 3}, 2,
            QStringList{"b.png", "c.png", "a.png", "d.png"});
    }

    void dragReorders()
    {
        QFETCH(QList<int>, dragged);
        QFETCH(int, target);
        QFETCH(QStringList, order);
        auto builder = openOn<frmSlideshow>(freshFolder({"a.png", "b.png", "c.png", "d.png"}));
        QVERIFY(builder);
        ucPictureList* list = builder->lvList();
        // The check boxes travel with their rows, and the show plays in the new order.
        list->setChecked(0, true);
        list->setChecked(2, true);
        for (int row : dragged)
            list->selectRow(row, row == dragged.first());

        // The offscreen platform runs no drag and drop: start where the list reports the drop.
        Q_EMIT list->RowsDropped(target);
        QTRY_COMPARE(namesInOrder(list), order);
        builder->ToggleShow(2);
        QStringList playOrder = order;
        playOrder.removeIf([](const QString& name) { return name != "a.png" && name != "c.png"; });
        QCOMPARE(builder->Session().Player().PlayList(), playOrder);
        builder->ToggleShow(1);
        // A hand-made order is not sorted back.
        list->resort();
        QCOMPARE(namesInOrder(list), order);
    }
};

LUMBRA_TEST_MAIN(tst_SlideBuilder)
#include "tst_slidebuilder.moc"
