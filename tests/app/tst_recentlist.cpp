#include "AppFixtures.h"
#include "TestWorld.h"

#include "app/RecentList.h"

class tst_RecentList : public QObject
{
    Q_OBJECT

    static QStringList items(const RecentList& list)
    {
        QStringList result;
        for (int i = 0; i < RecentList::Capacity; ++i)
            result.append(list.Item(i));
        return result;
    }

private Q_SLOTS:
    void propose_data()
    {
        QTest::addColumn<QStringList>("proposed");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("sixth pushes the first out")
            << QStringList{"A", "B", "C", "D", "E", "F"} << QStringList{"F", "E", "D", "C", "B"};
        QTest::newRow("current first changes nothing") << QStringList{"A", "B", "B"} << QStringList{"B", "A", "", "", ""};
        QTest::newRow("last item moves to the front")
            << QStringList{"A", "B", "C", "D", "E", "A"} << QStringList{"A", "E", "D", "C", "B"};
        QTest::newRow("case matters") << QStringList{"a.jpg", "A.JPG"} << QStringList{"A.JPG", "a.jpg", "", "", ""};
    }
    void propose()
    {
        QFETCH(QStringList, proposed);
        RecentList list;
        for (const QString& text : proposed)
            list.Propose(text);
        QTEST(items(list), "expected");
        QCOMPARE(list.Item(-1), QString());
        QCOMPARE(list.Item(RecentList::Capacity), QString());
    }

    void saveAndLoad()
    {
        SettingsStore& store = SettingsStore::global();
        RecentList empty;
        empty.Load(store, "mdiMain");
        QCOMPARE(items(empty), QStringList(5));
        RecentList list;
        list.Propose("/pics/one.jpg");
        list.Propose("/pics/two.png");
        list.Save(store, "mdiMain");
        QCOMPARE(store.read("mdiMain", "File_Recent_0"), QStringLiteral("/pics/two.png"));
        QVERIFY(store.contains("mdiMain", "File_Recent_4"));
        // Back from the file, under another spelling of the section.
        store.flush();
        RecentList loaded;
        loaded.Load(SettingsStore(SettingsStore::defaultPath()), "MDIMAIN");
        QCOMPARE(items(loaded), items(list));
    }
};

LUMBRA_TEST_MAIN(tst_RecentList)
#include "tst_recentlist.moc"
