#pragma once

class QFrame;
class QString;
class QWidget;

namespace AccentBand {

// The strip in the user's accent colour that runs down the side of the about and tip windows,
// with a picture at its top. Its layout is a QVBoxLayout ending in a stretch; further widgets
// added to it sit at the bottom.
QFrame* Make(QWidget* parent, const QString& icon, int iconSize, int margin);

} // namespace AccentBand
