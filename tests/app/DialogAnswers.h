#pragma once

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>
#include <QTimer>

#include <deque>

// Answers the message boxes that come up while it lives, in order: each one's title and text
// are kept, and it is answered with the next button given (closed when none is left).
class DialogAnswers
{
public:
    explicit DialogAnswers(std::deque<QMessageBox::StandardButton> buttons = {})
        : m_buttons(std::move(buttons))
    {
        QObject::connect(&m_poll, &QTimer::timeout, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box || box->property("answered").toBool())
                return;
            box->setProperty("answered", true);
            seen << box->windowTitle() + u'|' + box->text();
            if (m_buttons.empty()) {
                box->close();
                return;
            }
            const QMessageBox::StandardButton button = m_buttons.front();
            m_buttons.pop_front();
            if (QAbstractButton* answer = box->button(button))
                answer->click();
            else
                box->close();
        });
        m_poll.start(5);
    }

    // "title|text" of every box seen, in order.
    QStringList seen;

private:
    std::deque<QMessageBox::StandardButton> m_buttons;
    QTimer m_poll;
};
