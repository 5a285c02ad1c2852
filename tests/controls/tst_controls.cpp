#include "TestWorld.h"

#include "controls/ucCoolButton.h"
#include "controls/ucToggleButton.h"

#include <QFile>

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

    // The click sound is built in and plays or stays silent without holding up the click,
    // with or without an audio output.
    void coolButtonClicks()
    {
        QFile sound(QStringLiteral(":/sounds/click.wav"));
        QVERIFY(sound.open(QIODevice::ReadOnly));
        const QByteArray head = sound.read(12);
        QVERIFY(head.startsWith("RIFF") && head.endsWith("WAVE"));
        ucCoolButton button(QStringLiteral("OK"));
        QSignalSpy clicked(&button, &QAbstractButton::clicked);
        for (int i = 0; i < 5; ++i)
            QTest::mouseClick(&button, Qt::LeftButton);
        QCOMPARE(clicked.count(), 5);
    }
};

LUMBRA_TEST_MAIN(tst_Controls)
#include "tst_controls.moc"
