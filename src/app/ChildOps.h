#pragma once

#include <QMetaMethod>
#include <QMetaObject>
#include <QObject>

// Calls a window's public operation by name. A window that lacks the operation (or has it
// with other parameters) is skipped: the call returns false and nothing happens.
namespace ChildOps {

template <typename... Args>
bool Has(const QObject* target, const char* name)
{
    if (!target)
        return false;
    const QMetaObject* meta = target->metaObject();
    const QMetaType wanted[] = {QMetaType(), QMetaType::fromType<Args>()...};
    for (int i = 0; i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.name() != name || method.parameterCount() != int(sizeof...(Args)))
            continue;
        bool same = true;
        for (int p = 0; p < method.parameterCount(); ++p)
            same = same && method.parameterMetaType(p) == wanted[p + 1];
        if (same)
            return true;
    }
    return false;
}

template <typename... Args>
bool Call(QObject* target, const char* name, Args... args)
{
    if (!Has<Args...>(target, name))
        return false;
    return QMetaObject::invokeMethod(target, name, Qt::DirectConnection,
                                     QArgument<Args>(QMetaType::fromType<Args>().name(), args)...);
}

} // namespace ChildOps
