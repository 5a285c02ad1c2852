#pragma once

#include "app/FileChooser.h"

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

// Answers the file dialogs asked for while it lives, in order, with the files given (none, as
// when cancelled, once the list runs out); every request is kept.
class FileAnswers
{
public:
    explicit FileAnswers(QList<QStringList> choices = {})
    {
        FileChooser::SetAnswer([this, choices](const FileChooser::Request& request) mutable {
            asked.append(request);
            return choices.isEmpty() ? QStringList() : choices.takeFirst();
        });
    }
    ~FileAnswers() { FileChooser::SetAnswer({}); }
    FileAnswers(const FileAnswers&) = delete;
    FileAnswers& operator=(const FileAnswers&) = delete;

    QList<FileChooser::Request> asked;
};
