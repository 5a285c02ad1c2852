#pragma once

#include <QString>

class QWidget;
class SettingsStore;
struct AppGlobals;

// Puts every setting back to its default: the settings file is emptied and the values read
// at start-up are read again, so they take their defaults.
namespace RestoreDefaults {

QString Title();
QString Question();

// Asks the user; true when the defaults are wanted.
bool Confirm(QWidget* parent);

// Empties the store and brings globals back to the defaults. The current picture is the
// run's, not a setting, and stays.
void Reset(SettingsStore& settings, AppGlobals& globals);

} // namespace RestoreDefaults
