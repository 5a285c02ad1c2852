#pragma once

#include <QDialog>
#include <QRandomGenerator>
#include <QStringList>

#include <array>

class QCheckBox;
class QLabel;
class QPushButton;
class QScrollArea;
class QScrollBar;

// The tip of the day: one hint at a time from "TIPOFDAY.TXT" in the program folder under
// "Did you know...", another at random on request, tips of the user's own added to the file,
// and the choice whether the window opens at start-up. It is modeless.
class frmTip : public QDialog
{
    Q_OBJECT

public:
    explicit frmTip(QWidget* parent = nullptr);

    // Shows the one tip window, opening it over parent when none is open.
    static frmTip* Open(QWidget* parent);

    // Shows another tip: at random (never the one shown now) or the next in the file.
    void ShowTip(bool random);
    // Adds a tip to the file; an empty text asks for it first. The new tip is shown at once.
    void AddTip(const QString& text = {});
    // 0 another tip, 1 add a tip, 2 close.
    void cmdTips_Click(int index);

    int TipCount() const { return int(m_tips.size()); }
    int CurrentTip() const { return m_current; }
    QString TipFile() const { return m_path; }

    QLabel* lblTipText = nullptr;
    QScrollArea* picTip = nullptr;
    // picTip's own vertical scroll bar, shown for long tips.
    QScrollBar* sbTip = nullptr;
    QCheckBox* chkTips = nullptr;
    std::array<QPushButton*, 3> cmdTips{};

private:
    void Form_Load();
    void LoadTips();
    void chkTips_Click();
    void ShowText(const QString& text);

    QStringList m_tips;
    QString m_path;
    QRandomGenerator m_random;
    int m_current = 0;
    bool m_loading = false;
};
