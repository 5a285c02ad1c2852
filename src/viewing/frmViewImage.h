#pragma once

#include <QMainWindow>

class QToolBar;
class ucImgPreview;

// A window inside the main frame that shows one picture file, with a small toolbar: fit the
// picture to the window or the window to the picture, the picture's properties, and the
// magnification list.
class frmViewImage : public QMainWindow
{
    Q_OBJECT
public:
    static inline const QString Section = QStringLiteral("frmViewImage");

    explicit frmViewImage(QWidget* parent = nullptr);
    ~frmViewImage() override;

    QString File() const { return m_file; }
    void setFile(const QString& path) { m_file = path; }
    // Shows the file, fitted to the window, with the path as the caption.
    void Load();

    // Lays the picture out anew in the window's area.
    void FitPictureToWindow();
    // Sizes the window around the picture pane. From then on resizing the window by hand
    // leaves the picture as it is; the toolbar's first button still fits it.
    void SizeWindowToPicture();
    // The toolbar's buttons by index from 1.
    Q_INVOKABLE void tlbMain_ButtonClick(int index);

    // The stretch choice of the picture menu: takes effect on the picture shown.
    Q_INVOKABLE void SetStretch(bool stretch);

    ucImgPreview* Preview() const { return ucImage; }
    QToolBar* Toolbar() const { return tlbMain; }
    bool Sizing() const { return m_sizing; }
    bool FitToggle() const { return m_fitToggle; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // The window that is moved and sized: the frame's sub-window around us, or ourselves.
    QWidget* frameWindow();

    ucImgPreview* ucImage = nullptr;
    QToolBar* tlbMain = nullptr;
    QString m_file;
    bool m_sizing = false;
    bool m_fitToggle = false;
    bool m_closed = false;
};
