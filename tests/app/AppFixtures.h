#pragma once

#include "app/SettingsStore.h"
#include "app/mdiMain.h"
#include "common/AppGlobals.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTest>

// Set-up shared by the suites of the main window and its commands.

// An empty settings file and every option off. What the last case wrote reaches the file
// first, or reopening would bring it back.
inline void FreshSettings()
{
    SettingsStore::global().flush();
    QFile::remove(SettingsStore::defaultPath());
    SettingsStore::reopenGlobal();
    Globals().Options.fill(0);
}

// The main window loaded, shown, and past the steps it defers at start-up.
inline void StartMain(mdiMain& main)
{
    main.Load();
    main.show();
    QVERIFY(QTest::qWaitForWindowExposed(&main));
    QTRY_VERIFY(!main.StartingUp());
}

inline void WriteFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

// The file's bytes; empty when it cannot be read.
inline QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A JPEG of one colour, with its folder made; returns the path.
inline QString MakePicture(const QString& path, QSize size = {24, 16}, QColor color = Qt::darkGreen)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    [[maybe_unused]] const bool saved = image.save(path, "JPEG");
    return path;
}
