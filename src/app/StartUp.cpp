#include "app/StartUp.h"

#include "app/SettingsStore.h"
#include "common/AppGlobals.h"
#include "common/Utilities.h"

#include <QDir>

namespace StartUp {

int CleanLeftovers(const QString& programFolder)
{
    // Name filters ignore case unless told otherwise, as the old "st6*.*" pattern did; that
    // pattern also matched names without a dot.
    const QDir folder(programFolder);
    const QStringList leftovers =
        folder.entryList({QStringLiteral("st6*")}, QDir::Files | QDir::Hidden | QDir::System);
    int removed = 0;
    for (const QString& name : leftovers)
        removed += QFile::remove(folder.filePath(name)) ? 1 : 0;
    return removed;
}

void ReadGlobals(const SettingsStore& settings, AppGlobals& globals)
{
    settings.readInto(Keys::MyColor, globals.MyColor);
    settings.readInto(Keys::WindowStateRead, globals.WindowState);
    for (int i = 0; i < AppGlobals::OptionCount; ++i)
        settings.readInto(Keys::Option(i), globals.Options[size_t(i)]);
}

void Run()
{
    CleanLeftovers(Utilities::ProgramFolder());
    ReadGlobals(SettingsStore::global(), Globals());
}

} // namespace StartUp
