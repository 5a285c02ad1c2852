#pragma once

#include <QString>

#include <array>

class SettingsStore;

// The five most recent texts, newest first, kept as "File_Recent_0".."File_Recent_4" in the
// owner's section. It stores whatever texts it is given.
class RecentList
{
public:
    static constexpr int Capacity = 5;

    // Offers text as the newest entry. An entry already present moves to the front; a new one
    // is stored trimmed and pushes the oldest out. Matching uses the text untrimmed, so a text
    // with surrounding blanks never matches its stored form and is inserted again.
    void Propose(const QString& text);
    // The entry at index; empty outside 0..4.
    QString Item(long index) const;

    void Load(const SettingsStore& settings, const QString& section);
    void Save(SettingsStore& settings, const QString& section) const;

private:
    std::array<QString, Capacity> m_items;
};
