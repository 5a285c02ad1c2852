#include "viewing/frmViewImage.h"

#include "common/AppGlobals.h"
#include "common/Formats.h"
#include "common/MdiPlacement.h"
#include "common/WindowKeys.h"
#include "viewing/frmImageProps.h"
#include "viewing/PictureWindows.h"
#include "viewing/PreviewLayout.h"
#include "viewing/ucImgPreview.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>

namespace {

// The room kept free beside the pane, in twips, so the picture never touches the frame.
constexpr int PaneMarginTwips = 10;

} // namespace

frmViewImage::frmViewImage(QWidget* parent) : QMainWindow(parent)
{
    setObjectName(Section);

    tlbMain = addToolBar(QStringLiteral("tlbMain"));
    tlbMain->setObjectName(QStringLiteral("tlbMain"));
    tlbMain->setMovable(false);
    tlbMain->setFloatable(false);
    tlbMain->setIconSize(QSize(20, 20));
    tlbMain->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    struct Button
    {
        const char* icon;
        QString tip;
        QString caption;
    };
    const Button buttons[] = {
        {":/icons/fit.svg", QStringLiteral("Toggle Fit to Form"), QStringLiteral("Resize")},
        {":/icons/props.svg", QStringLiteral("Pic Info"), QStringLiteral("Props")},
        {":/icons/magnify.svg", QStringLiteral("Magnify"), QStringLiteral("Mag")},
    };
    for (int i = 0; i < 3; ++i) {
        QAction* action = tlbMain->addAction(QIcon(QLatin1String(buttons[i].icon)), buttons[i].caption);
        action->setToolTip(buttons[i].tip);
        action->setObjectName(QStringLiteral("tlbMain(%1)").arg(i + 1));
        if (i < 2)
            connect(action, &QAction::triggered, this, [this, i] { tlbMain_ButtonClick(i + 1); });
    }
    // Fit on the keyboard; Props is File > Properties (Alt+Return), which describes the
    // picture of the window last turned to.
    QAction* fit = tlbMain->findChild<QAction*>(QStringLiteral("tlbMain(1)"));
    WindowKeys::Give(this, fit, QKeySequence(Qt::Key_F));
    // The window takes the focus when the user turns to it, so its key works.
    setFocusPolicy(Qt::StrongFocus);
    // The magnification list is offered as it always was; choosing an entry changes nothing.
    auto* magnify = new QMenu(this);
    magnify->setObjectName(QStringLiteral("mnuMagnify"));
    for (const char* entry : {"&Normal", "&2X", "&5X", "&10X", "2&0X", "&40X", "&75X", "&100X"})
        magnify->addAction(QLatin1String(entry));
    QAction* magnifyAction = tlbMain->findChild<QAction*>(QStringLiteral("tlbMain(3)"));
    magnifyAction->setMenu(magnify);
    if (auto* button = qobject_cast<QToolButton*>(tlbMain->widgetForAction(magnifyAction)))
        button->setPopupMode(QToolButton::InstantPopup);

    auto* frame = new QWidget(this);
    frame->setObjectName(QStringLiteral("picFrame"));
    frame->setAutoFillBackground(true);
    frame->installEventFilter(this);
    setCentralWidget(frame);
    ucImage = new ucImgPreview(frame);
    ucImage->setObjectName(QStringLiteral("ucImage"));
    ucImage->hide();
}

frmViewImage::~frmViewImage()
{
    if (!m_closed)
        PictureWindows::Forget(m_file);
}

QWidget* frmViewImage::frameWindow()
{
    if (auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget()))
        return sub;
    return this;
}

void frmViewImage::Load()
{
    m_sizing = true;

    QPalette colours = centralWidget()->palette();
    colours.setColor(QPalette::Window, Formats::colorFromBgr(Globals().MyColor));
    centralWidget()->setPalette(colours);

    ucImage->setFileName(m_file);
    ucImage->show();

    // Placement: a window shaped like the picture, at most three quarters of the frame.
    QWidget* frame = frameWindow();
    if (auto* sub = qobject_cast<QMdiSubWindow*>(frame); sub && sub->mdiArea()) {
        sub->ensurePolished();
        const QMargins margins = sub->contentsMargins();
        const QSize chrome(margins.left() + margins.right(),
                           margins.top() + margins.bottom() + tlbMain->sizeHint().height());
        const QSize room = sub->mdiArea()->viewport()->size() * 3 / 4 - chrome;
        QSize pane = room;
        if (ucImage->ImgWidth() > 0 && ucImage->ImgHeight() > 0)
            pane = PreviewLayout::FitSize(QSizeF(ucImage->ImgWidth(), ucImage->ImgHeight()), QSizeF(room))
                       .toSize()
                       .expandedTo(QSize(320, 240))
                       .boundedTo(room);
        sub->resize(pane + chrome);
    }

    setWindowTitle(m_file);
    // Shown first so the layout has given the pane's area its size; nothing is painted
    // before the picture is fitted.
    frame->show();
    show();
    MdiPlacement::KeepInsideArea(qobject_cast<QMdiSubWindow*>(frame));
    FitPictureToWindow();
    m_sizing = false;
}

void frmViewImage::FitPictureToWindow()
{
    const QSize inner = centralWidget()->size();
    ucImage->Resize(inner.width() - Formats::twipsToPixels(PaneMarginTwips), inner.height());
}

void frmViewImage::SizeWindowToPicture()
{
    // Deliberately left on: a window sized to its picture keeps the picture as it is when the
    // user drags the border afterwards.
    m_sizing = true;
    QWidget* frame = frameWindow();
    const QSize chrome = frame->size() - centralWidget()->size();
    frame->resize(ucImage->size() + QSize(Formats::twipsToPixels(PaneMarginTwips), 0) + chrome);
}

void frmViewImage::tlbMain_ButtonClick(int index)
{
    switch (index) {
    case 1:
        if (m_fitToggle)
            SizeWindowToPicture();
        else
            FitPictureToWindow();
        m_fitToggle = !m_fitToggle;
        break;
    case 2:
        QCoreApplication::processEvents();
        // Properties describe this window's picture.
        Globals().CurrentPicture = m_file;
        frmImageProps::ShowCurrent(window());
        break;
    default:
        break;
    }
}

void frmViewImage::SetStretch(bool stretch)
{
    if (ucImage->StretchMode() == stretch)
        return;
    ucImage->setStretchMode(stretch);
    ucImage->setFileName(ucImage->FileName());
}

bool frmViewImage::eventFilter(QObject* watched, QEvent* event)
{
    // The pane follows the window's area, which is known once the frame widget has its size.
    if (watched == centralWidget() && event->type() == QEvent::Resize && !m_sizing)
        FitPictureToWindow();
    return QMainWindow::eventFilter(watched, event);
}

void frmViewImage::closeEvent(QCloseEvent* event)
{
    m_sizing = true;
    if (!m_closed) {
        m_closed = true;
        PictureWindows::Forget(m_file);
    }
    QMainWindow::closeEvent(event);
}
