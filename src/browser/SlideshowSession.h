#pragma once

#include "browser/SlideshowHost.h"
#include "browser/SlideshowPlayer.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

class SlideDecoder;
class frmSlideshow_FS;
class ucImgPreview;

// The running side of a show for the window that builds it: the play state, the timer
// `tmrSlideshow` that advances it, and the slide target (the window's own preview, or the
// full-screen player, which it opens and closes). The window hands over what to play and swaps
// its Play and Stop buttons when PlayingChanged says so.
class SlideshowSession : public QObject, public SlideshowHost
{
    Q_OBJECT
public:
    // What a show plays, as the window's list and play buttons say at the moment it starts.
    struct Source
    {
        QString folder;
        QStringList checked; // the checked items' names, in list order
        bool random = false;
        bool repeat = false;
        bool fullScreen = false;
    };

    explicit SlideshowSession(QObject* parent = nullptr);
    ~SlideshowSession() override;

    // Asked at every start of a show.
    void setSource(std::function<Source()> source) { m_source = std::move(source); }
    // The preview the slides go to when the show is not full screen.
    void setPreview(ucImgPreview* preview);

    // 2 starts the show (again from the start when it runs), 1 stops it and closes the
    // full-screen player.
    void ToggleShow(int n) override;
    void ShowSlide() override;
    SlideshowPlayer& Player() override { return m_player; }
    QTimer& SlideTimer() override { return tmrSlideshow; }

    // What the timer does at each interval: the next slide, or the end of a show that does not
    // repeat once its last picture has had a full interval.
    void Tick();

    // Paused or not.
    bool Playing() const { return m_playing; }
    frmSlideshow_FS* FullScreenPlayer() const { return m_fullScreen; }
    // Off, each slide is decoded when it is due (for comparison in the benchmark).
    void setDecodingAhead(bool on);

Q_SIGNALS:
    // The window shows Stop while playing, Play otherwise.
    void PlayingChanged(bool playing);

private:
    void start();
    void closeFullScreen();

    std::function<Source()> m_source;
    QString m_folder;
    SlideshowPlayer m_player;
    QTimer tmrSlideshow;
    QPointer<ucImgPreview> m_preview;
    SlideDecoder* m_previewAhead = nullptr;
    QPointer<frmSlideshow_FS> m_fullScreen;
    bool m_playing = false;
    bool m_decodingAhead = true;
};
