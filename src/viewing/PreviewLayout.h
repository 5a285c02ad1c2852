#pragma once

#include <QPointF>
#include <QSizeF>

// Where the preview pane puts its picture: fitted into the pane without distortion (or, when
// stretching, filling it), centred, and the steps of the magnifying animation.
namespace PreviewLayout {

// The size a picture of natural size (w, h) takes in a pane whose inner area is inner. It
// shrinks, keeping its proportions, when it is wider or higher than the area rounded to whole
// units, or at least as large as the area both ways; a smaller picture is never enlarged.
QSizeF FitSize(const QSizeF& natural, const QSizeF& inner);
// The top left corner that centres a picture of size shown in the inner area.
QPointF Centre(const QSizeF& shown, const QSizeF& inner);

// One step of the magnifying animation: the picture grows by a quarter of its own size at
// each step until the next step would be wider than its container, then starts again.
struct ZoomStep
{
    int level = 0;
    QSizeF size;          // the element's new size
    bool stretch = false; // whether the element now stretches its picture
};
// A step whose width equals the element's current width shrinks the element to a third instead.
ZoomStep NextZoom(int level, const QSizeF& picture, double containerWidth, const QSizeF& element);

} // namespace PreviewLayout
