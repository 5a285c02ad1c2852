#include "browser/FileUndo.h"

#include "app/UndoLog.h"
#include "browser/FileOps.h"
#include "common/Utilities.h"

#include <QFileInfo>

namespace FileUndo {

namespace {

const QChar cr(u'\r');

// Gathers what the user must hear of while files are put back.
struct Report
{
    QStringList failed;
    QStringList moved;

    void back(const QString& wanted, const QString& got, const QString& why)
    {
        if (got.isEmpty())
            failed << Utilities::FileNameOf(wanted) + QStringLiteral(" (") + why + u')';
        else if (got != wanted)
            moved << Utilities::FileNameOf(wanted) + QStringLiteral(" is now ") +
                         Utilities::FileNameOf(got);
    }

    UndoLog::Outcome outcome() const
    {
        QString text;
        if (!failed.isEmpty())
            text += QStringLiteral("These files could not be put back and stay where they are:") +
                    cr + cr + failed.join(cr);
        if (!moved.isEmpty()) {
            if (!text.isEmpty())
                text += QString(cr) + cr;
            text += QStringLiteral("These files came back under new names, because their places "
                                   "were taken:") +
                    cr + cr + moved.join(cr);
        }
        return {failed.isEmpty(), text};
    }
};

} // namespace

QString UndoTitle()
{
    return QStringLiteral("Lumbra - Undo");
}

void Renamed(const QString& folder, const QString& oldName, const QString& newName,
             std::function<void(const QString&)> after)
{
    UndoLog::global().Record(QStringLiteral("Rename"), [=] {
        Report report;
        QString why;
        const QString restored = FileOps::MoveTo(folder + newName, folder + oldName, &why);
        report.back(folder + oldName, restored, why);
        if (after && !restored.isEmpty())
            after(restored);
        return report.outcome();
    });
}

void Trashed(const QStringList& originals, const QStringList& trashed, std::function<void()> after)
{
    if (trashed.isEmpty())
        return;
    UndoLog::global().Record(QStringLiteral("Delete"), [=] {
        Report report;
        for (qsizetype i = 0; i < trashed.size(); ++i) {
            QString why;
            const QString restored = FileOps::RestoreFromTrash(trashed[i], originals[i], &why);
            report.back(originals[i], restored, why);
        }
        if (after)
            after();
        return report.outcome();
    });
}

void Pasted(bool cut, const QStringList& sources, const QStringList& targets,
            std::function<void()> after)
{
    if (targets.isEmpty())
        return;
    UndoLog::global().Record(cut ? QStringLiteral("Cut and Paste") : QStringLiteral("Paste"), [=] {
        Report report;
        for (qsizetype i = 0; i < targets.size(); ++i) {
            QString why;
            if (cut) {
                report.back(sources[i], FileOps::MoveTo(targets[i], sources[i], &why), why);
            } else if (!FileOps::MoveToTrash(targets[i], &why)) {
                // The copy stays; the original was never touched.
                report.failed << Utilities::FileNameOf(targets[i]) + QStringLiteral(" (") + why +
                                     u')';
            }
        }
        if (after)
            after();
        return report.outcome();
    });
}

} // namespace FileUndo
