#include "browser/SlideshowSession.h"

#include "app/SettingsStore.h"
#include "browser/frmSlideshow_FS.h"
#include "browser/SlideDecoder.h"
#include "common/Utilities.h"
#include "viewing/ucImgPreview.h"

SlideshowSession::SlideshowSession(QObject* parent) : QObject(parent)
{
    tmrSlideshow.setObjectName(QStringLiteral("tmrSlideshow"));
    connect(&tmrSlideshow, &QTimer::timeout, this, &SlideshowSession::Tick);
}

SlideshowSession::~SlideshowSession()
{
    closeFullScreen();
}

void SlideshowSession::setPreview(ucImgPreview* preview)
{
    delete m_previewAhead;
    m_preview = preview;
    m_previewAhead = preview ? new SlideDecoder(preview, this) : nullptr;
    if (m_previewAhead)
        m_previewAhead->setDecodingAhead(m_decodingAhead);
}

void SlideshowSession::setDecodingAhead(bool on)
{
    m_decodingAhead = on;
    if (m_previewAhead)
        m_previewAhead->setDecodingAhead(on);
    if (m_fullScreen)
        m_fullScreen->Ahead().setDecodingAhead(on);
}

void SlideshowSession::ToggleShow(int n)
{
    m_playing = n == 2;
    Q_EMIT PlayingChanged(m_playing);
    if (n == 2) {
        start();
        return;
    }
    tmrSlideshow.stop();
    // The full-screen player lives only while its show runs.
    closeFullScreen();
}

void SlideshowSession::start()
{
    const Source source = m_source ? m_source() : Source{};
    m_folder = source.folder;
    m_player.Start(source.checked, source.random, source.repeat);
    tmrSlideshow.setInterval(SlideshowPlayer::IntervalMs(SettingsStore::global()));
    if (source.fullScreen && !m_fullScreen) {
        m_fullScreen = new frmSlideshow_FS(this);
        m_fullScreen->Ahead().setDecodingAhead(m_decodingAhead);
        m_fullScreen->Load();
    } else if (!source.fullScreen) {
        closeFullScreen();
    }
    ShowSlide();
    tmrSlideshow.start();
}

void SlideshowSession::ShowSlide()
{
    const QString name = m_player.ShowSlide();
    const QString upcoming = m_player.Upcoming();
    const QString path = Utilities::JoinPath(m_folder, name);
    const QString next = upcoming.isEmpty() ? QString() : Utilities::JoinPath(m_folder, upcoming);
    // A full-screen player left with Escape hands the show back to the preview.
    if (m_fullScreen && m_fullScreen->isVisible())
        m_fullScreen->ShowPicture(path, next);
    else if (m_previewAhead)
        m_previewAhead->Show(path, next);
}

void SlideshowSession::Tick()
{
    if (m_player.Tick()) {
        ShowSlide();
        return;
    }
    ToggleShow(1);
}

void SlideshowSession::closeFullScreen()
{
    if (!m_fullScreen)
        return;
    m_fullScreen->setHost(nullptr);
    m_fullScreen->close();
}
