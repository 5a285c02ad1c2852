#pragma once

#include <QString>

#include <array>

// The general options by index; the settings keep each as "Options_" and its index.
namespace Opt {
constexpr int MinimizeToTray = 0; // when inactive for a while
constexpr int TrayIcon = 1;
constexpr int ConfirmChanges = 3; // ask before deleting or changing files
constexpr int SideBar = 4;
constexpr int OnTop = 5;
constexpr int TipsAtStart = 6;
constexpr int Snap = 7;
constexpr int HoverSelect = 8;
constexpr int ReopenLastWindow = 9;
constexpr int TrayAtStart = 10;
constexpr int StatusBar = 11;
constexpr int SingleClickOpens = 12;
constexpr int Captions = 13;
} // namespace Opt

// Values every window reads, set at start-up from the settings.
struct AppGlobals
{
    static constexpr int OptionCount = 14;
    // The general on/off options, 0 off and 1 on.
    std::array<long, OptionCount> Options{};
    // The accent colour, as 0x00BBGGRR.
    long MyColor = 0;
    // The main window's state at the last save: 0 normal, 1 minimised, 2 maximised.
    long WindowState = 0;
    // The picture last given to any preview; full screen, properties and saving act on it.
    QString CurrentPicture;
    // Set by the progress bar's cancel button, polled by long loops.
    bool Cancel = false;

    bool option(int index) const { return index >= 0 && index < OptionCount && Options[index] != 0; }
};

AppGlobals& Globals();
