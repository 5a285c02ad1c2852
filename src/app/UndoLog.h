#pragma once

#include <QObject>
#include <QString>

#include <functional>

// The last file operation of this run, kept as what it was and how to take it back, so the
// Edit menu's Undo can do so once. The windows that rename, trash, paste or remove a thumbnail
// record here; nothing else about them needs to know.
class UndoLog : public QObject
{
    Q_OBJECT
public:
    // What undoing did. A report, when not empty, is for the user: files that could not be put
    // back, or that came back under another name because their place was taken.
    struct Outcome
    {
        bool ok = true;
        QString report;
    };
    using Action = std::function<Outcome()>;

    static UndoLog& global();

    // Replaces the last operation by this one; what names it for the menu's tooltip.
    void Record(const QString& what, Action undo);
    // An operation that cannot be undone took the last place; why says so.
    void Forget(const QString& why);

    bool CanUndo() const { return bool(m_undo); }
    QString What() const { return m_what; }
    // Why there is nothing to undo; empty while there is something.
    QString WhyNot() const { return CanUndo() ? QString() : m_whyNot; }

    // Takes the last operation back, once.
    Outcome Undo();

Q_SIGNALS:
    void Changed();

private:
    QString m_what;
    QString m_whyNot = QStringLiteral("Nothing to undo: no picture has been renamed, deleted, "
                                      "pasted or removed from the gallery yet.");
    Action m_undo;
};
