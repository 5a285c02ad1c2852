#pragma once

#include <QString>

class SettingsStore;
struct AppGlobals;

// What runs before any window exists.
namespace StartUp {

// Deletes the leftover "st6*" files in the program folder; returns how many went.
int CleanLeftovers(const QString& programFolder);
// Reads the accent colour, the last window state and the fourteen general options. A value
// that does not convert leaves what was there before.
void ReadGlobals(const SettingsStore& settings, AppGlobals& globals);

// Both of the above on the program folder, the global store and the program-wide values.
void Run();

} // namespace StartUp
