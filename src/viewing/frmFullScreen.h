#pragma once

#include <QMainWindow>
#include <QPoint>
#include <QTimer>

class QPushButton;
class QLabel;
class ucImgPreview;
class ucSideBar;

// The current picture on a window that covers the screen, fitted by the picture pane's rules
// and decoded at the screen's size. A bar across the top names the picture; the close button
// can be dragged out of the way. Esc closes like the button.
class frmFullScreen : public QMainWindow
{
    Q_OBJECT
    Q_PROPERTY(QString ImageFile READ ImageFile WRITE setImageFile)
public:
    static inline const QString Section = QStringLiteral("frmFullScreen");

    explicit frmFullScreen(QWidget* parent = nullptr);
    ~frmFullScreen() override;

    QString ImageFile() const;
    void setImageFile(const QString& file);

    // Covers the screen and shows the current picture.
    void Load();
    // What the close button and Esc do: closes the picture window when it is the frame's
    // active child, gives the main window back and closes this window.
    Q_INVOKABLE void cmdClose_Click();

    ucImgPreview* Preview() const { return ucImage; }
    QPushButton* CloseButton() const { return cmdClose; }
    ucSideBar* SideBar() const { return m_sideBar; }
    QTimer tmrMoveButton;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void placeCloseButton();
    void showCaption();

    ucImgPreview* ucImage = nullptr;
    QPushButton* cmdClose = nullptr;
    ucSideBar* m_sideBar = nullptr;
    QLabel* m_caption = nullptr;
    QPoint m_pressOffset;
    QPoint m_pressAt;
    bool m_buttonPressed = false;
    bool m_buttonMoved = false;
    bool m_closing = false;
};
