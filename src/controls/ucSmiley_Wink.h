#pragma once

#include <QTimer>
#include <QWidget>

// A small smiley that winks now and then: the right eye closes over a few frames, stays shut
// for a moment and opens again. Drawn with QPainter at any size; it runs while visible.
class ucSmiley_Wink : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int Frame READ Frame)
    Q_PROPERTY(int Interval READ Interval WRITE setInterval)

public:
    explicit ucSmiley_Wink(QWidget* parent = nullptr);

    // 0 eye open, Frames - 1 eye shut.
    static constexpr int Frames = 4;
    int Frame() const { return m_frame; }
    bool Winking() const { return m_step > 0; }

    // Milliseconds between the end of one wink and the start of the next.
    int Interval() const { return m_pause.interval(); }
    void setInterval(int milliseconds) { m_pause.setInterval(milliseconds); }
    void Wink();

    QSize sizeHint() const override { return {48, 48}; }

Q_SIGNALS:
    void WinkFinished();

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void advance();

    QTimer m_pause; // waits between winks
    QTimer m_tick;  // steps through the frames of one wink
    int m_frame = 0;
    int m_step = 0; // 0 when not winking; counts frames down, holds, and back up
};
