#include "app/frmGoodbye.h"

#include "common/AppGlobals.h"
#include "common/Formats.h"
#include "common/modTransparency.h"
#include "common/Utilities.h"

#include <QCursor>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QScreen>

#include <memory>

frmGoodbye::frmGoodbye()
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
{
    // Never counts as the last window: the program decides itself when it ends.
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowTitle(QStringLiteral("Lumbra - Goodbye"));

    const QColor accent = Formats::colorFromBgr(Globals().MyColor);
    QPalette colours;
    colours.setColor(QPalette::Window, accent);
    colours.setColor(QPalette::WindowText,
                     accent.lightness() < 128 ? QColor(Qt::white) : QColor(0x1f, 0x3b, 0x2a));
    setPalette(colours);
    setAutoFillBackground(true);
    setFixedSize(380, 110);

    auto* icon = new QLabel(this);
    icon->setPixmap(QIcon(QStringLiteral(":/icons/lumbra.svg")).pixmap(56, 56));
    auto* words = new QLabel(tr("Thanks for using Lumbra!  Goodbye."), this);
    QFont font = words->font();
    font.setPointSizeF(font.pointSizeF() * 1.3);
    font.setBold(true);
    words->setFont(font);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(22, 12, 22, 12);
    layout->setSpacing(16);
    layout->addWidget(icon);
    layout->addWidget(words, 1);
}

void frmGoodbye::ShowBriefly(int milliseconds)
{
    // Owned here and deleted on return, so no window outlives the call.
    const std::unique_ptr<frmGoodbye> window(new frmGoodbye);
    QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (screen) {
        QRect frame = window->frameGeometry();
        frame.moveCenter(screen->availableGeometry().center());
        window->move(frame.topLeft());
    }
    modTransparency::FadeWindow(window.get(), true);
    int wait = qMax(0, milliseconds);
    Utilities::Pause(wait, true);
    modTransparency::FadeWindow(window.get(), false);
    // Hidden rather than closed, so that no "last window closed" reaches the application.
    window->hide();
}

void frmGoodbye::paintEvent(QPaintEvent* event)
{
    QWidget::paintEvent(event);
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Window).darker(170));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
