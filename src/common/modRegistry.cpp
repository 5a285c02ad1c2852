#include "common/modRegistry.h"

#ifdef Q_OS_WIN

#include <qt_windows.h>

namespace modRegistry {

void RegWriteString(HKEY& root, const QString& keyPath, const QString& valueName,
                    const QString& value)
{
    if (!root)
        root = HKEY_CURRENT_USER;
    // The desktop reads these values in the system's ANSI code page.
    const QByteArray key = keyPath.toLocal8Bit();
    const QByteArray name = valueName.toLocal8Bit();
    const QByteArray data = value.toLocal8Bit();
    HKEY opened = nullptr;
    RegOpenKeyExA(root, key.constData(), 0, KEY_WRITE, &opened);
    RegSetValueExA(opened, name.constData(), 0, REG_SZ,
                   reinterpret_cast<const BYTE*>(data.constData()), DWORD(data.size()));
    RegCloseKey(opened);
}

} // namespace modRegistry

#endif
