#include "controls/ucSmiley_Wink.h"

#include <QPainter>
#include <QPainterPath>

namespace {

// Frames of one wink: closing, held shut, opening.
constexpr int HoldSteps = 3;
constexpr int WinkSteps = (ucSmiley_Wink::Frames - 1) * 2 + HoldSteps;
constexpr int TickMs = 45;

} // namespace

ucSmiley_Wink::ucSmiley_Wink(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("ucSmiley_Wink"));
    setAttribute(Qt::WA_TranslucentBackground);
    m_pause.setSingleShot(true);
    m_pause.setInterval(3500);
    m_tick.setInterval(TickMs);
    connect(&m_pause, &QTimer::timeout, this, &ucSmiley_Wink::Wink);
    connect(&m_tick, &QTimer::timeout, this, &ucSmiley_Wink::advance);
}

void ucSmiley_Wink::Wink()
{
    if (m_step > 0)
        return;
    m_pause.stop();
    m_step = WinkSteps;
    m_tick.start();
    advance();
}

void ucSmiley_Wink::advance()
{
    const int done = WinkSteps - m_step; // steps taken so far
    const int shut = Frames - 1;
    if (done < shut)
        m_frame = done + 1;
    else if (done < shut + HoldSteps)
        m_frame = shut;
    else
        m_frame = qMax(0, shut - (done - shut - HoldSteps) - 1);
    update();
    if (--m_step > 0)
        return;
    m_tick.stop();
    m_step = 0;
    m_frame = 0;
    update();
    if (isVisible())
        m_pause.start();
    emit WinkFinished();
}

void ucSmiley_Wink::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (m_step == 0)
        m_pause.start();
}

void ucSmiley_Wink::hideEvent(QHideEvent* event)
{
    m_pause.stop();
    QWidget::hideEvent(event);
}

void ucSmiley_Wink::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal side = qMin(width(), height()) - 2.0;
    painter.translate((width() - side) / 2.0, (height() - side) / 2.0);
    painter.scale(side / 100.0, side / 100.0);

    // Face
    QRadialGradient shine(QPointF(38, 32), 70);
    shine.setColorAt(0, QColor(255, 244, 140));
    shine.setColorAt(1, QColor(240, 190, 20));
    painter.setPen(QPen(QColor(150, 100, 0), 3));
    painter.setBrush(shine);
    painter.drawEllipse(QRectF(2, 2, 96, 96));

    const QColor ink(60, 40, 10);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawEllipse(QRectF(28, 28, 12, 18));

    // The winking eye flattens from an oval to a closed lid.
    const qreal open = 1.0 - qreal(m_frame) / (Frames - 1);
    if (open > 0.05) {
        const qreal height = 18 * open;
        painter.drawEllipse(QRectF(60, 37 - height / 2, 12, height));
    } else {
        painter.setPen(QPen(ink, 4, Qt::SolidLine, Qt::RoundCap));
        painter.setBrush(Qt::NoBrush);
        painter.drawArc(QRectF(57, 30, 18, 14), 200 * 16, 140 * 16);
    }

    QPainterPath smile;
    smile.moveTo(26, 62);
    smile.quadTo(50, 86 + 4 * (1 - open), 74, 60);
    painter.setPen(QPen(ink, 5, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(smile);
}
