#include "common/modTransparency.h"

#include "common/Utilities.h"

#include <QPointer>
#include <QWidget>

namespace modTransparency {

void ApplyOpacity(QWidget* window, int opacity, QRgb colorKey)
{
    Q_UNUSED(colorKey);
    if (!window)
        return;
    opacity = qBound(0, opacity, 255);
    window->setWindowOpacity(opacity >= Opaque ? 1.0 : opacity / 255.0);
}

void SetSeeThrough(QWidget* window, bool seeThrough, QRgb colorKey)
{
    ApplyOpacity(window, seeThrough ? 0 : Opaque, colorKey);
}

void FadeWindow(QWidget* window, bool fadeIn)
{
    QPointer<QWidget> guard(window);
    if (!guard)
        return;
    if (fadeIn) {
        ApplyOpacity(window, 0);
        window->show();
    }
    const int start = fadeIn ? 0 : Opaque;
    const int step = fadeIn ? 10 : -10;
    for (int opacity = start; fadeIn ? opacity <= Opaque : opacity >= 0; opacity += step) {
        // The wait processes events, so the window may be closed and deleted under us.
        if (!guard)
            return;
        ApplyOpacity(guard, opacity);
        int wait = 1;
        Utilities::Pause(wait, true);
    }
}

} // namespace modTransparency
