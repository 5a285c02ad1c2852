#pragma once

#include "app/SettingsKeys.h"
#include "browser/PictureListRules.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QPersistentModelIndex>

#include <array>

class QAction;
class QComboBox;
class QFileSystemModel;
class QLabel;
class PreviewPane;
class QSplitter;
class QToolBar;
class QTreeView;
class ucFolders;
class ucImgPreview;
class ucPictureList;
class ucSideBar;
class ucTxtAddress;

// The window the picture browser and the slideshow builder share: a drive list and a folder
// tree over a preview in a side bar, and the pictures of the chosen folder as a list with
// six columns (large icons, list or details) beside it. The address bar and the special-
// folder bar above it choose the folder as well.
//
// A window built on it passes a Setup saying what it does differently, overrides the hooks
// below, and calls Load() at the end of its constructor, when its own parts exist.
class PictureListWindow : public QMainWindow
{
    Q_OBJECT

public:
    struct Setup
    {
        // The settings section, which is also the window's object name: "frmMyImages".
        QString section;
        // The middle of the control names: "MyImages" names drvMyImages, dirMyImages,
        // lvMyImages and tlbMyImages.
        QString stem;
        QString title;
        // Where the height of the folder tree is kept.
        Setting dirHeight;
        // "JPG File" for photo.jpg when set, "jpg File" when not.
        bool upperCaseTypes = true;
        // Rows carry check boxes, unticked when added.
        bool checkBoxes = false;
        // Set: a fill selects the picture last selected ("LastSelected"). Not set: a fill
        // selects the first picture as soon as it is listed.
        bool rememberSelection = true;
        // Set: a fill turns multiple selection off while it runs, and the view buttons are
        // enabled only while there are pictures.
        bool fillManagesControls = true;
    };

    ~PictureListWindow() override;

    // Lists the current folder again.
    Q_INVOKABLE void RefreshMe();
    // Sorts by a column's texts (0 name, 1 type, 2 size, 3 date as shown, 4 size key, 5 date
    // key); size sorts by the exact size key. The key is kept as "Sortation".
    Q_INVOKABLE void SortItems(int key);
    // The View menu: 1 the toolbar, 2 the address bar, 3 the preview.
    Q_INVOKABLE void ShowBar(int index, bool visible);
    Q_INVOKABLE void SetStretch(bool stretch);

    // The view-type operation, n as the toolbar numbers its buttons: 1 large icons,
    // 2 details, 3 list. A number outside 1..3 becomes 3.
    void ViewType(int& n);
    // The selection operation: previews row, remembers it as "LastSelected", and makes it
    // the one selected row.
    void SelectItem(int row);

    // The folder shown, ending with "/".
    QString CurrentPath() const { return m_path; }
    const Setup& setup() const { return m_setup; }
    // The row the selection operation remembered last, or -1.
    int RememberedRow() const;
    // The splitter's place, in twips from the window's left.
    int SplitterLocation() const;

    QComboBox* drvList() const { return m_drives; }
    QTreeView* dirList() const { return m_dirs; }
    ucPictureList* lvList() const { return m_list; }
    ucImgPreview* ucPreview() const { return m_preview; }
    QLabel* lblSelected() const;
    ucTxtAddress* txtAddress() const { return m_address; }
    ucFolders* folderBar() const { return m_folders; }
    ucSideBar* sideBar() const { return m_sideBar; }
    QToolBar* toolbar() const { return m_toolbar; }
    QToolBar* addressBar() const { return m_addressBar; }
    // View button 1..3.
    QAction* ViewButton(int index) const;

protected:
    PictureListWindow(const Setup& setup, QWidget* parent);

    // Reads the settings and lists the folder last shown.
    void Load();

    // What a double click on a row does; the browser opens the picture.
    virtual void listDoubleClicked(int row);
    // The Delete key on the list.
    virtual void deleteKeyPressed() {}
    // A fill has listed the folder.
    virtual void listFilled() {}

    // Opens the picture of row in a picture window (once for the two clicks of a double click).
    void OpenRow(int row);
    // The row's file, current folder and name.
    QString PathOf(int row) const;
    // Lists the file name of the current folder, or brings its row up to date when it is
    // listed already. Returns its row; sorting it in is left to the caller.
    int AddFileRow(const QString& name);
    // Removes a row without the selection handling hearing of it.
    void RemoveRow(int row);
    // "Images: " and the number of rows, in the status strip's second panel; the view
    // buttons follow the count where the setup says so.
    void ShowCount();

    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void buildWindow();
    void buildToolbar();
    void buildSideBar();
    void fillList();
    void newAddress();
    void folderChosen(const QModelIndex& current);
    void driveChosen(int index);
    void fillDrives();
    QString currentDrive() const;
    void showDrive(const QString& root);
    QString folderListPath() const;
    void showFolder(const QString& path);
    void selectionChanged(int row);
    void selectRow(int row, bool alone);
    void columnClicked(int column);
    void checkColumnWidths();
    void keyPressed(int key);
    void applySplitter(int twips);
    void activated();

    const Setup m_setup;
    QString m_path;
    // The root of the volume the folder tree shows.
    QString m_drive;
    // The folder the tree keeps scrolling to while the folders above it are read.
    QString m_folderToReveal;
    QPersistentModelIndex m_remembered;
    // Set while the program changes the selection, the drive or the folder, so that the
    // handlers of those changes stay out.
    bool m_changing = false;
    bool m_changingFolder = false;
    bool m_shownOnce = false;
    int m_pendingSplitter = 0;
    int m_pendingDirHeight = 0;
    std::array<int, 4> m_columnWidths{};
    QString m_lastOpened;
    QElapsedTimer m_lastOpenTime;

    QComboBox* m_drives = nullptr;
    QTreeView* m_dirs = nullptr;
    QFileSystemModel* m_dirModel = nullptr;
    QSplitter* m_sideSplit = nullptr;
    PreviewPane* m_previewPane = nullptr;
    ucPictureList* m_list = nullptr;
    ucImgPreview* m_preview = nullptr;
    ucTxtAddress* m_address = nullptr;
    ucFolders* m_folders = nullptr;
    ucSideBar* m_sideBar = nullptr;
    QToolBar* m_toolbar = nullptr;
    QToolBar* m_addressBar = nullptr;
    std::array<QAction*, 3> m_viewButtons{};
};
