#include "browser/frmMyImages.h"

#include "browser/DesktopClipboard.h"
#include "browser/FileOps.h"
#include "browser/FileUndo.h"
#include "browser/ucPictureList.h"
#include "common/AppGlobals.h"
#include "common/MsgBox.h"
#include "common/Utilities.h"
#include "gallery/FilesFound.h"
#include "imaging/PictureLoader.h"

#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QScopeGuard>
#include <QStandardItemModel>

#include <vector>

namespace {

const QChar cr(u'\r');

QString pasteTitle()
{
    return QStringLiteral("Lumbra - Paste Files");
}

QString replaceQuestion(const QString& name)
{
    return QStringLiteral("There is already a file named ") + name +
           QStringLiteral(" in this folder.") + cr + QStringLiteral("Do you want to replace it?");
}

QString pasteFailedText(const QString& name, const QString& reason)
{
    return QStringLiteral("There was a problem with the file ") + name +
           QStringLiteral(".  It and the files after it were NOT pasted.") + cr + cr + reason;
}

QString trashFailedText(const QStringList& failures)
{
    return QStringLiteral("These files could not be moved to the trash and stay where they are:") +
           cr + cr + failures.join(cr);
}

QString tagFor(bool cut)
{
    return cut ? QStringLiteral("True") : QStringLiteral("False");
}

// The clipboard lists a paste works through: a file manager's files may come from several
// folders, one list each, in their order. Only picture files are taken.
std::vector<FilesFound> listsFrom(const DesktopClipboard::Contents& contents)
{
    std::vector<FilesFound> lists;
    QString lastFolder;
    for (const QString& path : contents.paths) {
        const QFileInfo info(path);
        if (!info.isFile() || !PictureLoader::IsPictureFile(path))
            continue;
        QString folder = info.absolutePath() + u'/';
        if (lists.empty() || folder != lastFolder) {
            lastFolder = folder;
            lists.emplace_back();
            lists.back().SetPath(folder, tagFor(contents.cut));
        }
        lists.back().AddFile(info.fileName());
    }
    return lists;
}

QStringList pathsOf(const FilesFound& list)
{
    QStringList paths;
    for (qsizetype i = 0; i < list.Count(); ++i)
        paths.append(list.Path() + list.File(i));
    return paths;
}

} // namespace

frmMyImages::frmMyImages(QWidget* parent)
    : PictureListWindow({QStringLiteral("frmMyImages"), QStringLiteral("MyImages"),
                         QStringLiteral("My Images"), Keys::DirMyImages_Height},
                        parent)
{
    lvList()->setRenameHandler([this](int row, const QString& typed) { renameRow(row, typed); });
    Load();
}

frmMyImages::~frmMyImages() = default;

QStringList frmMyImages::SelectedFiles() const
{
    QStringList files;
    for (int row : lvList()->selectedRows())
        files << PathOf(row);
    return files;
}

// Rename ----------------------------------------------------------------------------------

void frmMyImages::RenameImage()
{
    ucPictureList* list = lvList();
    int row = list->currentRow();
    const QList<int> selected = list->selectedRows();
    if (!selected.contains(row))
        row = selected.isEmpty() ? -1 : selected.first();
    if (row >= 0)
        list->editRow(row);
}

void frmMyImages::renameRow(int row, const QString& typed)
{
    ucPictureList* list = lvList();
    const QString old = list->text(row);
    // An emptied label is taken as a change of mind.
    if (typed.trimmed().isEmpty() || typed == old)
        return;
    const QString name = FileOps::KeptExtensionName(old, typed);
    if (name == old)
        return;
    if (!FileOps::Rename(CurrentPath(), old, name)) {
        // The label editor is still closing; the message waits until it has.
        QMetaObject::invokeMethod(
            this,
            [this] { MsgBox::Tell(this, FileOps::RenameTitle(), FileOps::RenameFailedText()); },
            Qt::QueuedConnection);
        return;
    }
    list->setText(row, name);
    FileUndo::Renamed(CurrentPath(), old, name, [window = QPointer(this)](const QString&) {
        if (window)
            window->RefreshMe();
    });
    const QPersistentModelIndex renamed(list->model()->index(row, 0));
    const bool wasRemembered = RememberedRow() == row;
    // Sorting the row in moves it under the closing editor: that waits too.
    QMetaObject::invokeMethod(
        this,
        [this, renamed, wasRemembered] {
            lvList()->resort();
            if (wasRemembered && renamed.isValid())
                SelectItem(renamed.row());
        },
        Qt::QueuedConnection);
}

// Delete ----------------------------------------------------------------------------------

void frmMyImages::DeleteItems()
{
    ucPictureList* list = lvList();
    const QList<int> rows = list->selectedRows();
    if (rows.isEmpty())
        return;
    if (Globals().option(Opt::ConfirmChanges)) {
        const auto answer = MsgBox::Ask(
            this, FileOps::DeleteTitle(), FileOps::DeleteQuestion(int(rows.size())),
            QMessageBox::Question, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
        if (answer != QMessageBox::Yes)
            return;
    }

    // The row that follows the first deleted one takes the selection afterwards.
    const int recorded = rows.first();
    std::vector<QPersistentModelIndex> doomed;
    for (int row : rows)
        doomed.emplace_back(list->model()->index(row, 0));
    QStringList failures;
    QStringList originals;
    QStringList trashed;
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        const auto restore = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
        for (const QPersistentModelIndex& index : doomed) {
            if (!index.isValid())
                continue;
            const QString name = index.data().toString();
            QString reason;
            QString placed;
            // A file that cannot go keeps its row.
            if (FileOps::MoveToTrash(CurrentPath() + name, &reason, &placed)) {
                RemoveRow(index.row());
                originals << CurrentPath() + name;
                trashed << placed;
            } else
                failures.append(name + QStringLiteral(" (") + reason + u')');
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        }
    }
    FileUndo::Trashed(originals, trashed, refresher());
    ShowCount();
    if (!failures.isEmpty())
        MsgBox::Tell(this, FileOps::DeleteTitle(), trashFailedText(failures), QMessageBox::Warning);
    const int next = PictureListRules::RowAfterDelete(recorded, list->count());
    if (next >= 0)
        SelectItem(next);
}

std::function<void()> frmMyImages::refresher()
{
    return [window = QPointer(this)] {
        if (window)
            window->RefreshMe();
    };
}

// Cut, copy and paste ---------------------------------------------------------------------

void frmMyImages::CutCopy(bool cut)
{
    ucPictureList* list = lvList();
    const QList<int> rows = list->selectedRows();
    if (rows.isEmpty())
        return;
    // A new cut or copy replaces the last one, and with it the last cut's ghosts.
    for (int row = 0; row < list->count(); ++row)
        if (list->isGhosted(row))
            list->setGhosted(row, false);

    auto clipboard = std::make_unique<FilesFound>();
    QString folder = CurrentPath();
    clipboard->SetPath(folder, tagFor(cut));
    for (int row : rows) {
        clipboard->AddFile(list->text(row));
        if (cut)
            list->setGhosted(row, true);
    }
    m_clipboard = std::move(clipboard);
    DesktopClipboard::Put(pathsOf(*m_clipboard), cut);
}

void frmMyImages::PasteImages()
{
    // What a file manager put on the desktop clipboard since our own cut or copy comes
    // first; the desktop holding our own files means the list here is the newest.
    std::vector<FilesFound> lists;
    bool fromDesktop = false;
    const auto desktop = DesktopClipboard::Read(QGuiApplication::clipboard()->mimeData());
    const bool ours = m_clipboard && desktop &&
                      desktop->cut == (m_clipboard->Tag() == tagFor(true)) &&
                      desktop->paths == pathsOf(*m_clipboard);
    if (desktop && !ours) {
        lists = listsFrom(*desktop);
        fromDesktop = true;
    } else if (m_clipboard && m_clipboard->Count() > 0) {
        lists.push_back(*m_clipboard);
    }
    if (lists.empty())
        return;
    const bool cut = lists.front().Tag() == tagFor(true);

    std::function<bool(const QString&)> confirmReplace;
    if (Globals().option(Opt::ConfirmChanges))
        confirmReplace = [this](const QString& target) {
            return MsgBox::Ask(this, pasteTitle(), replaceQuestion(Utilities::FileNameOf(target)),
                               QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
                               QMessageBox::No) == QMessageBox::Yes;
        };

    FileOps::PasteResult all;
    size_t stoppedIn = 0;
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        const auto restore = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
        for (; stoppedIn < lists.size(); ++stoppedIn) {
            const FileOps::PasteResult result =
                FileOps::Paste(lists[stoppedIn], CurrentPath(), confirmReplace);
            all.added += result.added;
            all.sources += result.sources;
            all.unghosted += result.unghosted;
            if (!result.ok) {
                all.ok = false;
                all.failedName = result.failedName;
                all.reason = result.reason;
                break;
            }
        }
    }

    QStringList targets;
    for (const QString& name : std::as_const(all.added))
        targets << CurrentPath() + name;
    FileUndo::Pasted(cut, all.sources, targets, refresher());

    ucPictureList* list = lvList();
    for (const QString& name : std::as_const(all.added))
        AddFileRow(name);
    for (const QString& name : std::as_const(all.unghosted)) {
        const int row = list->rowOf(name);
        if (row >= 0)
            list->setGhosted(row, false);
    }
    list->resort();
    ShowCount();
    if (!all.added.isEmpty())
        SelectItem(list->rowOf(all.added.last()));

    if (cut) {
        if (all.ok) {
            m_clipboard.reset();
            DesktopClipboard::ClearAfterCutPaste();
        } else if (!fromDesktop) {
            // The files before the one that failed have moved; the rest can be pasted again.
            const FilesFound& was = lists.front();
            auto rest = std::make_unique<FilesFound>();
            QString folder = was.Path();
            rest->SetPath(folder, was.Tag());
            bool reached = false;
            for (qsizetype i = 0; i < was.Count(); ++i) {
                reached = reached || was.File(i) == all.failedName;
                if (reached)
                    rest->AddFile(was.File(i));
            }
            m_clipboard = std::move(rest);
            DesktopClipboard::Put(pathsOf(*m_clipboard), true);
        }
    }
    if (!all.ok)
        MsgBox::Tell(this, pasteTitle(), pasteFailedText(all.failedName, all.reason),
                     QMessageBox::Warning);
}
