#include "common/AccentBand.h"

#include "common/AppGlobals.h"
#include "common/Formats.h"

#include <QFrame>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

namespace AccentBand {

QFrame* Make(QWidget* parent, const QString& icon, int iconSize, int margin)
{
    auto* band = new QFrame(parent);
    QPalette colours = band->palette();
    colours.setColor(QPalette::Window, Formats::colorFromBgr(Globals().MyColor));
    band->setPalette(colours);
    band->setAutoFillBackground(true);
    auto* picture = new QLabel(band);
    picture->setPixmap(QIcon(icon).pixmap(iconSize, iconSize));
    auto* layout = new QVBoxLayout(band);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addWidget(picture);
    layout->addStretch(1);
    return band;
}

} // namespace AccentBand
