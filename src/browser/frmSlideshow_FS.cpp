#include "browser/frmSlideshow_FS.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "browser/SlideDecoder.h"
#include "browser/SlideshowHost.h"
#include "browser/SlideshowPlayer.h"
#include "common/Formats.h"
#include "common/Utilities.h"
#include "viewing/PictureWindows.h"
#include "viewing/ucImgPreview.h"

#include <QApplication>
#include <QColorDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QSlider>
#include <QStyle>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

QIcon swatch(const QColor& colour)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setPen(Qt::darkGray);
    painter.setBrush(colour);
    painter.drawRect(pixmap.rect().adjusted(1, 1, -2, -2));
    return QIcon(pixmap);
}

QString intervalText(int seconds)
{
    return QString::number(seconds) + QStringLiteral(" second interval");
}

} // namespace

frmSlideshow_FS::ColorChooser& frmSlideshow_FS::ChooseColor()
{
    static ColorChooser chooser = [](QWidget* parent, const QColor& current) {
        return QColorDialog::getColor(current, parent, QStringLiteral("Choose background color:"));
    };
    return chooser;
}

frmSlideshow_FS::frmSlideshow_FS(SlideshowHost* host, QWidget* parent)
    : QWidget(parent, Qt::Window), m_host(host)
{
    setObjectName(Section);
    setWindowTitle(QStringLiteral("Slide Show"));
    setAttribute(Qt::WA_DeleteOnClose);
    setFocusPolicy(Qt::StrongFocus);
    setAutoFillBackground(true);

    ucSlide = new ucImgPreview(this);
    ucSlide->setObjectName(QStringLiteral("ucSlide"));
    ucSlide->setAutoFillBackground(true);
    // A double click would open a picture window behind the show, and the magnifier pointer
    // means nothing here.
    ucSlide->setNoDblClick(true);
    m_ahead = new SlideDecoder(ucSlide, this);

    picPlay = new QWidget(this);
    picPlay->setObjectName(QStringLiteral("picPlay"));
    // The panel keeps the desktop's colours whatever the slides' background, so it stays legible.
    QPalette panel = QApplication::palette();
    panel.setColor(QPalette::Window, panel.color(QPalette::Window));
    panel.setColor(QPalette::WindowText, panel.color(QPalette::WindowText));
    picPlay->setPalette(panel);
    picPlay->setAutoFillBackground(true);

    lblCaption = new QLabel(picPlay);
    lblCaption->setObjectName(QStringLiteral("lblCaption"));
    lblCaption->setTextFormat(Qt::PlainText);

    tlbPlay = new QToolBar(picPlay);
    tlbPlay->setObjectName(QStringLiteral("tlbPlay"));
    tlbPlay->setFocusPolicy(Qt::NoFocus);
    const auto button = [this](QStyle::StandardPixmap icon, const QString& text, int index) {
        QAction* action = tlbPlay->addAction(style()->standardIcon(icon), text);
        action->setObjectName(QStringLiteral("tlbPlay_%1").arg(index));
        return action;
    };
    connect(button(QStyle::SP_MediaStop, QStringLiteral("Stop"), 1), &QAction::triggered, this,
            [this] { tlbPlay_ButtonClick(1); });
    m_pause = button(QStyle::SP_MediaPause, QStringLiteral("Pause"), 2);
    m_pause->setCheckable(true);
    connect(m_pause, &QAction::toggled, this, &frmSlideshow_FS::pauseToggled);
    connect(button(QStyle::SP_MediaSkipBackward, QStringLiteral("Previous Slide"), 3),
            &QAction::triggered, this, [this] { tlbPlay_ButtonClick(3); });
    connect(button(QStyle::SP_MediaSkipForward, QStringLiteral("Next Slide"), 4),
            &QAction::triggered, this, [this] { tlbPlay_ButtonClick(4); });
    m_colourButton = tlbPlay->addAction(QStringLiteral("Select background color"));
    m_colourButton->setObjectName(QStringLiteral("tlbPlay_5"));
    connect(m_colourButton, &QAction::triggered, this, [this] { tlbPlay_ButtonClick(5); });
    for (QWidget* widget : tlbPlay->findChildren<QWidget*>())
        widget->setFocusPolicy(Qt::NoFocus);

    sldrInterval = new QSlider(Qt::Horizontal, picPlay);
    sldrInterval->setObjectName(QStringLiteral("sldrInterval"));
    sldrInterval->setRange(0, SlideshowPlayer::SliderPositions - 1);
    sldrInterval->setPageStep(1);
    sldrInterval->setTickPosition(QSlider::TicksBelow);
    sldrInterval->setFixedWidth(140);
    // The arrow keys belong to the slides.
    sldrInterval->setFocusPolicy(Qt::NoFocus);
    lblInterval = new QLabel(picPlay);
    lblInterval->setObjectName(QStringLiteral("lblInterval"));

    auto* panelRow = new QHBoxLayout(picPlay);
    panelRow->setContentsMargins(8, 2, 8, 2);
    panelRow->addWidget(lblCaption, 1);
    panelRow->addWidget(tlbPlay);
    panelRow->addSpacing(12);
    panelRow->addWidget(sldrInterval);
    panelRow->addWidget(lblInterval);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(ucSlide, 1);
    column->addWidget(picPlay);

    // The stored seconds go to the slider as its position; a value beyond its last position
    // leaves the slider where it was. Placing it does not count as the user moving it.
    const SettingsStore& settings = SettingsStore::global();
    int seconds = 2;
    settings.readInto(Keys::Timer_DelayRead, seconds);
    if (seconds >= sldrInterval->minimum() && seconds <= sldrInterval->maximum())
        sldrInterval->setValue(seconds);
    // The label tells the pace the show runs at, which is the stored value, not the position,
    // as the show reads it: a hand-edited zero or less runs at the default.
    lblInterval->setText(intervalText(SlideshowPlayer::IntervalMs(settings) / 1000));
    connect(sldrInterval, &QSlider::valueChanged, this, &frmSlideshow_FS::sldrInterval_Change);

    qint64 bgr = 16777215;
    settings.readInto(Keys::BkColor, bgr);
    applyBackground(Formats::colorFromBgr(bgr));

    tmrKeyResponse.setObjectName(QStringLiteral("tmrKeyResponse"));
    tmrKeyResponse.setSingleShot(true);
    tmrKeyResponse.setInterval(KeyLockMs);
    connect(&tmrKeyResponse, &QTimer::timeout, this, [this] { m_keyLock = false; });
}

frmSlideshow_FS::~frmSlideshow_FS() = default;

void frmSlideshow_FS::Load()
{
    PictureWindows::ShowFullScreen(this);
    PictureWindows::KeepAbove(this);
    // The first slide is decoded for the size it is shown at, so the layout has to be done now.
    layout()->activate();
    setFocus();
}

void frmSlideshow_FS::ShowPicture(const QString& path, const QString& upcoming)
{
    m_ahead->Show(path, upcoming);
    showCaption();
}

void frmSlideshow_FS::applyBackground(const QColor& colour)
{
    m_background = colour;
    for (QWidget* widget : {static_cast<QWidget*>(this), static_cast<QWidget*>(ucSlide)}) {
        QPalette palette = widget->palette();
        palette.setColor(QPalette::Window, colour);
        widget->setPalette(palette);
    }
    m_colourButton->setIcon(swatch(colour));
}

bool frmSlideshow_FS::Paused() const
{
    return m_pause->isChecked();
}

QString frmSlideshow_FS::CaptionText() const
{
    return lblCaption->text();
}

QString frmSlideshow_FS::IntervalText() const
{
    return lblInterval->text();
}

void frmSlideshow_FS::showCaption()
{
    const QString file = ucSlide->FileName();
    QString text = Utilities::FileNameOf(file);
    if (Paused())
        text += QStringLiteral(" - PAUSED");
    lblCaption->setText(text);
    lblCaption->setToolTip(file);
}

void frmSlideshow_FS::pauseToggled(bool paused)
{
    // Pausing holds the owner's timer; going on gives the picture on screen a full interval.
    if (m_host) {
        if (paused)
            m_host->SlideTimer().stop();
        else
            m_host->SlideTimer().start();
    }
    showCaption();
}

void frmSlideshow_FS::tlbPlay_ButtonClick(int index)
{
    switch (index) {
    case 1:
        // A stopped show has nothing left to show full screen.
        if (m_host)
            m_host->ToggleShow(1);
        close();
        break;
    case 2:
        // The action's own toggle has run the pause already.
        break;
    case 3:
        KeyDown(37);
        break;
    case 4:
        KeyDown(39);
        break;
    case 5:
        if (const QColor chosen = ChooseColor()(this, m_background); chosen.isValid()) {
            SettingsStore::global().write(Keys::BkColor, Formats::bgrFromColor(chosen));
            applyBackground(chosen);
        }
        break;
    default:
        break;
    }
}

void frmSlideshow_FS::KeyDown(int keyCode)
{
    if (m_keyLock)
        return;
    m_keyLock = true;
    switch (keyCode) {
    case 19:
        m_pause->toggle();
        break;
    case 27:
        // Escape starts the show over, and leaves full screen as a user expects of it: the
        // owner's show goes on in its own preview.
        close();
        if (m_host)
            m_host->ToggleShow(2);
        break;
    case 37:
        if (m_host) {
            m_host->Player().Previous();
            m_host->ShowSlide();
        }
        break;
    case 39:
        if (m_host)
            m_host->ShowSlide();
        break;
    default:
        break;
    }
    tmrKeyResponse.start();
}

void frmSlideshow_FS::keyPressEvent(QKeyEvent* event)
{
    int code = 0;
    switch (event->key()) {
    case Qt::Key_Pause:
        code = 19;
        break;
    case Qt::Key_Escape:
        code = 27;
        break;
    case Qt::Key_Left:
        code = 37;
        break;
    case Qt::Key_Right:
        code = 39;
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    event->accept();
    KeyDown(code);
}

void frmSlideshow_FS::sldrInterval_Change()
{
    const int seconds = SlideshowPlayer::SecondsAt(sldrInterval->value());
    lblInterval->setText(intervalText(seconds));
    SettingsStore::global().write(Keys::Timer_DelayWrite, seconds);
    // A running show takes the new pace at once; a paused one keeps waiting for Pause.
    if (m_host)
        m_host->SlideTimer().setInterval(seconds * 1000);
}
