#pragma once

#include <QPushButton>

// A push button that draws itself: a rounded face shaded from the user's accent colour,
// lighter while the pointer is over it, sunk while pressed, with a focus ring and a heavier
// border when it is the dialog's default button. It behaves as any QPushButton (default
// button, shortcuts, clicked), so it replaces one without further changes.
//
// A click is heard where the program was built with Qt Multimedia and the desktop has an
// audio output; elsewhere the button is silent.
class ucCoolButton : public QPushButton
{
    Q_OBJECT

public:
    explicit ucCoolButton(const QString& text, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    // The colour the face is shaded from; invalid means the accent colour.
    void setFaceColor(const QColor& color);
    QColor faceColor() const;

    // Off, the button never makes a sound.
    void setClickSound(bool on) { m_clickSound = on; }
    // Whether a click is heard now: the sound was built in and an audio output exists.
    static bool ClickSoundAvailable();

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void playClick() const;

    QColor m_face;
    bool m_hot = false;
    bool m_clickSound = true;
};
