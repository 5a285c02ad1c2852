#pragma once

#include <QRgb>

class QWidget;

// Fading and see-through windows. Opacity runs from 0 (invisible) to 250, and 250 means
// fully opaque: the window is then drawn without any blending at all.
namespace modTransparency {

constexpr int Opaque = 250;

// Applies opacity to a top-level window. A colour key cannot be honoured by the window
// systems Qt drives, so a window given one is drawn at the opacity alone.
void ApplyOpacity(QWidget* window, int opacity, QRgb colorKey = 0);
// Wholly see-through (opacity 0) or opaque.
void SetSeeThrough(QWidget* window, bool seeThrough, QRgb colorKey = 0);
// Fades a window in (shown first, 0 to 250) or out (250 to 0, left invisible for the caller
// to close) in steps of 10, processing events between steps.
void FadeWindow(QWidget* window, bool fadeIn);

} // namespace modTransparency
