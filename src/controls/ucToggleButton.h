#pragma once

#include <QIcon>
#include <QToolButton>

// A two-state button: a click flips Value between released (false) and pressed (true), and
// the button stays drawn pressed while Value is true. Each state may show its own picture
// and tooltip, so the button can say what the next click will do.
class ucToggleButton : public QToolButton
{
    Q_OBJECT
    Q_PROPERTY(bool Value READ Value WRITE setValue NOTIFY ValueChanged)

public:
    explicit ucToggleButton(QWidget* parent = nullptr);

    bool Value() const { return isChecked(); }
    // Changes the state without counting as a click: ValueChanged is emitted, clicked is not.
    void setValue(bool pressed) { setChecked(pressed); }

    void setStateIcons(const QIcon& released, const QIcon& pressed);
    void setStateToolTips(const QString& released, const QString& pressed);

Q_SIGNALS:
    void ValueChanged(bool pressed);

private:
    void showState();

    QIcon m_icons[2];
    QString m_tips[2];
};
