#include "app/RecentList.h"

#include "app/SettingsStore.h"

#include <algorithm>

namespace {

QString keyFor(int index)
{
    return Keys::File_Recent_(index).key;
}

} // namespace

void RecentList::Propose(const QString& text)
{
    if (text == m_items[0])
        return;
    const auto found = std::find(m_items.begin(), m_items.end(), text);
    if (found != m_items.end()) {
        std::rotate(m_items.begin(), found, found + 1);
        return;
    }
    std::move_backward(m_items.begin(), m_items.end() - 1, m_items.end());
    m_items[0] = text.trimmed();
}

QString RecentList::Item(long index) const
{
    return index >= 0 && index < Capacity ? m_items[size_t(index)] : QString();
}

void RecentList::Load(const SettingsStore& settings, const QString& section)
{
    for (int i = 0; i < Capacity; ++i)
        m_items[size_t(i)] = settings.read(section, keyFor(i));
}

void RecentList::Save(SettingsStore& settings, const QString& section) const
{
    for (int i = 0; i < Capacity; ++i)
        settings.write(section, keyFor(i), m_items[size_t(i)]);
}
