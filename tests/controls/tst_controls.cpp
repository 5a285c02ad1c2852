#include "TestWorld.h"

#include "controls/ucToggleButton.h"

class tst_Controls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A user's click flips the state and reports both a click and the change; setting the
    // state from code reports only the change, so a handler of clicks is not run twice.
    void toggleButtonStates_data()
    {
        QTest::addColumn<bool>("byClick");
        QTest::addColumn<bool>("start");
        QTest::addColumn<int>("clicks");
        QTest::newRow("one click presses") << true << false << 1;
        QTest::newRow("a second click releases") << true << true << 1;
        QTest::newRow("set from code, no click") << false << false << 0;
    }
    void toggleButtonStates()
    {
        QFETCH(bool, byClick);
        QFETCH(bool, start);
        QFETCH(int, clicks);
        ucToggleButton button;
        button.setStateToolTips(QStringLiteral("Show"), QStringLiteral("Hide"));
        button.setValue(start);
        button.show();
        QSignalSpy clicked(&button, &QAbstractButton::clicked);
        QSignalSpy changed(&button, &ucToggleButton::ValueChanged);
        if (byClick)
            QTest::mouseClick(&button, Qt::LeftButton);
        else
            button.setValue(!start);
        QCOMPARE(button.Value(), !start);
        QCOMPARE(clicked.count(), clicks);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toBool(), !start);
        QCOMPARE(button.toolTip(), !start ? QStringLiteral("Hide") : QStringLiteral("Show"));
    }
};

LUMBRA_TEST_MAIN(tst_Controls)
#include "tst_controls.moc"
