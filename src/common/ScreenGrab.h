#pragma once

#include <QImage>
#include <QString>

// A picture of the whole screen, every monitor in its place.
namespace ScreenGrab {

struct Result
{
    QImage image;         // null when there is none
    bool refused = false; // the user said no when the desktop asked
    QString reason;       // why image is null, in words a user understands
};

// True where the screen cannot be read directly (Wayland) and the desktop portal's
// Screenshot interface is asked instead; the desktop may ask the user first.
bool ThroughPortal();

// Grabs the screen now; through the portal this waits, with events running, for the answer.
Result Grab();

} // namespace ScreenGrab
