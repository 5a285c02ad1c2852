#pragma once

#include <QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QFrame;
class QLineEdit;
class QPushButton;
class QRadioButton;

// "Print Image - Page Setup": orientation, original size or stretched, centring, paper source
// and copies for printing pictures. It opens on the choices last accepted in this run and OK
// stores them in PageSetup::Current(); closing it any other way changes nothing.
class frmPageSetup : public QDialog
{
    Q_OBJECT

public:
    explicit frmPageSetup(QWidget* parent = nullptr);

    // File > Page Setup: the dialog, modal over parent. True when it was closed with OK.
    static bool ShowDialog(QWidget* parent);

    void cmdOK_Click();

    // 0 "&Landscape", 1 "&Portrait".
    std::array<QRadioButton*, 2> opLayout{};
    // 0 "Original", 1 "&Stretch to Fit".
    std::array<QRadioButton*, 2> opAspect{};
    QCheckBox* chkCenter = nullptr;
    QComboBox* cboSource = nullptr;
    QLineEdit* txtCopies = nullptr;
    // The small page drawn beside the orientation buttons.
    QFrame* shaLayout = nullptr;
    QPushButton* cmdOK = nullptr;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Form_Load();
    void opLayout_Click(int index);
};
