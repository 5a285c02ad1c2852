#include "app/frmOptions.h"

#include "app/ChildOps.h"
#include "app/frmSysTray.h"
#include "app/mdiMain.h"
#include "app/OptionsRules.h"
#include "app/SettingsStore.h"
#include "common/AppGlobals.h"
#include "common/Formats.h"
#include "common/Utilities.h"
#include "controls/ucSideBar.h"
#include "common/WindowPlacement.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

enum Tab
{
    AppearanceTab,
    GeneralTab,
    PicturesTab,
    TrayTab
};

struct OptionBox
{
    int option;
    QString caption;
    Tab tab;
};

// In the order they stand on their tabs.
const OptionBox OptionBoxes[] = {
    {Opt::StatusBar, QStringLiteral("Status Ba&r"), AppearanceTab},
    {Opt::SideBar, QStringLiteral("&Show Sidebar"), AppearanceTab},
    {Opt::ConfirmChanges, QStringLiteral("Confirm all &deletes and changes"), GeneralTab},
    {Opt::TipsAtStart, QStringLiteral("Show Tips and T&ricks at startup"), GeneralTab},
    {Opt::ReopenLastWindow, QStringLiteral("&Always load last area I worked in"), GeneralTab},
    {Opt::OnTop, QStringLiteral("Always &on top ->"), GeneralTab},
    {Opt::Snap, QStringLiteral("Snap to screen / dock to sides"), GeneralTab},
    {Opt::HoverSelect, QStringLiteral("&Hover select images"), PicturesTab},
    {Opt::SingleClickOpens, QStringLiteral("&Single-click to Open / Hover Select"), PicturesTab},
    {Opt::Captions, QStringLiteral("Show captions below Thumbnails."), PicturesTab},
    {Opt::TrayIcon, QStringLiteral("&Show icon in system tray"), TrayTab},
    {Opt::MinimizeToTray, QStringLiteral("Minimize to tray when inactive:"), TrayTab},
    {Opt::TrayAtStart, QStringLiteral("&Minimize to Tray on startup"), TrayTab},
};

SettingsStore& settings()
{
    return SettingsStore::global();
}

} // namespace

frmOptions::frmOptions(mdiMain* main) : QDialog(main), m_main(main)
{
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Options"));
    setModal(true);

    SSTab1 = new QTabWidget(this);
    SSTab1->setObjectName(QStringLiteral("SSTab1"));
    std::array<QVBoxLayout*, 4> pages{};
    const QString titles[] = {QStringLiteral("Appearance"), QStringLiteral("General"),
                              QStringLiteral("Pictures"), QStringLiteral("Tray")};
    for (size_t tab = 0; tab < pages.size(); ++tab) {
        auto* page = new QWidget(SSTab1);
        pages[tab] = new QVBoxLayout(page);
        SSTab1->addTab(page, titles[tab]);
    }

    for (const OptionBox& box : OptionBoxes) {
        auto* check = new QCheckBox(box.caption, this);
        check->setObjectName(QStringLiteral("chkGeneral(%1)").arg(box.option));
        chkGeneral[size_t(box.option)] = check;
    }
    chkExtraTypes = new QCheckBox(QStringLiteral("Show &PNG and WebP images"), this);
    chkExtraTypes->setObjectName(QStringLiteral("chkExtraTypes"));
    chkExtraTypes->setToolTip(QStringLiteral("The gallery also shows .png and .webp files"));

    // Appearance: the menus and toolbar, the status strip, the side bar and the colour.
    auto* menuFrame = new QGroupBox(QStringLiteral("Main Menu Appearance"), this);
    auto* menuLayout = new QVBoxLayout(menuFrame);
    const QString menuChoices[] = {QStringLiteral("Bot&h Toolbar and Menu"),
                                   QStringLiteral("View &Menus Only"),
                                   QStringLiteral("View &Toolbar Only")};
    for (size_t i = 0; i < opMainMenu.size(); ++i) {
        opMainMenu[i] = new QRadioButton(menuChoices[i], menuFrame);
        opMainMenu[i]->setObjectName(QStringLiteral("opMainMenu(%1)").arg(i));
        menuLayout->addWidget(opMainMenu[i]);
    }
    pages[AppearanceTab]->addWidget(menuFrame);

    cmdColor = new QPushButton(QStringLiteral("My Color"), this);
    cmdColor->setObjectName(QStringLiteral("cmdColor"));
    shaColor = new QFrame(this);
    shaColor->setObjectName(QStringLiteral("shaColor"));
    shaColor->setFrameShape(QFrame::Box);
    shaColor->setFixedSize(48, cmdColor->sizeHint().height());
    shaColor->setAutoFillBackground(true);
    auto* colorRow = new QHBoxLayout;
    colorRow->addWidget(cmdColor);
    colorRow->addWidget(shaColor);
    colorRow->addStretch(1);

    // The idle time sits beside the option it belongs to.
    spnMinToTray = MakeSpinButton();
    lblMinToTray = new QLabel(QStringLiteral("10 minutes"), this);
    lblMinToTray->setObjectName(QStringLiteral("lblMinToTray"));
    auto* minutesRow = new QHBoxLayout;
    minutesRow->addWidget(chkGeneral[Opt::MinimizeToTray]);
    minutesRow->addWidget(spnMinToTray);
    minutesRow->addWidget(lblMinToTray);
    minutesRow->addStretch(1);

    auto* trayFrame = new QGroupBox(QStringLiteral("Tray Icon"), this);
    auto* trayLayout = new QVBoxLayout(trayFrame);
    for (const OptionBox& box : OptionBoxes) {
        QCheckBox* check = chkGeneral[size_t(box.option)];
        if (box.tab == TrayTab) {
            if (box.option == Opt::MinimizeToTray)
                trayLayout->addLayout(minutesRow);
            else
                trayLayout->addWidget(check);
        } else {
            pages[box.tab]->addWidget(check);
        }
    }
    pages[AppearanceTab]->addLayout(colorRow);
    pages[PicturesTab]->addWidget(chkExtraTypes);
    pages[TrayTab]->addWidget(trayFrame);
    for (QVBoxLayout* page : pages)
        page->addStretch(1);

    const QString buttonTexts[] = {QStringLiteral("OK"), QStringLiteral("Cancel")};
    auto* buttonRow = new QHBoxLayout;
    buttonRow->addStretch(1);
    for (size_t i = 0; i < cmdOptions.size(); ++i) {
        cmdOptions[i] = new QPushButton(buttonTexts[i], this);
        cmdOptions[i]->setObjectName(QStringLiteral("cmdOptions(%1)").arg(i));
        buttonRow->addWidget(cmdOptions[i]);
        connect(cmdOptions[i], &QPushButton::clicked, this,
                [this, i] { cmdOptions_Click(int(i)); });
    }
    cmdOptions[0]->setDefault(true);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(SSTab1);
    layout->addLayout(buttonRow);

    // The boxes are made in the order of the option table, the other controls after them:
    // Tab follows each page from top to bottom instead.
    QList<QWidget*> tabOrder = {SSTab1->tabBar(),
                                opMainMenu[0],
                                opMainMenu[1],
                                opMainMenu[2],
                                chkGeneral[Opt::StatusBar],
                                chkGeneral[Opt::SideBar],
                                cmdColor,
                                chkGeneral[Opt::ConfirmChanges],
                                chkGeneral[Opt::TipsAtStart],
                                chkGeneral[Opt::ReopenLastWindow],
                                chkGeneral[Opt::OnTop],
                                chkGeneral[Opt::Snap],
                                chkGeneral[Opt::HoverSelect],
                                chkGeneral[Opt::SingleClickOpens],
                                chkGeneral[Opt::Captions],
                                chkExtraTypes,
                                chkGeneral[Opt::TrayIcon],
                                chkGeneral[Opt::MinimizeToTray]};
    for (QToolButton* arrow : spnMinToTray->findChildren<QToolButton*>())
        tabOrder << arrow;
    tabOrder << chkGeneral[Opt::TrayAtStart] << cmdOptions[0] << cmdOptions[1];
    for (int i = 1; i < tabOrder.size(); ++i)
        setTabOrder(tabOrder[i - 1], tabOrder[i]);

    connect(cmdColor, &QPushButton::clicked, this, &frmOptions::cmdColor_Click);
    // The idle time only matters while the window may go to the tray by itself.
    connect(chkGeneral[Opt::MinimizeToTray], &QCheckBox::toggled, this, [this](bool on) {
        spnMinToTray->setEnabled(on);
        lblMinToTray->setEnabled(on);
    });

    Form_Load();
    // Back where the user last left it, at the size it had.
    WindowPlacement::Keep(this, QStringLiteral("frmOptions"));
}

QWidget* frmOptions::MakeSpinButton()
{
    auto* spin = new QWidget(this);
    spin->setObjectName(QStringLiteral("spnMinToTray"));
    auto* layout = new QVBoxLayout(spin);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (const bool up : {true, false}) {
        auto* arrow = new QToolButton(spin);
        arrow->setArrowType(up ? Qt::UpArrow : Qt::DownArrow);
        arrow->setFixedSize(18, 11);
        arrow->setToolTip(up ? QStringLiteral("Longer") : QStringLiteral("Shorter"));
        layout->addWidget(arrow);
        connect(arrow, &QToolButton::clicked, this, [this, up] { StepMinutes(up); });
    }
    return spin;
}

void frmOptions::ShowDialog(mdiMain* main)
{
    frmOptions dialog(main);
    dialog.exec();
}

void frmOptions::Form_Load()
{
    int tab = 1;
    settings().readInto(Keys::Last_Opt_Tab, tab);
    if (tab >= 0 && tab < SSTab1->count())
        SSTab1->setCurrentIndex(tab);

    ShowColor(Formats::colorFromBgr(Globals().MyColor));

    for (size_t i = 0; i < chkGeneral.size(); ++i)
        if (chkGeneral[i])
            chkGeneral[i]->setChecked(Globals().option(int(i)));
    // Ticking fires no signal when the box is already in that state.
    spnMinToTray->setEnabled(chkGeneral[Opt::MinimizeToTray]->isChecked());
    lblMinToTray->setEnabled(chkGeneral[Opt::MinimizeToTray]->isChecked());

    bool extraTypes = true;
    settings().readInto(Keys::Extra_Types, extraTypes);
    chkExtraTypes->setChecked(extraTypes);

    // The dialog opens on the appearance the main window has now.
    int view = 0;
    settings().readInto(Keys::MainMenu_View, view);
    opMainMenu[size_t(view >= 0 && view < int(opMainMenu.size()) ? view : 0)]->setChecked(true);

    int minutes = 10;
    settings().readInto(Keys::MinToTray_Minutes, minutes);
    lblMinToTray->setText(OptionsRules::MinutesCaption(minutes));
}

void frmOptions::StepMinutes(bool up)
{
    const int shown = OptionsRules::MinutesOfCaption(lblMinToTray->text());
    lblMinToTray->setText(OptionsRules::MinutesCaption(OptionsRules::MinToTrayStep(shown, up)));
}

void frmOptions::ShowColor(const QColor& color)
{
    QPalette colours = shaColor->palette();
    colours.setColor(QPalette::Window, color);
    shaColor->setPalette(colours);
}

void frmOptions::cmdColor_Click()
{
    const QColor chosen = QColorDialog::getColor(shaColor->palette().color(QPalette::Window), this,
                                                 QStringLiteral("Choose You Color:"));
    if (chosen.isValid())
        ShowColor(chosen);
}

void frmOptions::cmdOptions_Click(int index)
{
    if (index != 0) {
        reject();
        return;
    }
    AppGlobals& globals = Globals();
    SettingsStore& store = settings();

    globals.MyColor = long(Formats::bgrFromColor(shaColor->palette().color(QPalette::Window)));
    store.write(Keys::MyColor, qint64(globals.MyColor));

    int view = 0;
    for (size_t i = 0; i < opMainMenu.size(); ++i)
        if (opMainMenu[i]->isChecked())
            view = int(i);
    store.write(Keys::MainMenu_View, view);
    if (m_main)
        m_main->MainMenu_View(view);

    const int minutes = OptionsRules::MinutesOfCaption(lblMinToTray->text());
    store.write(Keys::MinToTray_Minutes, minutes);

    std::array<bool, AppGlobals::OptionCount> changed{};
    for (size_t i = 0; i < chkGeneral.size(); ++i) {
        if (!chkGeneral[i])
            continue;
        const long value = chkGeneral[i]->isChecked() ? 1 : 0;
        changed[i] = value != globals.Options[i];
        globals.Options[i] = value;
        store.write(Keys::Option(int(i)), qint64(value));
    }
    bool extraTypes = true;
    store.readInto(Keys::Extra_Types, extraTypes);
    const bool extraTypesChanged = extraTypes != chkExtraTypes->isChecked();
    store.writeBool(Keys::Extra_Types, chkExtraTypes->isChecked());

    if (m_main) {
        m_main->statusBar()->setVisible(globals.option(Opt::StatusBar));
        m_main->SetMinToTrayMinutes(minutes);
        ApplyToMainWindow(changed, extraTypesChanged);
    }

    store.write(Keys::Last_Opt_Tab, SSTab1->currentIndex());
    accept();
}

void frmOptions::ApplyToMainWindow(const std::array<bool, AppGlobals::OptionCount>& changed,
                                   bool extraTypesChanged)
{
    const AppGlobals& globals = Globals();
    if (changed[Opt::TrayIcon])
        m_main->Tray()->SetIconVisible(globals.option(Opt::TrayIcon));
    if (changed[Opt::SideBar])
        m_main->SideBar(0)->setVisible(globals.option(Opt::SideBar));
    if (changed[Opt::OnTop])
        Utilities::SetAlwaysOnTop(m_main, globals.option(Opt::OnTop));
    // Captions and the picture types decide what a gallery shows: read its folder again.
    if (changed[Opt::Captions] || extraTypesChanged)
        for (QMdiSubWindow* sub : m_main->Area()->subWindowList())
            ChildOps::Call(sub->widget(), "RefreshMe", false);
}
