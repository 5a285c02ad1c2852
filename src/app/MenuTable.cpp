#include "app/MenuTable.h"

#include "common/WindowKeys.h"

#include <QHash>
#include <QKeySequence>

namespace MenuTable {

namespace {

QList<Array> buildArrays()
{
    const QString sep = QStringLiteral("-");
    return {
        {QStringLiteral("mnuTopMenus"),
         {{0, QStringLiteral("&File"), QStringLiteral("mnuFile")},
          {1, QStringLiteral("&Edit"), QStringLiteral("mnuEdit")},
          {2, QStringLiteral("&View"), QStringLiteral("mnuView_Controls")},
          {3, QStringLiteral("&Tools"), QStringLiteral("mnuTools")},
          {4, QStringLiteral("&Stuff"), QStringLiteral("mnuStuff")},
          {5, QStringLiteral("&Window"), QStringLiteral("mnuWindow")},
          {6, QStringLiteral("&Help"), QStringLiteral("mnuHelp")}}},
        {QStringLiteral("mnuFile"),
         {{0, QStringLiteral("Lumbra\u00A9  -  File..."), {}},
          {1, QStringLiteral("&Open"), {}},
          {2, QStringLiteral("&Close"), {}},
          {3, QStringLiteral("Close &All"), {}},
          {4, QStringLiteral("Save Options"), {}},
          {5, QStringLiteral("&Save"), {}},
          {6, QStringLiteral("Save &As..."), {}},
          {7, QStringLiteral("Print Options"), {}},
          {8, QStringLiteral("Page Set&up"), {}},
          {9, QStringLiteral("&Print"), {}},
          {10, sep, {}},
          {11, QStringLiteral("Prope&rties"), {}},
          {12, QStringLiteral("Recent Pictures"), {}},
          {13, {}, {}},
          {14, {}, {}},
          {15, {}, {}},
          {16, {}, {}},
          {17, {}, {}},
          {18, sep, {}},
          {19, QStringLiteral("&Exit"), {}}}},
        {QStringLiteral("mnuEdit"),
         {{0, QStringLiteral("Edit..."), {}},
          {1, QStringLiteral("&Undo"), {}},
          {2, sep, {}},
          {3, QStringLiteral("&Cut"), {}},
          {4, QStringLiteral("&Copy"), {}},
          {5, QStringLiteral("&Paste"), {}}}},
        {QStringLiteral("mnuView_Controls"),
         {{0, QStringLiteral("View..."), {}},
          {1, QStringLiteral("&Toolbar"), {}},
          {2, QStringLiteral("&Address Bar"), {}},
          {3, QStringLiteral("&Preview Pane"), {}},
          {4, sep, {}},
          {5, QStringLiteral("&Full Screen"), {}}}},
        {QStringLiteral("mnuTools"),
         {{0, QStringLiteral("Tools..."), {}},
          {1, QStringLiteral("My &Images"), {}},
          {3, QStringLiteral("&Thumbnails"), {}},
          {5, QStringLiteral("&Slide Show"), {}},
          {7, QStringLiteral("&Workshop"), {}},
          {8, sep, {}},
          {9, QStringLiteral("&Options..."), {}}}},
        {QStringLiteral("mnuStuff"),
         {{0, QStringLiteral("Cool Stuff!"), {}},
          {1, QStringLiteral("&ScreenShot!"), {}},
          {3, QStringLiteral("&Wallpaper"), QStringLiteral("mnuWallpaper")},
          {4, QStringLiteral("Internet &Explorer\u00AE Background"), {}},
          {5, QStringLiteral("&Restore Defaults"), {}}}},
        {QStringLiteral("mnuWallpaper"),
         {{0, QStringLiteral("Wallpaper Options..."), {}},
          {1, QStringLiteral("Set As Wallpaper!"), {}},
          {2, QStringLiteral("Style"), {}},
          {3, QStringLiteral("&Center"), {}},
          {4, QStringLiteral("&Streched"), {}},
          {5, QStringLiteral("&Tiled"), {}}}},
        {QStringLiteral("mnuWindow"),
         {{0, QStringLiteral("&Cascade"), {}},
          {1, QStringLiteral("Tile &Horizontally"), {}},
          {2, QStringLiteral("Tile &Vertically"), {}},
          {3, sep, {}},
          {4, QStringLiteral("A&rrange Icons"), {}}}},
        {QStringLiteral("mnuHelp"),
         {{0, QStringLiteral("Lumbra\u00AE - Help..."), {}},
          {1, QStringLiteral("Help &Overview"), {}},
          {2, QStringLiteral("&Tips... "), {}},
          {3, sep, {}},
          {6, sep, {}},
          {7, QStringLiteral("&About Lumbra"), {}},
          {8, QStringLiteral("&Splash Screen"), {}},
          {9, sep, {}},
          {10, QStringLiteral("&Go to our Web Site"), {}},
          {11, QStringLiteral("&Email Customer Support"), {}}}},
        {Popups,
         {{0, QStringLiteral("Image Options"), QStringLiteral("mnuPopup_ImageOptions")},
          {1, QStringLiteral("Preview Options"), QStringLiteral("mnuImgPreview_Options")},
          {2, QStringLiteral("Albums"), QStringLiteral("mnuAlbums")},
          {3, QStringLiteral("Tray"), QStringLiteral("mnuSys")}}},
        {QStringLiteral("mnuSys"),
         {{0, QStringLiteral("Lumbra\u00AE"), {}},
          {1, QStringLiteral("&Restore"), {}},
          {2, QStringLiteral("&Screenshot!"), {}},
          {3, sep, {}},
          {4, QStringLiteral("&About"), {}},
          {5, sep, {}},
          {6, QStringLiteral("&Exit"), {}}}},
        {QStringLiteral("mnuPopup_ImageOptions"),
         {{0, QStringLiteral("&Full Screen"), {}},
          {1, sep, {}},
          {3, QStringLiteral("&Sort by"), QStringLiteral("mnuSort_By")},
          {4, QStringLiteral("&Refresh"), {}},
          {5, sep, {}},
          {6, QStringLiteral("&Zip My Picture(s)"), {}},
          {7, QStringLiteral("Se&t As"), QStringLiteral("mnuImageOptions_SetAs")},
          {8, sep, {}},
          {9, QStringLiteral("Cu&t"), {}},
          {10, QStringLiteral("&Copy"), {}},
          {11, QStringLiteral("&Paste"), {}},
          {12, sep, {}},
          {13, QStringLiteral("&Rename"), {}},
          {14, QStringLiteral("Save &As..."), {}},
          {15, QStringLiteral("Prin&t"), {}},
          {16, QStringLiteral("&Delete"), {}},
          {17, sep, {}},
          {18, QStringLiteral("&Properties"), {}}}},
        {QStringLiteral("mnuSort_By"),
         {{0, QStringLiteral("&Name"), {}},
          {1, QStringLiteral("&Type"), {}},
          {2, QStringLiteral("&Size"), {}},
          {3, QStringLiteral("&Date"), {}}}},
        {QStringLiteral("mnuImageOptions_SetAs"),
         {{0, QStringLiteral("&Wallpaper"), {}}, {1, QStringLiteral("Internet Explorer"), {}}}},
        {QStringLiteral("mnuImgPreview_Options"),
         {{0, QStringLiteral("&Strech To Fit"), {}},
          {1, QStringLiteral("&Keep Aspect"), {}},
          {2, sep, {}},
          {6, QStringLiteral("&Properties"), {}}}},
        {QStringLiteral("mnuAlbums"),
         {{0, QStringLiteral("Photo Albums"), {}},
          {1, sep, {}},
          {2, QStringLiteral("Rename"), {}},
          {3, QStringLiteral("&Delete Album"), {}},
          {4, sep, {}},
          {5, QStringLiteral("Album &Properties"), {}}}},
    };
}

} // namespace

const QList<Array>& Arrays()
{
    static const QList<Array> arrays = buildArrays();
    return arrays;
}

const Array* Find(const QString& name)
{
    for (const Array& array : Arrays())
        if (array.name == name)
            return &array;
    return nullptr;
}

QString Caption(const QString& arrayName, int index)
{
    if (const Array* array = Find(arrayName))
        for (const Entry& entry : array->entries)
            if (entry.index == index)
                return entry.caption;
    return {};
}

namespace {

struct EntryKeys
{
    const char* array;
    int index;
    QKeySequence::StandardKey standard;
    // Taken when the desktop has no standard key for the command, and for commands without one.
    QKeySequence fallback;
    bool mainWindow;
};

const QList<EntryKeys>& entryKeys()
{
    using K = QKeySequence;
    static const QList<EntryKeys> keys = {
        {"mnuFile", 1, K::Open, K(Qt::CTRL | Qt::Key_O), true},
        {"mnuFile", 2, K::Close, K(Qt::CTRL | Qt::Key_W), true},
        {"mnuFile", 5, K::Save, K(Qt::CTRL | Qt::Key_S), true},
        {"mnuFile", 6, K::SaveAs, K(Qt::CTRL | Qt::SHIFT | Qt::Key_S), true},
        {"mnuFile", 9, K::Print, K(Qt::CTRL | Qt::Key_P), true},
        {"mnuFile", 11, K::UnknownKey, K(Qt::ALT | Qt::Key_Return), true},
        {"mnuFile", 19, K::Quit, K(Qt::CTRL | Qt::Key_Q), true},
        {"mnuEdit", 1, K::Undo, K(Qt::CTRL | Qt::Key_Z), true},
        {"mnuEdit", 3, K::Cut, K(Qt::CTRL | Qt::Key_X), true},
        {"mnuEdit", 4, K::Copy, K(Qt::CTRL | Qt::Key_C), true},
        {"mnuEdit", 5, K::Paste, K(Qt::CTRL | Qt::Key_V), true},
        // F11 alone: the desktop's second full-screen key may be Alt+Enter, too near to
        // Properties' Alt+Return.
        {"mnuView_Controls", 5, K::UnknownKey, K(Qt::Key_F11), true},
        {"mnuTools", 9, K::Preferences, K(Qt::CTRL | Qt::Key_Comma), true},
        {"mnuHelp", 1, K::HelpContents, K(Qt::Key_F1), true},
        {"mnuPopup_ImageOptions", 0, K::UnknownKey, K(Qt::Key_F11), false},
        {"mnuPopup_ImageOptions", 4, K::Refresh, K(Qt::Key_F5), true},
        {"mnuPopup_ImageOptions", 9, K::Cut, K(Qt::CTRL | Qt::Key_X), false},
        {"mnuPopup_ImageOptions", 10, K::Copy, K(Qt::CTRL | Qt::Key_C), false},
        {"mnuPopup_ImageOptions", 11, K::Paste, K(Qt::CTRL | Qt::Key_V), false},
        {"mnuPopup_ImageOptions", 13, K::UnknownKey, K(Qt::Key_F2), false},
        {"mnuPopup_ImageOptions", 14, K::SaveAs, K(Qt::CTRL | Qt::SHIFT | Qt::Key_S), false},
        {"mnuPopup_ImageOptions", 15, K::Print, K(Qt::CTRL | Qt::Key_P), false},
        {"mnuPopup_ImageOptions", 16, K::UnknownKey, K(Qt::Key_Delete), false},
        {"mnuPopup_ImageOptions", 18, K::UnknownKey, K(Qt::ALT | Qt::Key_Return), false},
        {"mnuImgPreview_Options", 6, K::UnknownKey, K(Qt::ALT | Qt::Key_Return), false},
    };
    return keys;
}

const EntryKeys* findKeys(const QString& arrayName, int index)
{
    for (const EntryKeys& entry : entryKeys())
        if (entry.index == index && arrayName == QLatin1String(entry.array))
            return &entry;
    return nullptr;
}

} // namespace

QList<QKeySequence> Shortcuts(const QString& arrayName, int index)
{
    const EntryKeys* entry = findKeys(arrayName, index);
    if (!entry)
        return {};
    return WindowKeys::Standard(entry->standard, entry->fallback);
}

bool MainWindowKeys(const QString& arrayName, int index)
{
    const EntryKeys* entry = findKeys(arrayName, index);
    return entry && entry->mainWindow;
}

QString NumberedCaption(int number, const QString& text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('&'), QStringLiteral("&&"));
    return (number <= 9 ? QStringLiteral("&%1 ") : QStringLiteral("%1 ")).arg(number) + escaped;
}

const QList<Picture>& Pictures()
{
    static const QList<Picture> pictures = {
        {QStringLiteral("Open"), QStringLiteral("mnuFile"), 1},
        {QStringLiteral("Close"), QStringLiteral("mnuFile"), 2},
        {QStringLiteral("Save"), QStringLiteral("mnuFile"), 5},
        {QStringLiteral("Page Setup"), QStringLiteral("mnuFile"), 8},
        {QStringLiteral("Print"), QStringLiteral("mnuFile"), 9},
        {QStringLiteral("Props"), QStringLiteral("mnuFile"), 11},
        {QStringLiteral("My Images"), QStringLiteral("mnuTools"), 1},
        {QStringLiteral("Thumbs"), QStringLiteral("mnuTools"), 3},
        {QStringLiteral("Slideshow"), QStringLiteral("mnuTools"), 5},
        {QStringLiteral("Tip"), QStringLiteral("mnuHelp"), 2},
        {QStringLiteral("Screen"), QStringLiteral("mnuView_Controls"), 5},
        {QStringLiteral("Screenshot"), QStringLiteral("mnuStuff"), 1},
        {QStringLiteral("Cut"), QStringLiteral("mnuEdit"), 3},
        {QStringLiteral("Copy"), QStringLiteral("mnuEdit"), 4},
        {QStringLiteral("Paste"), QStringLiteral("mnuEdit"), 5},
    };
    return pictures;
}

QString IconResource(const QString& key)
{
    static const QHash<QString, QString> files = {
        {QStringLiteral("Open"), QStringLiteral("open")},
        {QStringLiteral("Close"), QStringLiteral("close")},
        {QStringLiteral("Save"), QStringLiteral("save")},
        {QStringLiteral("Page Setup"), QStringLiteral("pagesetup")},
        {QStringLiteral("Print"), QStringLiteral("print")},
        {QStringLiteral("Props"), QStringLiteral("props")},
        {QStringLiteral("My Images"), QStringLiteral("myimages")},
        {QStringLiteral("Thumbs"), QStringLiteral("thumbs")},
        {QStringLiteral("Slideshow"), QStringLiteral("slideshow")},
        {QStringLiteral("Tip"), QStringLiteral("tip")},
        {QStringLiteral("Screen"), QStringLiteral("screen")},
        {QStringLiteral("Screenshot"), QStringLiteral("screenshot")},
        {QStringLiteral("Cut"), QStringLiteral("cut")},
        {QStringLiteral("Copy"), QStringLiteral("copy")},
        {QStringLiteral("Paste"), QStringLiteral("paste")},
        {QStringLiteral("Delete"), QStringLiteral("delete")},
        {QStringLiteral("Refresh"), QStringLiteral("refresh")},
        {QStringLiteral("Tools"), QStringLiteral("tools")},
        {QStringLiteral("Wallpaper"), QStringLiteral("wallpaper")},
        {QStringLiteral("Help"), QStringLiteral("help")},
        {QStringLiteral("Exit"), QStringLiteral("exit")},
        {QStringLiteral("About"), QStringLiteral("about")},
    };
    const QString file = files.value(key);
    return file.isEmpty() ? QString() : QStringLiteral(":/icons/%1.svg").arg(file);
}

const QList<ToolButton>& ToolbarButtons()
{
    const QString sep = QStringLiteral("-");
    static const QList<ToolButton> buttons = {
        {0, QStringLiteral("My Images"), QStringLiteral("My Images"),
         QStringLiteral("Browse your pictures folder by folder")},
        {1, sep, {}, {}},
        {2, QStringLiteral("Thumbnails"), QStringLiteral("Thumbs"),
         QStringLiteral("See a folder of pictures as thumbnails")},
        {3, sep, {}, {}},
        {4, QStringLiteral("Slide Show"), QStringLiteral("Slideshow"),
         QStringLiteral("Build and play a slide show")},
        {5, sep, {}, {}},
        {6, QStringLiteral("Open a Pic"), QStringLiteral("Open"), QStringLiteral("Open a picture")},
        {7, QStringLiteral("Close"), QStringLiteral("Close"), QStringLiteral("Close the active window")},
        {8, QStringLiteral("Delete"), QStringLiteral("Delete"),
         QStringLiteral("Delete the selected pictures")},
        {9, QStringLiteral("Refresh"), QStringLiteral("Refresh"), QStringLiteral("Refresh (F5)")},
        {10, sep, {}, {}},
        {11, QStringLiteral("Print"), QStringLiteral("Print"), QStringLiteral("Print the current picture")},
        {12, QStringLiteral("Tools"), QStringLiteral("Tools"), QStringLiteral("Tools")},
        {13, QStringLiteral("Screenshot!"), QStringLiteral("Screenshot"),
         QStringLiteral("Take a picture of the screen")},
        {14, QStringLiteral("Set as Wallpaper"), QStringLiteral("Wallpaper"),
         QStringLiteral("Put the current picture on the desktop")},
        {15, QStringLiteral("Full Screen"), QStringLiteral("Screen"),
         QStringLiteral("Show the current picture full screen")},
        {16, sep, {}, {}},
        {17, QStringLiteral("Help"), QStringLiteral("Help"), QStringLiteral("Help")},
    };
    return buttons;
}

int WindowArrangement(int entryIndex)
{
    return entryIndex == 4 ? 3 : entryIndex;
}

} // namespace MenuTable
