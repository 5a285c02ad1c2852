#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class SettingsStore;

// The play state of one show: which pictures, in which order, and which comes next. It holds no
// timer and no widget; whoever owns the show calls ShowSlide() for each slide and Tick() at each
// timer tick, and shows the name it is handed.
//
// The next index may run one past the end of the play list: that position is an empty slide,
// shown for one interval before a repeating show starts over.
class SlideshowPlayer
{
public:
    // A number in [0, 1); the show draws its random order from it.
    using RandomSource = std::function<double()>;

    // Seconds for each position of the interval slider.
    static constexpr int SliderPositions = 5;
    static int SecondsAt(int sliderPosition);
    // The interval between slides, from "Timer_Delay" where the slider stores it.
    static int IntervalMs(const SettingsStore& settings);

    // Starts a show of the checked pictures, given in list order. A random show draws its order
    // once, without replacement, so every picture comes once in each pass; without a source the
    // draw is seeded from the clock.
    void Start(const QStringList& checkedInListOrder, bool random, bool repeat,
               const RandomSource& source = {});

    // The name to show now (empty past either end of the list), and moves the next index on.
    // The next index wraps to 0 only when it has reached the slide count before this call.
    QString ShowSlide();
    // At a timer tick: true when the show goes on with ShowSlide(), false when it is over
    // (the last picture has had its full interval and the show does not repeat).
    bool Tick() const { return m_next != count() || m_repeat; }
    // Makes the next ShowSlide() show the picture before the one shown last.
    void Previous() { m_next = m_lastShown - 1; }
    // The next picture a tick will bring (skipping the empty slide past the end), or nothing when
    // the show ends at the next tick; for decoding ahead.
    QString Upcoming() const;

    int NextIndex() const { return m_next; }
    void setNextIndex(int index) { m_next = index; }
    int LastShownIndex() const { return m_lastShown; }
    int count() const { return int(m_playList.size()); }
    bool Random() const { return m_random; }
    bool Repeat() const { return m_repeat; }
    const QStringList& PlayList() const { return m_playList; }

private:
    QString entry(int index) const;

    QStringList m_playList;
    QStringList m_holding;
    int m_next = 0;
    int m_lastShown = -1;
    bool m_random = false;
    bool m_repeat = false;
};
