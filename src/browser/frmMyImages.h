#pragma once

#include "browser/PictureListWindow.h"

#include <functional>
#include <memory>

class FilesFound;

// The picture browser: the pictures of one folder as a list beside a preview, where the
// user renames (in place), deletes, cuts, copies and pastes picture files.
class frmMyImages : public PictureListWindow
{
    Q_OBJECT

public:
    explicit frmMyImages(QWidget* parent = nullptr);
    ~frmMyImages() override;

    // Starts editing the label of the selected picture; finishing the edit renames the file.
    Q_INVOKABLE void RenameImage();
    // Moves the selected pictures to the trash, asking first when option 3 is on.
    Q_INVOKABLE void DeleteItems();
    // Takes the selected pictures onto the clipboard list (and the desktop clipboard);
    // cut pictures are shown greyed until they are pasted.
    Q_INVOKABLE void CutCopy(bool cut);
    // Pastes into the current folder what a file manager put on the desktop clipboard, or
    // else the clipboard list.
    Q_INVOKABLE void PasteImages();
    // The full paths of the selected pictures, in list order.
    Q_INVOKABLE QStringList SelectedFiles() const;

    // The clipboard list; null before any cut or copy, and after a cut has been pasted.
    const FilesFound* ClipboardList() const { return m_clipboard.get(); }

protected:
    void deleteKeyPressed() override { DeleteItems(); }

private:
    void renameRow(int row, const QString& typed);
    // Lists the folder again when an undo has put files back, if this window is still open.
    std::function<void()> refresher();

    std::unique_ptr<FilesFound> m_clipboard;
};
