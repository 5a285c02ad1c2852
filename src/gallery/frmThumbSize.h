#pragma once

#include "controls/ucCoolButton.h"

#include <QDialog>
#include <QPointer>

class QCheckBox;
class QLabel;
class QSlider;

// "Thumbnail Size": the gallery's thumbnail scale, 1 to 10, and whether captions show under
// the thumbnails. OK stores both and has the gallery apply them through its SizeThumbs and
// RefreshMe(bool keepList) operations, called by name.
class frmThumbSize : public QDialog
{
    Q_OBJECT

public:
    // gallery: the window that applies the choice; it may go away while the dialog is open.
    explicit frmThumbSize(QObject* gallery, QWidget* parent = nullptr);

    void cmdOK_Click();

    QSlider* sldThumbSize = nullptr;
    QLabel* lblThumbsize = nullptr;
    QCheckBox* chkThumbSize = nullptr;
    ucCoolButton* cmdOK = nullptr;

private:
    void Form_Load();
    void CentreOnParent();
    void sldThumbSize_Change();
    void EnableOK();

    QPointer<QObject> m_gallery;
    // Holds the preview square, which may not grow past it.
    QWidget* m_previewRoom = nullptr;
    bool m_loading = false;
};
