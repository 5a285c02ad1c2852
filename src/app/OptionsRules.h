#pragma once

#include <QString>

// The rules behind the options dialog's idle-time setting, kept apart from the window.
namespace OptionsRules {

// The label beside the spin button: "10 minutes".
QString MinutesCaption(qint64 minutes);

// The minutes a label stands for: the number its first two characters make, read the way a
// number is read from the front of a text (leading sign and digits, nothing else). A label
// that does not start with a number stands for 0, and "100 minutes" for 10.
int MinutesOfCaption(const QString& caption);

// One click of the spin button on the ladder 3, 10, 30, 60. The ends stay where they are;
// a number off the ladder (one stored by hand) turns into 0.
int MinToTrayStep(int shown, bool up);

} // namespace OptionsRules
