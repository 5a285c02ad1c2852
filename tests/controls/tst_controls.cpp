#include "TestWorld.h"

#include "controls/ucCoolButton.h"
#include "controls/ucToggleButton.h"

#include <QFile>
#include <QPixmap>

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

    // On a dark accent colour the caption must still be readable.
    void coolButtonTextContrast_data()
    {
        QTest::addColumn<QColor>("face");
        QTest::newRow("pale green") << QColor(192, 255, 192);
        QTest::newRow("navy") << QColor(0, 0, 128);
    }
    void coolButtonTextContrast()
    {
        QFETCH(QColor, face);
        ucCoolButton button(QStringLiteral("MMMMMMMM"));
        button.setFaceColor(face);
        button.resize(button.sizeHint());
        const QImage shot = button.grab().toImage();
        const QRect textArea = button.rect().adjusted(14, 6, -14, -6);
        int lightest = 0;
        int darkest = 255;
        for (int y = textArea.top(); y <= textArea.bottom(); ++y)
            for (int x = textArea.left(); x <= textArea.right(); ++x) {
                const int l = QColor(shot.pixel(x * shot.width() / button.width(),
                                                y * shot.height() / button.height()))
                                  .lightness();
                lightest = qMax(lightest, l);
                darkest = qMin(darkest, l);
            }
        QVERIFY2(lightest - darkest > 120,
                 qPrintable(QStringLiteral("contrast %1").arg(lightest - darkest)));
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
