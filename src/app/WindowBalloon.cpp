#include "app/WindowBalloon.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

WindowBalloon::WindowBalloon(QWidget* window) : QFrame(window)
{
    setObjectName(QStringLiteral("WindowBalloon"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    m_title = new QLabel(this);
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_text = new QLabel(this);
    m_text->setWordWrap(true);
    for (QLabel* label : {m_title, m_text})
        label->setForegroundRole(QPalette::ToolTipText);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_title);
    layout->addWidget(m_text);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &QWidget::hide);
    window->installEventFilter(this);
    hide();
}

void WindowBalloon::ShowMessage(const QString& title, const QString& text, int milliseconds)
{
    m_title->setText(title);
    m_text->setText(QString(text).replace(u'\r', u'\n'));
    place();
    show();
    raise();
    m_timer.start(milliseconds);
}

void WindowBalloon::place()
{
    const QWidget* window = parentWidget();
    const int width = qMin(360, window->width() - 24);
    setFixedWidth(qMax(width, 120));
    adjustSize();
    move(window->width() - this->width() - 12, window->height() - height() - 36);
}

bool WindowBalloon::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible())
        place();
    return QFrame::eventFilter(watched, event);
}

void WindowBalloon::mousePressEvent(QMouseEvent* event)
{
    Q_UNUSED(event);
    hide();
}
