#pragma once

#include "gallery/FilesFound.h"
#include "gallery/ThumbPipeline.h"

#include <QFutureWatcher>
#include <QMainWindow>
#include <QStringList>
#include <QTimer>
#include <QUrl>

#include <memory>
#include <vector>

class QLabel;
class PreviewPane;
class QScrollBar;
class QToolBar;
class ThumbGrid;
class ucFolders;
class ucImgPreview;
class ucSideBar;
class ucTxtAddress;

// The thumbnail gallery: every picture of one folder (or of a collection the user dropped or
// named) as a grid of square thumbnails, with the preview in a side bar beside it.
//
// The grid is one painted widget; its cells follow the arithmetic of GalleryLayout. A load
// scans the folder and sorts the list on a worker thread (a folder of a hundred thousand
// pictures takes longer than a frame), then sets up the cells at once and hands the
// thumbnails to a ThumbPipeline, which makes the visible ones first and the rest in sorted
// order on worker threads while the status strip counts them.
class frmThumbnails : public QMainWindow
{
    Q_OBJECT
    Q_PROPERTY(bool CollectionMode READ CollectionMode WRITE setCollectionMode)

public:
    explicit frmThumbnails(QWidget* parent = nullptr);
    ~frmThumbnails() override;

    // Re-reads "ThumbSize" and takes the new cell edge.
    Q_INVOKABLE void SizeThumbs();
    // Loads again: keepList false scans the folder anew, true rebuilds from the list held.
    Q_INVOKABLE void RefreshMe(bool keepList);
    Q_INVOKABLE void RefreshMe() { RefreshMe(false); }
    // Stores the order as "Sortation" and rebuilds without a new scan.
    Q_INVOKABLE void SortItems(int index);
    // Removes the current thumbnail from the collection; with SHIFT and option 3 held, and
    // the user's word, the file goes too.
    Q_INVOKABLE void DeleteItems();
    // Renames the current picture's file, keeping its extension.
    Q_INVOKABLE void RenameImage();
    // Adds dropped picture files to the gallery, which then shows a collection.
    Q_INVOKABLE void DroppedOLE(const QList<QUrl>& files);
    // What the command line asks for: a folder, or pictures named one by one.
    Q_INVOKABLE void ShowFolder(const QString& folder);
    Q_INVOKABLE void ShowPictures(const QStringList& pictures);
    // The View menu: 1 the toolbar, 2 the address bar, 3 the preview side bar.
    Q_INVOKABLE void ShowBar(int index, bool visible);
    // Asks for a folder and puts it into the address bar, which loads it.
    Q_INVOKABLE void BrowseFolder();
    // Opens the thumbnail size dialog for this gallery.
    Q_INVOKABLE void ChooseSize();

    // The full paths of the checked pictures still shown, in display order.
    Q_INVOKABLE QStringList SelectedFiles() const;
    // The full paths of every picture shown, in display order.
    QStringList CollectionFiles() const;

    // A collection holds pictures the user gathered; a folder view follows the address bar.
    bool CollectionMode() const { return m_collection; }
    void setCollectionMode(bool collection);

    QString CurrentPath() const { return m_path; }
    int PictureCount() const { return m_count; }
    int BoxSize() const { return m_box; }
    int Columns() const { return m_columns; }
    // The full path of the picture in cell index (display order); empty outside.
    QString FileOf(int index) const;
    // The cell shown in the preview, or -1.
    int CurrentIndex() const { return m_current; }
    // A load is listing the folder or making thumbnails.
    bool PassRunning() const;
    // The folder is being scanned and sorted; the cells come when that is done.
    bool Listing() const { return m_loading; }

    ThumbGrid* picFrame() const { return m_grid; }
    QScrollBar* sbSlide() const { return m_scroll; }
    ucImgPreview* ucPreview() const { return m_preview; }
    QLabel* lblSelected() const;
    ucTxtAddress* txtAddress() const { return m_address; }
    ucFolders* folderBar() const { return m_folders; }
    ucSideBar* sideBar() const { return m_sideBar; }
    QToolBar* tlbThumbs() const { return m_toolbar; }
    ThumbPipeline* pipeline() const { return m_pipeline; }

Q_SIGNALS:
    // The thumbnail pass of a load has ended, every thumbnail made or the user cancelled.
    void PassFinished(bool cancelled);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void buildWindow();
    void buildToolbar();
    void loadSettings();
    void load(bool keepList);
    void listed();
    void finishListing();
    // Starts making the cells' thumbnails; jobs, when given, are the cells as the pipeline
    // takes them, made off the UI thread by the listing.
    void startPass(std::vector<ThumbJob> jobs = {});
    void passFinished(bool cancelled);
    void select(int index);
    // A navigation key of the grid: index becomes current, the selection as the keys say.
    void keyMoved(int index, Qt::KeyboardModifiers modifiers);
    void scrollIntoView(int index);
    void openPicture();
    void countSelected();
    void cellClicked(int index);
    void cellHovered(int index);
    void newAddress();
    void layOutWindow();
    void sizeCanvas();
    void setUpScrollBar();
    int computeColumns() const;
    int sideBarWidth() const;
    void applySplitter(int twips);
    void splitterReleased();
    void showImagesCount();
    // The cell of picture from now shows to (a rename, or its undoing).
    void cellRenamed(const QString& from, const QString& to);
    // Brings back the thumbnail of path that DeleteItems removed.
    void showRemoved(const QString& path);
    bool keyEvent(QWidget* target, QKeyEvent* event, bool down);
    // The keys the gallery answers itself when target has the focus.
    static bool ownKey(QWidget* target, const QKeyEvent* event);

    // One cell of the grid, in display order.
    struct Cell
    {
        QString path;
        qint64 size = -1;
        qint64 mtime = -1;
    };

    // What a worker hands back from a load: the list (scanned anew or as it was) and the
    // cells in the stored order.
    struct FolderListing
    {
        std::shared_ptr<FilesFound> files;
        std::vector<Cell> cells;
        std::vector<ThumbJob> jobs;
    };
    static FolderListing listFolder(std::shared_ptr<FilesFound> files, const QString& path, int sortation);

    ThumbGrid* m_grid = nullptr;
    QScrollBar* m_scroll = nullptr;
    ucImgPreview* m_preview = nullptr;
    PreviewPane* m_previewPane = nullptr;
    ucTxtAddress* m_address = nullptr;
    ucFolders* m_folders = nullptr;
    ucSideBar* m_sideBar = nullptr;
    QToolBar* m_toolbar = nullptr;
    QToolBar* m_addressBar = nullptr;
    ThumbPipeline* m_pipeline = nullptr;

    std::shared_ptr<FilesFound> m_files;
    QFutureWatcher<FolderListing> m_listing;
    // A rescan was started and superseded before it ended: m_files is not this folder's.
    bool m_listStale = false;
    std::vector<Cell> m_cells;
    QString m_path;
    int m_count = 0;
    int m_box = 0;
    int m_columns = 1;
    int m_current = -1;
    // Where a Shift selection runs from: the cell last selected without Shift or Ctrl.
    int m_anchor = -1;
    int m_lastKey = 0;
    int m_splitterPressWidth = -1;
    bool m_loading = false;
    bool m_busy = false;
    bool m_clickSuppressed = false;
    bool m_collection = false;
    // The second press of a double click opened the picture; the double click itself won't.
    bool m_openedByClick = false;

    QTimer tmrLoadScroll;
    QTimer tmrResize;
    QTimer tmrRefresh;
    QTimer tmrHotTracking;
    QTimer tmrDblClick;
};
