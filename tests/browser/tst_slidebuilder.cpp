#include "TestWorld.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "browser/frmSlideshow.h"
#include "browser/frmSlideshow_FS.h"
#include "browser/PictureListRules.h"
#include "browser/SlideshowSession.h"
#include "browser/ucPictureList.h"
#include "common/AppGlobals.h"
#include "common/Utilities.h"
#include "gallery/ucCoolProg.h"
#include "viewing/ucImgPreview.h"

#include <QAction>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QStandardItemModel>
#include <QTimer>
#include <QTreeView>

#include <memory>

using namespace PictureListRules;

namespace {

const QString Section = QStringLiteral("frmSlideshow");

SettingsStore& settings()
{
    return SettingsStore::global();
}

QStringList namesInOrder(const ucPictureList* list)
{
    QStringList names;
    for (int row = 0; row < list->count(); ++row)
        names.append(list->text(row));
    return names;
}

QList<int> checkedRows(const ucPictureList* list)
{
    QList<int> rows;
    for (int row = 0; row < list->count(); ++row)
        if (list->isChecked(row))
            rows.append(row);
    return rows;
}

} // namespace

class tst_SlideBuilder : public QObject
{
    Q_OBJECT

    std::unique_ptr<ucCoolProg> m_strip;
    int m_folders = 0;

    // A folder of small real pictures, so the preview has something to show.
    QString freshFolder(const QStringList& names)
    {
        const QString folder =
            property("worldPath").toString() + QStringLiteral("/slides%1/").arg(++m_folders);
        QDir().mkpath(folder);
        QImage picture(8, 8, QImage::Format_RGB32);
        picture.fill(Qt::darkGreen);
        for (const QString& name : names)
            picture.save(folder + name, "PNG");
        return folder;
    }

    static std::unique_ptr<frmSlideshow> builderOn(const QString& folder)
    {
        settings().write(Keys::BrowsePath.in(Section), folder);
        auto builder = std::make_unique<frmSlideshow>();
        builder->resize(800, 500);
        builder->show();
        if (!QTest::qWaitForWindowExposed(builder.get()))
            return {};
        return builder;
    }

    // The offscreen platform runs no drag and drop: the test starts where the list reports
    // rows dropped on target (-1: below the last row).
    static void dropOnto(frmSlideshow& builder, int target)
    {
        Q_EMIT builder.lvList()->RowsDropped(target);
    }

private slots:
    void initTestCase()
    {
        m_strip = std::make_unique<ucCoolProg>();
        Utilities::SetStatusStrip(m_strip.get());
        Globals().Options.fill(0);
    }

    void cleanupTestCase() { Utilities::SetStatusStrip(nullptr); }

    void init()
    {
        settings().write(Keys::Sortation.in(Section), 0);
        settings().write(Keys::View_Type.in(Section), 2);
    }

    void fillsDifferently_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("type");
        QTest::newRow("lower-case extension keeps its case") << "photo.jpg"
                                                             << "jpg File";
        QTest::newRow("upper-case extension keeps its case") << "photo.JPG"
                                                             << "JPG File";
    }

    void fillsDifferently()
    {
        QFETCH(QString, name);
        QFETCH(QString, type);
        const QString folder = freshFolder({name, "zebra.png"});
        // The builder starts at its first picture, whatever was selected last.
        settings().write(Keys::LastSelected.in(Section), folder + "zebra.png");

        auto builder = builderOn(folder);
        QVERIFY(builder);
        const ucPictureList* list = builder->lvList();
        QCOMPARE(namesInOrder(list), (QStringList{name, "zebra.png"}));
        QCOMPARE(list->text(0, TypeColumn), type);
        QCOMPARE(list->selectedRows(), QList<int>{0});
        QCOMPARE(builder->ucPreview()->FileName(), folder + name);
        QCOMPARE(checkedRows(list), QList<int>{});
        QVERIFY(list->model()->item(0)->isCheckable());
        QVERIFY(list->isMultiSelect());
        QVERIFY(!builder->PlayButton(2)->isEnabled());
        QVERIFY(builder->PlayButton(2)->isVisible());
        QVERIFY(!builder->PlayButton(1)->isVisible());
        QCOMPARE(m_strip->Panel(1)->text(),
                 QStringLiteral("Double click the list of photos to check or uncheck all."));
    }

    void checks_data()
    {
        QTest::addColumn<QList<int>>("checkedBefore");
        QTest::addColumn<QList<int>>("selected");
        QTest::addColumn<QString>("action");
        QTest::addColumn<QList<int>>("checkedAfter");
        QTest::addColumn<bool>("playEnabled");
        const QList<int> all{0, 1, 2};
        QTest::newRow("double click on an unchecked list checks all")
            << QList<int>{} << QList<int>{} << "double 1" << all << true;
        QTest::newRow("double click on an all-checked list unchecks all")
            << all << QList<int>{} << "double 1" << QList<int>{} << false;
        QTest::newRow("double click on the one checked unchecks all")
            << QList<int>{2} << QList<int>{} << "double 2" << QList<int>{} << false;
        QTest::newRow("Check selected inverts each selected box")
            << QList<int>{1} << QList<int>{1, 2} << "check" << QList<int>{2} << true;
        QTest::newRow("ticking one box enables Play")
            << QList<int>{} << QList<int>{} << "tick 2" << QList<int>{2} << true;
    }

    void checks()
    {
        QFETCH(QList<int>, checkedBefore);
        QFETCH(QList<int>, selected);
        QFETCH(QString, action);
        QFETCH(QList<int>, checkedAfter);
        QFETCH(bool, playEnabled);
        auto builder = builderOn(freshFolder({"a.png", "b.png", "c.png"}));
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
        } else if (action == QLatin1String("check")) {
            builder->CheckButton()->trigger();
        } else {
            list->setChecked(row, true);
        }
        QCOMPARE(checkedRows(list), checkedAfter);
        QCOMPARE(builder->PlayButton(2)->isEnabled(), playEnabled);
    }

    void playButtonsSurviveReopening_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("clicks");
        QTest::newRow("Repeat pressed") << 4 << 1;
        QTest::newRow("Full Screen pressed") << 7 << 1;
        QTest::newRow("Repeat pressed and released") << 4 << 2;
    }

    void playButtonsSurviveReopening()
    {
        QFETCH(int, button);
        QFETCH(int, clicks);
        for (int index : {4, 5, 7})
            settings().write(Keys::tlbPlay_(index), 0);
        const QString folder = freshFolder({"a.png"});
        {
            auto builder = builderOn(folder);
            QVERIFY(builder);
            for (int i = 0; i < clicks; ++i)
                builder->PlayButton(button)->trigger();
            builder->close();
        }
        const bool pressed = clicks % 2 == 1;
        QCOMPARE(settings().read(Keys::tlbPlay_(button)), pressed ? "1" : "0");
        settings().flush();
        SettingsStore::reopenGlobal();

        auto builder = builderOn(folder);
        QVERIFY(builder);
        for (int index : {4, 5, 7})
            QCOMPARE(builder->PlayButton(index)->isChecked(), index == button && pressed);
    }

    void plays_data()
    {
        QTest::addColumn<bool>("repeat");
        QTest::addColumn<bool>("fullScreen");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("checked pictures once each in list order, then stop")
            << false << false << QStringList{"a.png", "c.png", "d.png"};
        QTest::newRow("repeat shows an empty slide after the last, then starts over")
            << true << false << QStringList{"a.png", "c.png", "d.png", "", "a.png", "c.png"};
        QTest::newRow("full screen in the player, closed at the end")
            << false << true << QStringList{"a.png", "c.png", "d.png"};
    }

    void plays()
    {
        QFETCH(bool, repeat);
        QFETCH(bool, fullScreen);
        QFETCH(QStringList, shown);
        settings().write(Keys::Timer_DelayWrite, 5);
        settings().write(Keys::tlbPlay_(4), repeat ? 1 : 0);
        settings().write(Keys::tlbPlay_(5), 0);
        settings().write(Keys::tlbPlay_(7), fullScreen ? 1 : 0);
        const QString folder = freshFolder({"a.png", "b.png", "c.png", "d.png"});
        auto builder = builderOn(folder);
        QVERIFY(builder);
        ucPictureList* list = builder->lvList();
        for (int row : {0, 2, 3})
            list->setChecked(row, true);
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
        QVERIFY(timer.isActive());
        QCOMPARE(timer.interval(), 5000);
        QVERIFY(builder->PlayButton(1)->isVisible());
        QVERIFY(!builder->PlayButton(2)->isVisible());
        record();
        timer.setInterval(20);

        if (repeat) {
            QTRY_VERIFY(seen.size() >= shown.size());
            builder->PlayButton(1)->trigger();
            seen = seen.mid(0, shown.size());
        }
        QTRY_VERIFY(!timer.isActive());
        disconnect(&timer, nullptr, this, nullptr);
        QCOMPARE(seen, shown);
        QVERIFY(!builder->PlayButton(1)->isVisible());
        QVERIFY(builder->PlayButton(2)->isVisible());
        QTRY_VERIFY(!session.FullScreenPlayer() || !session.FullScreenPlayer()->isVisible());
    }

    void dragReorders_data()
    {
        QTest::addColumn<QList<int>>("dragged");
        QTest::addColumn<int>("target");
        QTest::addColumn<QStringList>("order");
        QTest::newRow("first onto last goes after it")
            << QList<int>{0} << 3 << QStringList{"b.png", "c.png", "d.png", "a.png"};
        QTest::newRow("last onto first goes before it")
            << QList<int>{3} << 0 << QStringList{"d.png", "a.png", "b.png", "c.png"};
        QTest::newRow("below the last row goes to the end")
            << QList<int>{0} << -1 << QStringList{"b.png", "c.png", "d.png", "a.png"};
        QTest::newRow("two apart onto a row between keep their order")
            << QList<int>{0, 3} << 2 << QStringList{"b.png", "c.png", "a.png", "d.png"};
    }

    void dragReorders()
    {
        QFETCH(QList<int>, dragged);
        QFETCH(int, target);
        QFETCH(QStringList, order);
        auto builder = builderOn(freshFolder({"a.png", "b.png", "c.png", "d.png"}));
        QVERIFY(builder);
        ucPictureList* list = builder->lvList();
        // The check boxes travel with their rows, and the show plays in the new order.
        list->setChecked(0, true);
        list->setChecked(2, true);
        for (int row : dragged)
            list->selectRow(row, row == dragged.first());

        dropOnto(*builder, target);
        QTRY_COMPARE(namesInOrder(list), order);
        builder->ToggleShow(2);
        QStringList playOrder = order;
        playOrder.removeIf([](const QString& name) { return name != "a.png" && name != "c.png"; });
        QCOMPARE(builder->Session().Player().PlayList(), playOrder);
        builder->ToggleShow(1);
        // A hand-made order is not sorted back.
        QVERIFY(!list->sortState().on);
        list->resort();
        QCOMPARE(namesInOrder(list), order);
    }
};

LUMBRA_TEST_MAIN(tst_SlideBuilder)
#include "tst_slidebuilder.moc"
