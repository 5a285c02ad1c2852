#include "browser/SlideshowPlayer.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"

#include <QDateTime>
#include <QRandomGenerator>

#include <array>

int SlideshowPlayer::SecondsAt(int sliderPosition)
{
    static constexpr std::array<int, SliderPositions> seconds{2, 5, 8, 15, 30};
    return seconds.at(std::size_t(qBound(0, sliderPosition, SliderPositions - 1)));
}

int SlideshowPlayer::IntervalMs(const SettingsStore& settings)
{
    // The show reads the interval under the spelling the slider writes it with.
    int seconds = 2;
    settings.readInto(Keys::Timer_DelayWrite, seconds);
    // A hand-edited zero or negative value would make the timer race through the pictures.
    if (seconds < 1)
        seconds = 2;
    return seconds * 1000;
}

void SlideshowPlayer::Start(const QStringList& checkedInListOrder, bool random, bool repeat,
                            const RandomSource& source)
{
    m_random = random;
    m_repeat = repeat;
    m_next = 0;
    m_lastShown = -1;
    m_playList = checkedInListOrder;
    m_holding = random ? checkedInListOrder : QStringList();
    if (!random)
        return;

    QRandomGenerator clockSeeded(quint32(QDateTime::currentMSecsSinceEpoch()));
    const RandomSource draw =
        source ? source : [&clockSeeded] { return clockSeeded.generateDouble(); };
    const int slides = count();
    m_playList.clear();
    for (int i = 0; i < slides; ++i) {
        const auto left = m_holding.size();
        const auto j = qBound(qsizetype(0), qsizetype(double(left) * draw()), left - 1);
        m_playList.append(m_holding.takeAt(j));
    }
}

QString SlideshowPlayer::entry(int index) const
{
    return index >= 0 && index < count() ? m_playList.at(index) : QString();
}

QString SlideshowPlayer::ShowSlide()
{
    const QString name = entry(m_next);
    m_lastShown = m_next;
    m_next = m_next == count() ? 0 : m_next + 1;
    return name;
}

QString SlideshowPlayer::Upcoming() const
{
    if (!Tick())
        return {};
    // The empty slide past the end needs no decoding; the picture after it does.
    return m_next == count() ? entry(0) : entry(m_next);
}
