#include "controls/ucToggleButton.h"

ucToggleButton::ucToggleButton(QWidget* parent) : QToolButton(parent)
{
    setCheckable(true);
    setAutoRaise(true);
    connect(this, &QAbstractButton::toggled, this, [this](bool pressed) {
        showState();
        emit ValueChanged(pressed);
    });
}

void ucToggleButton::setStateIcons(const QIcon& released, const QIcon& pressed)
{
    m_icons[0] = released;
    m_icons[1] = pressed;
    showState();
}

void ucToggleButton::setStateToolTips(const QString& released, const QString& pressed)
{
    m_tips[0] = released;
    m_tips[1] = pressed;
    showState();
}

void ucToggleButton::showState()
{
    const int state = isChecked() ? 1 : 0;
    // A state without its own picture or tip keeps whatever the button was given directly.
    if (!m_icons[state].isNull())
        setIcon(m_icons[state]);
    if (!m_tips[state].isEmpty())
        setToolTip(m_tips[state]);
}
