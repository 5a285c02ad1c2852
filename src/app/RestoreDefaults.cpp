#include "app/RestoreDefaults.h"

#include "app/SettingsStore.h"
#include "app/StartUp.h"
#include "common/AppGlobals.h"
#include "common/MsgBox.h"

namespace RestoreDefaults {

QString Title()
{
    return QStringLiteral("Lumbra - Restore Defaults");
}

QString Question()
{
    return QStringLiteral("This puts every setting of Lumbra back as it was at its first start: "
                          "the options, the windows' sizes and places, the toolbars, the "
                          "recent pictures and the wallpaper style.  Open windows are closed "
                          "first.\r\rRestore the defaults?");
}

bool Confirm(QWidget* parent)
{
    return MsgBox::Ask(parent, Title(), Question(), QMessageBox::Question,
                       QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}

void Reset(SettingsStore& settings, AppGlobals& globals)
{
    settings.clear();
    AppGlobals fresh;
    fresh.CurrentPicture = globals.CurrentPicture;
    StartUp::ReadGlobals(settings, fresh);
    globals = fresh;
}

} // namespace RestoreDefaults
