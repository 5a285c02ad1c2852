#pragma once

#include "imaging/PictureEdits.h"

#include <QImage>
#include <QWidget>

class QLabel;
class QSpinBox;
class QAction;

// The workshop: simple edits of one picture (rotate, flip, resize) and saving the result
// under a new name as BMP, JPEG, PNG or TIFF. The original file is never replaced without
// the user's word.
class frmWorkshop : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool Edited READ Edited)

public:
    static inline const QString Section = QStringLiteral("frmWorkshop");

    explicit frmWorkshop(QWidget* parent = nullptr);

    // Loads the picture; false (with the reason shown in the window) when it cannot be read.
    bool OpenPicture(const QString& path);

    Q_INVOKABLE void RotateLeft() { edit(PictureEdits::Kind::RotateLeft); }
    Q_INVOKABLE void RotateRight() { edit(PictureEdits::Kind::RotateRight); }
    Q_INVOKABLE void FlipHorizontal() { edit(PictureEdits::Kind::FlipHorizontal); }
    Q_INVOKABLE void FlipVertical() { edit(PictureEdits::Kind::FlipVertical); }
    // Resizes to size as it stands; the dialog keeps the proportions when asked to.
    Q_INVOKABLE void ResizeTo(const QSize& size);
    // Asks for the new size, with the proportions kept unless the user unticks that.
    Q_INVOKABLE void ChooseSize();
    Q_INVOKABLE void UndoEdit();
    // Asks for a name and a format and saves the edited picture there. True when saved.
    Q_INVOKABLE bool SaveAs();
    // What the main window's Save does while there are edits.
    Q_INVOKABLE void SaveEdits() { SaveAs(); }

    bool Edited() const { return m_edited; }
    QString FileName() const { return m_path; }
    const PictureEdits& Edits() const { return m_edits; }
    QImage Result() const { return m_result; }
    int JpegQuality() const;
    void SetJpegQuality(int quality);

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void edit(PictureEdits::Kind kind);
    void changed();
    void showResult();

    QString m_path;
    QImage m_original;
    QImage m_result;
    PictureEdits m_edits;
    bool m_edited = false;

    QLabel* m_picture = nullptr;
    QLabel* m_info = nullptr;
    QSpinBox* m_quality = nullptr;
    QAction* m_undo = nullptr;
};
