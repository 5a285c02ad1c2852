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

QString OptionDefault(int index)
{
    return (index > 8 && index != 11) ? QStringLiteral("0") : QStringLiteral("1");
}

void ReadGlobals(const SettingsStore& settings, AppGlobals& globals)
{
    const QString general = QStringLiteral("General");
    settings.readInto(general, QStringLiteral("MyColor"), QStringLiteral("12648384"), globals.MyColor);
    settings.readInto(general, QStringLiteral("Windowstate"), QString(), globals.WindowState);
    for (int i = 0; i < AppGlobals::OptionCount; ++i)
        settings.readInto(general, QStringLiteral("Options_%1").arg(i), OptionDefault(i),
                          globals.Options[i]);
}

void Run()
{
    CleanLeftovers(Utilities::ProgramFolder());
    ReadGlobals(SettingsStore::global(), Globals());
}

} // namespace StartUp
