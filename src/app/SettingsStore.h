#pragma once

#include "app/SettingsKeys.h"
#include "common/Formats.h"

#include <QHash>
#include <QList>
#include <QSettings>
#include <QString>
#include <QThreadPool>

#include <atomic>
#include <memory>
#include <utility>
#include <type_traits>

// The per-user settings: text values in sections, section and key names compared without
// regard to case (the spelling first written is kept). Values live in memory and are written
// through to one INI file; a file that cannot be read or written never stops the program,
// which then keeps its settings for the rest of the run.
//
// Writing the file means reading, rewriting and syncing it to disk, which can take tens of
// milliseconds: the writes of one pass of the event loop reach the file together, on a thread
// of the store's own, so the user interface never waits for the disk.
class SettingsStore
{
public:
    explicit SettingsStore(const QString& filePath);
    ~SettingsStore();

    // $XDG_CONFIG_HOME/Lumbra/Lumbra.ini on Linux.
    static QString defaultPath();
    // The store the program uses; opened at defaultPath() on first use.
    static SettingsStore& global();
    // Opens the global store again at defaultPath(), for tests that change the environment.
    static void reopenGlobal();

    QString read(const QString& section, const QString& key, const QString& fallback = {}) const;
    bool contains(const QString& section, const QString& key) const;

    void write(const QString& section, const QString& key, const QString& value);
    void write(const QString& section, const QString& key, qint64 value);
    void write(const QString& section, const QString& key, int value) { write(section, key, qint64(value)); }
    void writeBool(const QString& section, const QString& key, bool value);

    // Reads a value with its default and converts it into target; when the text does not
    // convert, target keeps the value it had.
    template <typename T>
    bool readInto(const QString& section, const QString& key, const QString& fallback, T& target) const
    {
        const QString text = read(section, key, fallback);
        if constexpr (std::is_same_v<T, QString>) {
            target = text;
            return true;
        } else if constexpr (std::is_same_v<T, bool>) {
            if (const auto value = Formats::toBool(text)) {
                target = *value;
                return true;
            }
        } else if constexpr (std::is_floating_point_v<T>) {
            if (const auto value = Formats::toDouble(text)) {
                target = T(*value);
                return true;
            }
        } else {
            static_assert(std::is_integral_v<T>);
            if (const auto value = Formats::toLong(text)) {
                target = T(*value);
                return true;
            }
        }
        return false;
    }

    // The same, addressed through the settings catalogue.
    QString read(const Setting& setting) const { return read(setting.section, setting.key, setting.fallback); }
    template <typename T>
    bool readInto(const Setting& setting, T& target) const
    {
        return readInto(setting.section, setting.key, setting.fallback, target);
    }
    void write(const Setting& setting, const QString& value) { write(setting.section, setting.key, value); }
    void write(const Setting& setting, qint64 value) { write(setting.section, setting.key, value); }
    void writeBool(const Setting& setting, bool value) { writeBool(setting.section, setting.key, value); }

    QString filePath() const { return m_path; }

    // Forgets every value, in memory and in the file, so each reads as its default.
    void clear();
    // Waits until every value written so far has reached the file.
    void flush();
    // False when the file could not be read at start (it is then left alone) or the last
    // write did not reach it; the values are kept in memory either way.
    bool persisted();

private:
    struct Entry
    {
        QString section;
        QString key;
        QString value;
    };

    static QString indexOf(const QString& section, const QString& key);
    QString fileKey(const Entry& entry) const;
    void load();
    void startWriting();

    QString m_path;
    // After load() only the writer thread touches the file object.
    std::unique_ptr<QSettings> m_file;
    QHash<QString, Entry> m_entries;
    bool m_persisted = true;
    std::atomic<bool> m_lastWriteOk = true;
    // Keys and values written since the last batch went to the writer.
    QList<std::pair<QString, QString>> m_pending;
    // Queued calls die with it when the store goes first.
    std::unique_ptr<QObject> m_context;
    bool m_batchQueued = false;
    QThreadPool m_writer;
};
