#pragma once

#include <QString>

// The program's settings: where each lives, its spelling and the default its reader uses.
// Several values are written under one spelling and read under another ("WindowState" and
// "Windowstate", "SlideShow" and "Slideshow"); the store ignores case, so each pair names one
// value, and each call site uses the spelling given here for it.
struct Setting
{
    QString section; // empty for keys kept in the section of the window that uses them
    QString key;
    QString fallback; // empty where the reader names no default

    // The same key in a window's own section.
    Setting in(const QString& windowSection) const { return {windowSection, key, fallback}; }
};

namespace Keys {

inline const QString General = QStringLiteral("General");
inline const QString MainSection = QStringLiteral("mdiMain");

// General options 0..13: off by default for 9, 10, 12 and 13.
inline Setting Option(int index)
{
    return {General, QStringLiteral("Options_%1").arg(index),
            (index > 8 && index != 11) ? QStringLiteral("0") : QStringLiteral("1")};
}
inline const Setting MyColor{General, QStringLiteral("MyColor"), QStringLiteral("12648384")};
// Whether the picture scan also takes .png and .webp files.
inline const Setting Extra_Types{General, QStringLiteral("Extra_Types"), QStringLiteral("True")};
inline const Setting WindowStateRead{General, QStringLiteral("Windowstate"), {}};
inline const Setting WindowStateWrite{General, QStringLiteral("WindowState"), {}};
inline const Setting MinToTray_Minutes{General, QStringLiteral("MinToTray_Minutes"), QStringLiteral("10")};
inline const Setting MainMenu_View{General, QStringLiteral("MainMenu_View"), {}};
inline const Setting Last_Opt_Tab{General, QStringLiteral("Last_Opt_Tab"), QStringLiteral("1")};
inline const Setting LastPath_Save{General, QStringLiteral("LastPath_Save"), {}};
inline const Setting LastPath_Open{General, QStringLiteral("LastPath_Open"), {}};
// The size dialog and the gallery read the thumbnail scale with different defaults.
inline const Setting ThumbSizeForDialog{General, QStringLiteral("ThumbSize"), QStringLiteral("3")};
inline const Setting ThumbSizeForGallery{General, QStringLiteral("ThumbSize"), QStringLiteral("1")};

// The main window's own section.
inline const Setting SideBar_Align{MainSection, QStringLiteral("SideBar_Align"), QStringLiteral("3")};
// Written after the user drags side bar n; never read back (start-up reads SideBar_Align).
inline Setting SideBar_AlignOf(int bar) { return {{}, QStringLiteral("SideBar_Align_%1").arg(bar), {}}; }
inline const Setting Wallpaper_Style{MainSection, QStringLiteral("Wallpaper_Style"), QStringLiteral("2")};
inline const Setting Last_Used{MainSection, QStringLiteral("Last Used"), QStringLiteral("1")};
// 0 width, 1 height of the main window in twips; written only.
inline Setting Dimensions(int index) { return {MainSection, QStringLiteral("Dimensions%1").arg(index), {}}; }
inline const Setting DoLeft{QStringLiteral("Settings"), QStringLiteral("DoLeft"), QStringLiteral("True")};

// Keys in the section of the window that owns them.
inline Setting SideBarState(const QString& identifier)
{
    return {{}, QStringLiteral("ucSidebar|") + identifier, QStringLiteral("True")};
}
// Written by the View menu for bar n (1 toolbar, 2 address bar, 3 preview pane) ...
inline Setting View_(int bar) { return {{}, QStringLiteral("View_%1").arg(bar), {}}; }
// ... and read back, with a blank before the number, by the routine that restores the bars.
inline Setting ViewRestore(int bar) { return {{}, QStringLiteral("View_ %1").arg(bar), QStringLiteral("True")}; }
inline const Setting Sel_Stretch{{}, QStringLiteral("Sel_Stretch"), {}};
// Never written under this spelling, so it always reads 1.
inline const Setting Sel_Strech{{}, QStringLiteral("Sel_Strech"), QStringLiteral("1")};
inline const Setting Width{QStringLiteral("frmThumbnails"), QStringLiteral("Width"), QStringLiteral("6300")};
inline const Setting Height{QStringLiteral("frmThumbnails"), QStringLiteral("Height"), QStringLiteral("5445")};
inline const Setting Explain_Delete{QStringLiteral("frmThumbnails"), QStringLiteral("Explain_Delete"),
                                    QStringLiteral("False")};
inline const Setting Splitter_Location{{}, QStringLiteral("Splitter_Location"), {}};
inline const Setting BrowsePath{{}, QStringLiteral("BrowsePath"), {}};
inline const Setting Sortation{{}, QStringLiteral("Sortation"), {}};
inline const Setting View_Type{{}, QStringLiteral("View_Type"), QStringLiteral("3")};
inline Setting Col_(int column) { return {{}, QStringLiteral("Col_%1").arg(column), {}}; }
inline const Setting Drive{{}, QStringLiteral("Drive"), {}};
inline const Setting Dir{{}, QStringLiteral("Dir"), {}};
inline const Setting LastSelected{{}, QStringLiteral("LastSelected"), {}};
inline const Setting DirMyImages_Height{QStringLiteral("frmMyImages"), QStringLiteral("DirMyImages_Height"), {}};
inline const Setting DirSlideshow_Height{QStringLiteral("frmSlideshow"), QStringLiteral("DirSlideshow_Height"), {}};
inline Setting tlbPlay_(int button) { return {QStringLiteral("frmSlideshow"), QStringLiteral("tlbPlay_%1").arg(button), {}}; }

// The slide interval is written under "SlideShow" and read under "Slideshow".
inline const Setting Timer_DelayWrite{QStringLiteral("SlideShow"), QStringLiteral("Timer_Delay"), QStringLiteral("2")};
inline const Setting Timer_DelayRead{QStringLiteral("Slideshow"), QStringLiteral("Timer_Delay"), QStringLiteral("2")};
inline const Setting BkColor{QStringLiteral("Slideshow"), QStringLiteral("BkColor"), QStringLiteral("16777215")};

// Recent list entry 0..4, in the section its owner chooses.
inline Setting File_Recent_(int index) { return {{}, QStringLiteral("File_Recent_%1").arg(index), {}}; }

} // namespace Keys
