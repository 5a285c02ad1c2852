#pragma once

#include <QFrame>
#include <QTimer>

class QLabel;

// A balloon shown inside a window, for desktops without a tray to carry it: a title and a
// text in the window's lower right corner, gone after a while or on a click.
class WindowBalloon : public QFrame
{
    Q_OBJECT
public:
    explicit WindowBalloon(QWidget* window);

    // "\r" in text breaks the line.
    void ShowMessage(const QString& title, const QString& text, int milliseconds = 10000);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void place();

    QLabel* m_title;
    QLabel* m_text;
    QTimer m_timer;
};
