#include "viewing/PreviewLayout.h"

#include "common/Formats.h"

#include <limits>

namespace PreviewLayout {

QSizeF FitSize(const QSizeF& natural, const QSizeF& inner)
{
    const double w = natural.width();
    const double h = natural.height();
    const double boxW = double(Formats::bankersRound(inner.width()));
    const double boxH = double(Formats::bankersRound(inner.height()));
    const bool shrink = w > boxW || h > boxH || (w >= inner.width() && h >= inner.height());
    if (!shrink || w <= 0 || h <= 0)
        return natural;
    if (w > h) {
        const double fittedH = h * (boxW / w);
        if (fittedH <= boxH)
            return {boxW, fittedH};
        return {boxH / (h / w), boxH};
    }
    const double fittedW = w * (boxH / h);
    if (fittedW <= boxW)
        return {fittedW, boxH};
    return {boxW, boxW / (w / h)};
}

QPointF Centre(const QSizeF& shown, const QSizeF& inner)
{
    return {(inner.width() - shown.width()) / 2, (inner.height() - shown.height()) / 2};
}

ZoomStep NextZoom(int level, const QSizeF& picture, double containerWidth, const QSizeF& element)
{
    ZoomStep step;
    const double next = (0.25 * (level + 1) + 1.0) * picture.width();
    if (next > containerWidth - 0.25 || level == std::numeric_limits<int>::max())
        step.level = 0;
    else
        step.level = level + 1;

    const float width = float((0.25 * step.level + 1.0) * picture.width());
    if (double(width) == element.width()) {
        step.size = element / 3;
        step.stretch = true;
    } else {
        step.size = {double(width), (0.25 * step.level + 1.0) * picture.height()};
        step.stretch = step.level >= 1;
    }
    return step;
}

} // namespace PreviewLayout
