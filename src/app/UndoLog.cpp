#include "app/UndoLog.h"

UndoLog& UndoLog::global()
{
    static UndoLog log;
    return log;
}

void UndoLog::Record(const QString& what, Action undo)
{
    m_what = what;
    m_undo = std::move(undo);
    Q_EMIT Changed();
}

void UndoLog::Forget(const QString& why)
{
    m_what.clear();
    m_undo = {};
    m_whyNot = why;
    Q_EMIT Changed();
}

UndoLog::Outcome UndoLog::Undo()
{
    if (!m_undo)
        return {false, {}};
    // Taken out first: whatever the undo does (a message box, a refresh) cannot run it twice.
    const Action undo = std::move(m_undo);
    const QString what = m_what;
    Forget(QStringLiteral("Nothing to undo: the last operation (%1) has been undone.").arg(what));
    return undo();
}
