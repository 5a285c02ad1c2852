#pragma once

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QSignalSpy>
#include <QTest>

// Every test process runs in a world of its own: the per-user folders and the program folder
// point into one temporary folder, so no test ever reads or writes the real home.
class TestWorld
{
public:
    TestWorld()
    {
        for (const char* name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"}) {
            const QString sub = QString::fromLatin1(name).section(u'_', 1, 1).toLower();
            QDir(m_dir.path()).mkpath(sub);
            qputenv(name, QFile::encodeName(m_dir.filePath(sub)));
        }
        QDir(m_dir.path()).mkpath(QStringLiteral("home"));
        qputenv("LUMBRA_HOME", QFile::encodeName(m_dir.filePath(QStringLiteral("home"))));
        // The special folders (Pictures, Desktop, Documents) follow HOME.
        qputenv("HOME", QFile::encodeName(m_dir.filePath(QStringLiteral("home"))));
    }

    QString path(const QString& relative = {}) const { return m_dir.filePath(relative); }
    QString configFile() const { return path(QStringLiteral("config/Lumbra/Lumbra.ini")); }

private:
    QTemporaryDir m_dir;
};

// A path inside the temporary world of the running test.
inline QString WorldPath(const QString& relative = {})
{
    return QDir(qApp->property("worldPath").toString()).filePath(relative);
}

// QTEST_MAIN, but with the temporary world set up before the application object exists.
#define LUMBRA_TEST_MAIN(TestClass)                                                                \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        TestWorld world;                                                                           \
        QApplication app(argc, argv);                                                              \
        app.setApplicationName(QStringLiteral("Lumbra"));                                          \
        app.setProperty("worldPath", world.path());                                                \
        QTEST_SET_MAIN_SOURCE_PATH                                                                 \
        TestClass tc;                                                                              \
        tc.setProperty("worldPath", world.path());                                                 \
        return QTest::qExec(&tc, argc, argv);                                                      \
    }
