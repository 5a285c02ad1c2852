#pragma once

#include "app/DialogAnswers.h"
#include "TestWorld.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "browser/ucPictureList.h"
#include "common/AppGlobals.h"
#include "common/Utilities.h"
#include "gallery/ucCoolProg.h"

#include <QImage>

#include <memory>

inline SettingsStore& settings()
{
    return SettingsStore::global();
}

inline void makeFile(const QString& path, const QByteArray& content, const QDateTime& modified = {})
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    QVERIFY(file.flush());
    if (modified.isValid())
        QVERIFY(file.setFileTime(modified, QFileDevice::FileModificationTime));
}

// "name=content" for every file of folder, so a test sees both what is there and which is which.
inline QStringList filesIn(const QString& folder)
{
    QStringList files;
    for (const QString& name : QDir(folder).entryList(QDir::Files, QDir::Name)) {
        QFile file(folder + name);
        files << name + u'=' +
                     QString::fromUtf8(file.open(QIODevice::ReadOnly) ? file.readAll()
                                                                      : "<unreadable>");
    }
    return files;
}

inline QString trashed(const QString& name)
{
    return qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Trash/files/") + name;
}

inline QStringList namesInOrder(const ucPictureList* list)
{
    QStringList names;
    for (int row = 0; row < list->count(); ++row)
        names.append(list->text(row));
    return names;
}

// Selects the rows of names, and only those.
inline void selectNames(ucPictureList* list, const QStringList& names)
{
    for (const QString& name : names)
        list->selectRow(list->rowOf(name), name == names.first());
}

template <typename... Values> void row(const char* name, const Values&... values)
{
    (QTest::newRow(name) << ... << values);
}

// The test class of a picture list window derives from this: its windows have a status strip
// to write to and start with every option off; it makes folders of files in its own world and
// opens a window over one of them.
class BrowserBench : public QObject
{
public:
    BrowserBench()
    {
        Utilities::SetStatusStrip(&m_strip);
        Globals().Options.fill(0);
        // The trash lives there.
        QDir().mkpath(qEnvironmentVariable("XDG_DATA_HOME"));
    }
    ~BrowserBench() override { Utilities::SetStatusStrip(nullptr); }

protected:
    // A new folder of names. Each file holds its own name, so a moved or restored file can be
    // told from another; a ".png" is a small real picture, for the previews.
    QString freshFolder(const QStringList& names = {})
    {
        const QString folder =
            property("worldPath").toString() + QStringLiteral("/pics%1/").arg(++m_folders);
        QDir().mkpath(folder);
        QImage picture(8, 8, QImage::Format_RGB32);
        picture.fill(Qt::darkGreen);
        for (const QString& name : names) {
            if (name.endsWith(QLatin1String(".png")))
                picture.save(folder + name, "PNG");
            else
                makeFile(folder + name, name.toUtf8());
        }
        return folder;
    }

    // A window over folder, on screen so that clicks land. Each window keeps its settings
    // under its class name.
    template <typename Window> static std::unique_ptr<Window> openOn(const QString& folder)
    {
        const QString section = QString::fromLatin1(Window::staticMetaObject.className());
        settings().write(Keys::BrowsePath.in(section), folder);
        auto window = std::make_unique<Window>();
        window->resize(800, 500);
        window->show();
        if (!QTest::qWaitForWindowExposed(window.get()))
            return {};
        return window;
    }

    ucCoolProg m_strip;
    int m_folders = 0;
};
