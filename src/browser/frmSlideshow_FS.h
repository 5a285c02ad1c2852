#pragma once

#include <QColor>
#include <QTimer>
#include <QWidget>

#include <functional>

class QAction;
class QLabel;
class QSlider;
class QToolBar;
class SlideDecoder;
class SlideshowHost;
class ucImgPreview;

// The full-screen window a show plays in. The window that owns the show keeps the play list,
// the timer and the position; this one shows the slides on a background colour of the user's
// choice and turns its keys, toolbar and interval slider into calls on that owner, which closes
// it when the show ends.
class frmSlideshow_FS : public QWidget
{
    Q_OBJECT
public:
    static inline const QString Section = QStringLiteral("frmSlideshow_FS");
    // How long a key press locks out the next, so that a held key does not race the slides.
    static constexpr int KeyLockMs = 400;

    // Picks a colour starting from the current one; an invalid colour means cancelled.
    using ColorChooser = std::function<QColor(QWidget* parent, const QColor& current)>;
    // The colour dialog behind the background button; tests put their own in its place.
    static ColorChooser& ChooseColor();

    explicit frmSlideshow_FS(SlideshowHost* host, QWidget* parent = nullptr);
    ~frmSlideshow_FS() override;

    // Covers the screen and comes to the front, ready for the first slide.
    void Load();
    // The slide target: shows path (the caption follows) and decodes upcoming ahead of its tick.
    Q_INVOKABLE void ShowPicture(const QString& path, const QString& upcoming = {});
    // The owner is going away: the controls no longer reach it.
    void setHost(SlideshowHost* host) { m_host = host; }

    // Toolbar buttons by index: 1 Stop, 2 Pause, 3 Previous Slide, 4 Next Slide,
    // 5 Select background color.
    void tlbPlay_ButtonClick(int index);
    // Key codes 19 Pause, 27 Escape (starts the show over and leaves full screen), 37 Left
    // arrow, 39 Right arrow; others only take the lock.
    void KeyDown(int keyCode);
    void sldrInterval_Change();

    ucImgPreview* Slide() const { return ucSlide; }
    SlideDecoder& Ahead() const { return *m_ahead; }
    QSlider* IntervalSlider() const { return sldrInterval; }
    QString CaptionText() const;
    QString IntervalText() const;
    QColor BackgroundColor() const { return m_background; }
    bool Paused() const;
    bool KeyLocked() const { return m_keyLock; }

    QTimer tmrKeyResponse;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void applyBackground(const QColor& colour);
    void showCaption();
    void pauseToggled(bool paused);

    SlideshowHost* m_host = nullptr;
    ucImgPreview* ucSlide = nullptr;
    SlideDecoder* m_ahead = nullptr;
    QWidget* picPlay = nullptr;
    QToolBar* tlbPlay = nullptr;
    QAction* m_pause = nullptr;
    QAction* m_colourButton = nullptr;
    QSlider* sldrInterval = nullptr;
    QLabel* lblInterval = nullptr;
    QLabel* lblCaption = nullptr;
    QColor m_background = Qt::white;
    bool m_keyLock = false;
};
