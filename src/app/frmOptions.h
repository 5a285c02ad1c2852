#pragma once

#include "common/AppGlobals.h"

#include <QColor>
#include <QDialog>

#include <array>

class QCheckBox;
class QFrame;
class QLabel;
class QPushButton;
class QRadioButton;
class QTabWidget;
class mdiMain;

// "Options": the general on/off options, the accent colour, the idle time before the main
// window goes to the tray and the main menu appearance. Nothing is stored until OK; OK then
// applies the menu appearance, the status strip and the tray, side bar and on-top options to
// the main window at once. The tab shown last is shown again next time.
class frmOptions : public QDialog
{
    Q_OBJECT

public:
    // main: the window the dialog stands over and the choices apply to; without one they are
    // only stored.
    explicit frmOptions(mdiMain* main = nullptr);

    // Tools > Options: the dialog, modal over main.
    static void ShowDialog(mdiMain* main);

    // 0 OK: store and apply everything; 1 Cancel: close and change nothing.
    void cmdOptions_Click(int index);
    void cmdColor_Click();
    // Fills shaColor; OK takes the colour from there.
    void ShowColor(const QColor& color);

    QTabWidget* SSTab1 = nullptr;
    // One per option index; index 2 has no check box.
    std::array<QCheckBox*, AppGlobals::OptionCount> chkGeneral{};
    // Whether the gallery also shows PNG and WebP files ("General"/"Extra_Types").
    QCheckBox* chkExtraTypes = nullptr;
    // 0 toolbar and menus, 1 menus only, 2 toolbar only.
    std::array<QRadioButton*, 3> opMainMenu{};
    QWidget* spnMinToTray = nullptr;
    QLabel* lblMinToTray = nullptr;
    QPushButton* cmdColor = nullptr;
    QFrame* shaColor = nullptr;
    std::array<QPushButton*, 2> cmdOptions{};

private:
    QWidget* MakeSpinButton();
    void Form_Load();
    // One click of spnMinToTray.
    void StepMinutes(bool up);
    void ApplyToMainWindow(const std::array<bool, AppGlobals::OptionCount>& changed,
                           bool extraTypesChanged);

    mdiMain* m_main = nullptr;
};
