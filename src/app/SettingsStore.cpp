#include "app/SettingsStore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

// QSettings keeps the keys of an INI file's [General] section at its top level.
bool isGeneral(const QString& section)
{
    return section.compare(u"General", Qt::CaseInsensitive) == 0;
}

std::unique_ptr<SettingsStore>& globalStore()
{
    static std::unique_ptr<SettingsStore> store;
    return store;
}

} // namespace

SettingsStore::SettingsStore(const QString& filePath) : m_path(filePath), m_context(std::make_unique<QObject>())
{
    m_writer.setMaxThreadCount(1);
    // Batches are started from the event loop of the user interface's thread.
    if (QCoreApplication* app = QCoreApplication::instance())
        m_context->moveToThread(app->thread());
    load();
}

SettingsStore::~SettingsStore()
{
    m_writer.waitForDone();
    // Without a thread of its own: the store may outlive the application object.
    if (!m_pending.isEmpty() && m_file) {
        for (const auto& [key, value] : std::as_const(m_pending))
            m_file->setValue(key, value);
        m_file->sync();
    }
}

QString SettingsStore::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) +
           QStringLiteral("/Lumbra.ini");
}

SettingsStore& SettingsStore::global()
{
    auto& store = globalStore();
    if (!store) {
        store = std::make_unique<SettingsStore>(defaultPath());
        // What the last moments of a run wrote reaches the file before the program ends.
        static bool routineAdded = false;
        if (!std::exchange(routineAdded, true))
            qAddPostRoutine([] {
                if (auto& last = globalStore())
                    last->flush();
            });
    }
    return *store;
}

void SettingsStore::reopenGlobal()
{
    // The file must hold everything the old store wrote before the new one reads it.
    globalStore().reset();
    globalStore() = std::make_unique<SettingsStore>(defaultPath());
}

QString SettingsStore::indexOf(const QString& section, const QString& key)
{
    return (isGeneral(section) ? QStringLiteral("general") : section.toLower()) + u'\n' +
           key.toLower();
}

QString SettingsStore::fileKey(const Entry& entry) const
{
    return isGeneral(entry.section) ? entry.key : entry.section + u'/' + entry.key;
}

void SettingsStore::load()
{
    QDir().mkpath(QFileInfo(m_path).absolutePath());
    m_file = std::make_unique<QSettings>(m_path, QSettings::IniFormat);
    const QStringList keys = m_file->allKeys();

    if (m_file->status() == QSettings::FormatError) {
        // QSettings refuses to write over a file it could not parse, which would lose every
        // later change. Keep the damaged file beside the new one and start afresh.
        m_file.reset();
        const QString aside = m_path + QStringLiteral(".damaged-") +
                              QDateTime::currentDateTime().toString(u"yyyyMMdd-hhmmss");
        if (!QFile::rename(m_path, aside))
            QFile::remove(m_path);
        m_file = std::make_unique<QSettings>(m_path, QSettings::IniFormat);
        return;
    }
    if (m_file->status() == QSettings::AccessError) {
        // A file we cannot read must not be replaced by one holding only this run's values.
        m_persisted = false;
        return;
    }

    for (const QString& fullKey : keys) {
        const qsizetype slash = fullKey.indexOf(u'/');
        Entry entry;
        entry.section = slash < 0 ? QStringLiteral("General") : fullKey.left(slash);
        entry.key = slash < 0 ? fullKey : fullKey.mid(slash + 1);
        const QVariant value = m_file->value(fullKey);
        entry.value = value.typeId() == QMetaType::QStringList
                          ? value.toStringList().join(QStringLiteral(", "))
                          : value.toString();
        const QString index = indexOf(entry.section, entry.key);
        if (!m_entries.contains(index))
            m_entries.insert(index, entry);
    }
}

QString SettingsStore::read(const QString& section, const QString& key, const QString& fallback) const
{
    const auto it = m_entries.constFind(indexOf(section, key));
    return it == m_entries.cend() ? fallback : it->value;
}

bool SettingsStore::contains(const QString& section, const QString& key) const
{
    return m_entries.contains(indexOf(section, key));
}

void SettingsStore::write(const QString& section, const QString& key, const QString& value)
{
    const QString index = indexOf(section, key);
    auto it = m_entries.find(index);
    if (it == m_entries.end())
        it = m_entries.insert(index, Entry{section, key, value});
    else
        it->value = value;

    if (!m_persisted || !m_file)
        return;
    m_pending.append({fileKey(*it), value});
    if (std::exchange(m_batchQueued, true))
        return;
    if (QCoreApplication::instance())
        QMetaObject::invokeMethod(m_context.get(), [this] { startWriting(); }, Qt::QueuedConnection);
    else
        startWriting();
}

void SettingsStore::startWriting()
{
    m_batchQueued = false;
    if (m_pending.isEmpty())
        return;
    m_writer.start([this, batch = std::exchange(m_pending, {})] {
        for (const auto& [key, value] : batch)
            m_file->setValue(key, value);
        m_file->sync();
        m_lastWriteOk = m_file->status() == QSettings::NoError;
    });
}

void SettingsStore::clear()
{
    m_entries.clear();
    // Values still on their way to the file would bring the old settings back.
    m_pending.clear();
    if (!m_persisted || !m_file)
        return;
    m_writer.start([this] {
        m_file->clear();
        m_file->sync();
        m_lastWriteOk = m_file->status() == QSettings::NoError;
    });
}

void SettingsStore::flush()
{
    startWriting();
    m_writer.waitForDone();
}

bool SettingsStore::persisted()
{
    flush();
    return m_persisted && m_lastWriteOk;
}

void SettingsStore::write(const QString& section, const QString& key, qint64 value)
{
    write(section, key, QString::number(value));
}

void SettingsStore::writeBool(const QString& section, const QString& key, bool value)
{
    write(section, key, Formats::fromBool(value));
}
