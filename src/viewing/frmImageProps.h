#pragma once

#include "viewing/ImagePropsText.h"

#include <QDialog>

#include <array>

class QLabel;
class QPushButton;
class ucImgPreview;

// "Image Properties": the current picture's name, folder, size on disk, size in pixels and
// the time and date of the file, beside a small preview. One is open at a time; it fades in
// when it opens and out when OK is pressed.
class frmImageProps : public QDialog
{
    Q_OBJECT

public:
    explicit frmImageProps(QWidget* parent = nullptr);

    // Opens the dialog on the current picture, or turns the open one to it. Without a current
    // picture nothing opens. parent defaults to the main window. The result is null when the
    // dialog was closed while it faded in.
    static frmImageProps* ShowCurrent(QWidget* parent = nullptr);
    // The dialog while it is open.
    static frmImageProps* Current();

    // Fills the dialog while it is still see-through, then fades it in.
    void Form_Load();
    // Describes the current picture. A picture that is gone leaves every line after the first
    // failed read empty.
    void FillLabels();
    void cmdOK_Click();

    QLabel* lblCaption = nullptr;
    std::array<QLabel*, ImagePropsText::LineCount> lblInfo{};
    std::array<QLabel*, ImagePropsText::LineCount> lblProps{};
    ucImgPreview* ucImage = nullptr;
    QPushButton* cmdOK = nullptr;

private:
    bool m_closing = false;
};
