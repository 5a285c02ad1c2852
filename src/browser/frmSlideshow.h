#pragma once

#include "browser/PictureListWindow.h"

#include <QList>
#include <QPersistentModelIndex>
#include <QTimer>

#include <array>

class SlideshowSession;

// The slideshow builder: the pictures of one folder as in the browser, each with a check box.
// The user ticks the pictures to show, puts them in order by dragging them within the list,
// and plays them in the preview pane or full screen.
class frmSlideshow : public PictureListWindow
{
    Q_OBJECT

public:
    explicit frmSlideshow(QWidget* parent = nullptr);
    ~frmSlideshow() override;

    // 2 plays the checked pictures in list order (Play), 1 stops the show (Stop).
    Q_INVOKABLE void ToggleShow(int n);
    // Shows the next picture of the show and moves on.
    Q_INVOKABLE void ShowSlide();
    // Inverts the check box of every selected picture (the tlbCheck button).
    Q_INVOKABLE void CheckSelected();

    // The running show: its play list, position, timer and full-screen player.
    SlideshowSession& Session() const { return *m_session; }

    // Play toolbar button 1 to 7, as the toolbar numbers them: 1 Stop, 2 Play, 4 Repeat,
    // 5 Random, 7 Full Screen; 3 and 6 are separators.
    QAction* PlayButton(int index) const;
    QAction* CheckButton() const { return m_checkButton; }

protected:
    // Checks every picture, or unchecks every one when the picture clicked is checked.
    void listDoubleClicked(int row) override;
    void listFilled() override;
    void closeEvent(QCloseEvent* event) override;

private:
    void buildToolbars();
    void loadPlayButtons();
    void playButtonClicked(int index);
    void checkStateChanged();
    void updatePlayButton();
    bool anyChecked() const;
    void rowsDropped(int targetRow);
    void completeDrop();
    void playingChanged(bool playing);

    SlideshowSession* m_session = nullptr;
    QToolBar* m_checkBar = nullptr;
    QToolBar* m_playBar = nullptr;
    QAction* m_checkButton = nullptr;
    std::array<QAction*, 7> m_playButtons{};
    // Set while the program sets many check boxes, so Play is worked out once at the end.
    bool m_settingChecks = false;

    // The drop tmrListOleCoords completes once the drag is over: the dragged rows and the
    // row they were dropped on (invalid: below the last row).
    QList<QPersistentModelIndex> m_dragged;
    QPersistentModelIndex m_dropTarget;
    QTimer tmrListOleCoords;
};
