#include "app/frmSplash.h"

#include "common/AppGlobals.h"
#include "common/Formats.h"
#include "common/modTransparency.h"

#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

namespace {

// Text stays readable whatever accent colour the user chose.
QPalette accentPalette()
{
    const QColor accent = Formats::colorFromBgr(Globals().MyColor);
    QPalette palette;
    palette.setColor(QPalette::Window, accent);
    palette.setColor(QPalette::WindowText,
                     accent.lightness() < 128 ? QColor(Qt::white) : QColor(0x1f, 0x3b, 0x2a));
    return palette;
}

void centreOnScreen(QWidget* window)
{
    QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    QRect frame = window->frameGeometry();
    frame.moveCenter(screen->availableGeometry().center());
    window->move(frame.topLeft());
}

} // namespace

frmSplash::frmSplash(bool atStartUp, QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      m_atStartUp(atStartUp), tmrHold(new QTimer(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    // The main window may not be up yet (or may be in the tray): closing the splash must not
    // end the program.
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(QStringLiteral("Lumbra - Welcome"));
    setPalette(accentPalette());
    setAutoFillBackground(true);
    setCursor(Qt::PointingHandCursor);
    setFixedSize(440, 230);

    auto* icon = new QLabel(this);
    icon->setPixmap(QIcon(QStringLiteral(":/icons/lumbra.svg")).pixmap(112, 112));

    auto* name = new QLabel(QStringLiteral("Lumbra"), this);
    QFont nameFont = name->font();
    nameFont.setPointSizeF(nameFont.pointSizeF() * 2.6);
    nameFont.setBold(true);
    name->setFont(nameFont);

    auto* version = new QLabel(tr("Version %1").arg(QStringLiteral(LUMBRA_VERSION)), this);
    auto* motto = new QLabel(tr("Your pictures, organised."), this);
    QFont mottoFont = motto->font();
    mottoFont.setItalic(true);
    mottoFont.setPointSizeF(mottoFont.pointSizeF() * 1.2);
    motto->setFont(mottoFont);

    auto* words = new QVBoxLayout;
    words->addStretch();
    words->addWidget(name);
    words->addWidget(version);
    words->addSpacing(18);
    words->addWidget(motto);
    words->addStretch();

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(28, 20, 28, 20);
    layout->setSpacing(24);
    layout->addWidget(icon);
    layout->addLayout(words, 1);

    tmrHold->setSingleShot(true);
    tmrHold->setInterval(HoldMilliseconds);
    connect(tmrHold, &QTimer::timeout, this, &frmSplash::EndHold);
}

void frmSplash::Start()
{
    if (m_stage != Stage::Waiting)
        return;
    centreOnScreen(this);
    if (m_atStartUp) {
        m_stage = Stage::FadingIn;
        // The fade lets events run: the window may be closed, or even deleted, meanwhile.
        QPointer<frmSplash> self(this);
        modTransparency::FadeWindow(this, true);
        if (!self || m_stage != Stage::FadingIn)
            return;
    } else {
        show();
        raise();
    }
    m_stage = Stage::Holding;
    if (m_endEarly)
        EndHold();
    else
        tmrHold->start();
}

void frmSplash::EndHold()
{
    if (m_stage != Stage::Holding)
        return;
    m_stage = Stage::FadingOut;
    tmrHold->stop();
    QPointer<frmSplash> self(this);
    if (m_atStartUp)
        modTransparency::FadeWindow(this, false);
    if (self && m_stage == Stage::FadingOut)
        close();
}

void frmSplash::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    if (m_stage == Stage::FadingIn)
        m_endEarly = true;
    else
        EndHold();
}

void frmSplash::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Escape) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (m_stage == Stage::FadingIn)
        m_endEarly = true;
    else
        EndHold();
}

void frmSplash::closeEvent(QCloseEvent* event)
{
    // Whoever closes the window, the program goes on to its main window exactly once.
    tmrHold->stop();
    const bool first = m_stage != Stage::Done;
    m_stage = Stage::Done;
    if (first)
        emit Finished();
    QWidget::closeEvent(event);
}

void frmSplash::paintEvent(QPaintEvent* event)
{
    QWidget::paintEvent(event);
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Window).darker(170));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
