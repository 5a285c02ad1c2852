#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>

// The program's menus as data: each menu is an array of entries addressed by a fixed index,
// with gaps where entries were removed. Handlers switch on the index, so the indices are part
// of the contract between the menus and the commands.
namespace MenuTable {

struct Entry
{
    int index;
    QString caption;   // "-" is a separator; empty for entries filled at run time
    QString submenu;   // the array shown under this entry, if any
};

struct Array
{
    QString name;
    QList<Entry> entries;
};

// Every array: the bar titles, the bar menus, the tray menu and the pop-ups.
const QList<Array>& Arrays();
// The array of that name; nullptr when there is none.
const Array* Find(const QString& name);
// The caption of entry index of the named array; empty when there is no such entry.
QString Caption(const QString& arrayName, int index);

// The keys of an entry, the one the menu shows first: the desktop's own key for the command
// where it has one, else the key Linux programs commonly give it. Empty for most entries.
QList<QKeySequence> Shortcuts(const QString& arrayName, int index);
// Whether the main window answers the entry's keys itself. The other entries show keys that
// are answered elsewhere: by the same command on the menu bar, or by the list or grid that
// has the focus (F2, Delete), since a pop-up menu's keys never fire while it is closed.
bool MainWindowKeys(const QString& arrayName, int index);

// The caption of a numbered entry (recent pictures, open windows): "&" and the number, a
// blank and the text, with the text's own "&" kept as a character so it cannot take the
// mnemonic; past 9 the number is no mnemonic, as there is no key to share.
QString NumberedCaption(int number, const QString& text);

// The pop-up menus hang under an invisible top-level array instead of the menu bar.
inline const QString Popups = QStringLiteral("mnuPopup");

// Menu pictures, in the order they are given out: picture key, menu array, entry index.
struct Picture
{
    QString key;
    QString array;
    int index;
};
const QList<Picture>& Pictures();
// The icon resource for a picture key ("Open" -> ":/icons/open.svg").
QString IconResource(const QString& key);

// The main toolbar's buttons, by index; text "-" is a separator.
struct ToolButton
{
    int index;
    QString text;
    QString iconKey;
    QString toolTip;
};
const QList<ToolButton>& ToolbarButtons();

// Toolbar indices of the three child windows.
enum ChildWindow { MyImagesButton = 0, ThumbnailsButton = 2, SlideshowButton = 4 };

// "A&rrange Icons" (entry 4 of the Window menu) arranges minimised windows: arrangement 3.
int WindowArrangement(int entryIndex);

} // namespace MenuTable
