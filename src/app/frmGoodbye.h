#pragma once

#include <QWidget>

// The short farewell shown as the program closes.
class frmGoodbye : public QWidget
{
    Q_OBJECT

public:
    // Shows the farewell centred on the screen for about the given time, fading it in and out,
    // and returns once it is gone. It needs no other window: the main window may already be
    // hidden.
    static void ShowBriefly(int milliseconds = 700);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    frmGoodbye();
};
