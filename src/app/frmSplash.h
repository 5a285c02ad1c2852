#pragma once

#include <QWidget>

class QTimer;

// The window that greets the user while the program starts, and again from the Help menu:
// the program's icon, name and version on the accent colour.
class frmSplash : public QWidget
{
    Q_OBJECT

public:
    // At start-up the window fades in and out; shown again later it simply appears and goes.
    explicit frmSplash(bool atStartUp, QWidget* parent = nullptr);

    // Shows the window and holds it for a moment (a click ends the hold early), then closes
    // it. Finished comes once, as the window closes, however it closes.
    void Start();

    static constexpr int HoldMilliseconds = 1200;

signals:
    void Finished();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void EndHold();

    enum class Stage
    {
        Waiting,
        FadingIn,
        Holding,
        FadingOut,
        Done
    };

    bool m_atStartUp;
    Stage m_stage = Stage::Waiting;
    // A click while the window was still fading in: the hold ends as soon as it begins.
    bool m_endEarly = false;
    QTimer* tmrHold;
};
