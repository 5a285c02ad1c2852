#include "browser/frmSlideshow.h"

frmSlideshow::frmSlideshow(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmSlideshow"));
    setWindowTitle(QStringLiteral("Slide Show"));
}
