#include "controls/ucCoolButton.h"

#include "common/AppGlobals.h"
#include "common/Formats.h"

#include <QEnterEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#ifdef LUMBRA_HAVE_MULTIMEDIA
#include <QApplication>
#include <QAudioDevice>
#include <QMediaDevices>
#include <QSoundEffect>
#endif

ucCoolButton::ucCoolButton(const QString& text, QWidget* parent) : QPushButton(text, parent)
{
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    connect(this, &QAbstractButton::clicked, this, &ucCoolButton::playClick);
}

bool ucCoolButton::ClickSoundAvailable()
{
#ifdef LUMBRA_HAVE_MULTIMEDIA
    return !QMediaDevices::audioOutputs().isEmpty();
#else
    return false;
#endif
}

void ucCoolButton::playClick() const
{
#ifdef LUMBRA_HAVE_MULTIMEDIA
    if (!m_clickSound || !ClickSoundAvailable())
        return;
    // One effect for every button, loaded at the first click and kept for the run.
    static QSoundEffect* effect = [] {
        auto* sound = new QSoundEffect(qApp);
        sound->setSource(QUrl(QStringLiteral("qrc:/sounds/click.wav")));
        sound->setVolume(0.35f);
        return sound;
    }();
    effect->play();
#endif
}

QSize ucCoolButton::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    int width = metrics.horizontalAdvance(text()) + 28;
    if (!icon().isNull())
        width += iconSize().width() + 6;
    return {qMax(width, 80), qMax(metrics.height(), iconSize().height()) + 12};
}

void ucCoolButton::setFaceColor(const QColor& color)
{
    m_face = color;
    update();
}

QColor ucCoolButton::faceColor() const
{
    return m_face.isValid() ? m_face : Formats::colorFromBgr(Globals().MyColor);
}

void ucCoolButton::enterEvent(QEnterEvent* event)
{
    m_hot = true;
    update();
    QPushButton::enterEvent(event);
}

void ucCoolButton::leaveEvent(QEvent* event)
{
    m_hot = false;
    update();
    QPushButton::leaveEvent(event);
}

void ucCoolButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    const bool sunk = isDown() || isChecked();
    QColor face = faceColor();
    if (!isEnabled())
        face = QColor::fromHsv(face.hue(), face.saturation() / 4, face.value());
    else if (m_hot && !sunk)
        face = face.lighter(108);

    const QRectF box = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    QPainterPath shape;
    shape.addRoundedRect(box, 5, 5);
    QLinearGradient shade(box.topLeft(), box.bottomLeft());
    shade.setColorAt(0, sunk ? face.darker(112) : face.lighter(125));
    shade.setColorAt(1, sunk ? face.lighter(105) : face.darker(112));
    painter.fillPath(shape, shade);

    const QColor edge = palette().color(QPalette::Shadow);
    painter.setPen(QPen(edge, isDefault() && isEnabled() ? 2.0 : 1.0));
    painter.drawPath(shape);

    if (hasFocus()) {
        QPen ring(palette().color(QPalette::Highlight), 1, Qt::DotLine);
        painter.setPen(ring);
        painter.drawRoundedRect(box.adjusted(3, 3, -3, -3), 3, 3);
    }

    // The face moves down and right by a pixel while pressed, as a real key would.
    QRect inner = rect().adjusted(6, 4, -6, -4);
    if (sunk)
        inner.translate(1, 1);
    // The text stays readable whatever accent colour the user chose.
    QColor ink = face.lightnessF() < 0.5 ? QColor(Qt::white) : QColor(Qt::black);
    if (!isEnabled())
        ink.setAlphaF(0.45);
    if (!icon().isNull()) {
        const QSize size = iconSize();
        const int textWidth = text().isEmpty() ? 0 : fontMetrics().horizontalAdvance(text()) + 6;
        const int left = inner.center().x() - (size.width() + textWidth) / 2;
        const QRect iconBox(QPoint(left, inner.center().y() - size.height() / 2), size);
        icon().paint(&painter, iconBox, Qt::AlignCenter,
                     isEnabled() ? QIcon::Normal : QIcon::Disabled);
        inner.setLeft(iconBox.right() + 6);
        painter.setPen(ink);
        painter.drawText(inner, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic, text());
        return;
    }
    painter.setPen(ink);
    painter.drawText(inner, Qt::AlignCenter | Qt::TextShowMnemonic, text());
}
