#pragma once

#include <QTimer>
#include <QWidget>

#include <array>

class QLabel;
class QProgressBar;
class QPushButton;

// The main window's status strip: a caption and the picture count, which give way to a
// progress bar with a "Cancel" button while a long load runs. The load polls
// Globals().Cancel, which the button sets for 1200 ms.
class ucCoolProg : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(qint64 Value READ Value WRITE setValue)
    Q_PROPERTY(qint64 Max READ Max WRITE setMax)

public:
    // The pictures of imgFolder, by index.
    enum FolderPicture
    {
        FolderClosed = 0,
        FolderOpen = 1,
        FolderPictures = 2,
        FolderUp = 3
    };

    explicit ucCoolProg(QWidget* parent = nullptr);

    // The position last written; a value at or past the total ends the progress display.
    qint64 Value() const { return m_value; }
    void setValue(qint64 value);
    // The total: shows the progress display when above 0 and puts the count in panel 2.
    qint64 Max() const { return m_max; }
    void setMax(qint64 total);
    // Shows imgFolder(index), 0 to 3, and hides the other three.
    void setFolderImage(int index);
    // The text of panel 1.
    void setCaption(const QString& text);

    // Panel 1 (caption) or 2 (picture count).
    QLabel* Panel(int index) const;
    // When the current run started, as text; empty before the first run.
    QString StartTime() const;
    // The user's cancel request: raises Globals().Cancel for the length of tmrUserCancel.
    void cmdCancel_Press();

    QProgressBar* progCool = nullptr;
    QWidget* picProgress = nullptr;
    QLabel* lblProgress = nullptr;
    QPushButton* cmdCancel = nullptr;
    std::array<QLabel*, 4> imgFolder{};
    QTimer tmrUserCancel;

private:
    void ShowProgress(qint64 max);
    void tmrUserCancel_Timer();

    QLabel* m_caption = nullptr;
    QLabel* m_count = nullptr;
    qint64 m_max = 0;
    qint64 m_value = 0;
    // The step of the bar last drawn, in thousandths of the total.
    qint64 m_shownStep = 0;
};
