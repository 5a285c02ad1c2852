#include "viewing/frmFullScreen.h"

#include "common/AppGlobals.h"
#include "common/Formats.h"
#include "common/Utilities.h"
#include "controls/ucSideBar.h"
#include "viewing/PictureWindows.h"
#include "viewing/ucImgPreview.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>

namespace {

// Heights of the bar across the top, in twips: rolled up to a strip, and rolled down.
constexpr int BarRolledUpTwips = 190;
constexpr int BarRolledDownTwips = 735;

} // namespace

frmFullScreen::frmFullScreen(QWidget* parent) : QMainWindow(parent)
{
    setObjectName(Section);
    setWindowTitle(QStringLiteral("Lumbra"));

    auto* frame = new QWidget(this);
    frame->setObjectName(QStringLiteral("picFrame"));
    QPalette black = frame->palette();
    black.setColor(QPalette::Window, Qt::black);
    frame->setPalette(black);
    frame->setAutoFillBackground(true);
    frame->installEventFilter(this);
    setCentralWidget(frame);

    ucImage = new ucImgPreview(frame);
    ucImage->setObjectName(QStringLiteral("ucImage"));
    // A double click here would open a window behind the full-screen view.
    ucImage->setNoDblClick(true);
    ucImage->hide();

    cmdClose = new QPushButton(QIcon(QStringLiteral(":/icons/close.svg")), QStringLiteral("Close"), frame);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    cmdClose->setToolTip(QStringLiteral("Close full screen (Esc or F11). Drag the button to move it."));
    cmdClose->setCursor(Qt::PointingHandCursor);
    cmdClose->installEventFilter(this);
    connect(cmdClose, &QPushButton::clicked, this, &frmFullScreen::cmdClose_Click);

    m_sideBar = new ucSideBar(0, Section, this);
    m_sideBar->Dock(ucSideBar::Top);
    m_sideBar->setRoll_SmallWidth(Formats::twipsToPixels(BarRolledUpTwips));
    m_caption = new QLabel;
    m_caption->setObjectName(QStringLiteral("lblCaption"));
    m_caption->setContentsMargins(8, 0, 8, 0);
    m_caption->setTextFormat(Qt::PlainText);
    m_sideBar->setContentWidget(m_caption);
    connect(m_sideBar, &ucSideBar::EndRolling, this, [this](bool rolledUp) {
        resizeDocks({m_sideBar}, {Formats::twipsToPixels(rolledUp ? BarRolledUpTwips : BarRolledDownTwips)},
                    Qt::Vertical);
    });
    resizeDocks({m_sideBar}, {Formats::twipsToPixels(BarRolledDownTwips)}, Qt::Vertical);

    tmrMoveButton.setSingleShot(true);
    tmrMoveButton.setInterval(100);
    connect(&tmrMoveButton, &QTimer::timeout, &tmrMoveButton, &QTimer::stop);
}

frmFullScreen::~frmFullScreen() = default;

QString frmFullScreen::ImageFile() const
{
    return ucImage->FileName();
}

void frmFullScreen::setImageFile(const QString& file)
{
    ucImage->setFileName(file);
    showCaption();
}

void frmFullScreen::Load()
{
    PictureWindows::KeepAbove(this);
    PictureWindows::ShowFullScreen(this);
    PictureWindows::KeepAbove(this);
    QCoreApplication::processEvents();
    ucImage->setFileName(Globals().CurrentPicture);
    ucImage->show();
    showCaption();
    placeCloseButton();
}

void frmFullScreen::showCaption()
{
    const QString file = ucImage->FileName();
    QString text = Utilities::FileNameOf(file);
    if (ucImage->ImgWidth() > 0)
        text += QStringLiteral("    %1 × %2 pixels").arg(ucImage->ImgWidth()).arg(ucImage->ImgHeight());
    m_caption->setText(text);
    m_caption->setToolTip(file);
}

void frmFullScreen::cmdClose_Click()
{
    if (m_closing)
        return;
    m_closing = true;
    PictureWindows::CloseActivePictureWindow();
    hide();
    QCoreApplication::processEvents();
    PictureWindows::PrepareMainForFullScreen(false);
    if (!Globals().option(Opt::OnTop))
        PictureWindows::KeepAbove(PictureWindows::MainWindow());
    QCoreApplication::processEvents();
    close();
}

void frmFullScreen::placeCloseButton()
{
    QWidget* frame = centralWidget();
    cmdClose->adjustSize();
    if (!cmdClose->property("moved").toBool()) {
        cmdClose->move(frame->width() - cmdClose->width() - 16, 16);
    } else {
        // A button the user placed stays on screen when the window changes size.
        const QPoint limit(qMax(0, frame->width() - cmdClose->width()), qMax(0, frame->height() - cmdClose->height()));
        cmdClose->move(qBound(0, cmdClose->x(), limit.x()), qBound(0, cmdClose->y(), limit.y()));
    }
    cmdClose->raise();
}

void frmFullScreen::keyPressEvent(QKeyEvent* event)
{
    // F11 brought the view up and takes it down again.
    if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_F11) {
        event->accept();
        cmdClose_Click();
        return;
    }
    QMainWindow::keyPressEvent(event);
}

bool frmFullScreen::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == centralWidget() && event->type() == QEvent::Resize) {
        ucImage->Resize(centralWidget()->width(), centralWidget()->height());
        placeCloseButton();
    } else if (watched == cmdClose) {
        switch (event->type()) {
        case QEvent::MouseButtonPress: {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            if (mouse->button() == Qt::LeftButton) {
                m_buttonPressed = true;
                m_buttonMoved = false;
                m_pressOffset = mouse->position().toPoint();
                m_pressAt = mouse->globalPosition().toPoint();
            }
            break;
        }
        case QEvent::MouseMove: {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            if (!m_buttonPressed)
                break;
            const QPoint global = mouse->globalPosition().toPoint();
            if (!m_buttonMoved && (global - m_pressAt).manhattanLength() >= QApplication::startDragDistance()) {
                m_buttonMoved = true;
                cmdClose->setDown(false);
            }
            if (m_buttonMoved) {
                tmrMoveButton.start();
                cmdClose->move(centralWidget()->mapFromGlobal(global) - m_pressOffset);
                return true;
            }
            break;
        }
        case QEvent::MouseButtonRelease: {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            m_buttonPressed = false;
            if (m_buttonMoved) {
                // The drag ends where the button was dropped, without closing.
                m_buttonMoved = false;
                cmdClose->move(centralWidget()->mapFromGlobal(mouse->globalPosition().toPoint()) - m_pressOffset);
                cmdClose->setProperty("moved", true);
                cmdClose->setDown(false);
                tmrMoveButton.stop();
                placeCloseButton();
                return true;
            }
            break;
        }
        default:
            break;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}
