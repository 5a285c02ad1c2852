#pragma once

class QTimer;
class SlideshowPlayer;

// What the full-screen player needs from the window that owns a show: the show's play state,
// its timer, and the two operations the player's keys and buttons turn into.
class SlideshowHost
{
public:
    virtual ~SlideshowHost() = default;

    // 2 starts the show, 1 stops it (the indices of the Play and Stop buttons).
    virtual void ToggleShow(int n) = 0;
    // Shows the play list's entry at the next index on the slide target and moves the index on.
    virtual void ShowSlide() = 0;
    // The play state; the player reads and moves its indices.
    virtual SlideshowPlayer& Player() = 0;
    // The timer that advances the show; the player changes its pace and pauses it.
    virtual QTimer& SlideTimer() = 0;
};
