#include "app/ZipPictures.h"

#include "app/FileChooser.h"
#include "common/MsgBox.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QProgressDialog>
#include <QSet>

#include <zip.h>

namespace ZipPictures {

namespace {

const QChar cr(u'\r');

// Formats that are compressed already gain nothing from deflating again.
bool storedAsIs(const QString& name)
{
    static const QSet<QString> compressed = {"jpg", "jpeg", "png", "gif", "webp", "tif", "tiff"};
    return compressed.contains(QFileInfo(name).suffix().toLower());
}

QString zipError(zip_t* archive)
{
    return QString::fromLocal8Bit(zip_strerror(archive));
}

struct Callbacks
{
    const std::function<bool(double)>* progress = nullptr;
    bool cancelled = false;
};

} // namespace

QString Title()
{
    return QStringLiteral("Lumbra - Zip My Pictures");
}

QStringList EntryNames(const QStringList& files)
{
    QStringList names;
    QSet<QString> taken;
    for (const QString& file : files) {
        QString name = QFileInfo(file).fileName();
        // Archive tools on case-blind systems would overwrite one with the other.
        while (taken.contains(name.toLower()))
            name.prepend(QStringLiteral("Copy Of "));
        taken.insert(name.toLower());
        names << name;
    }
    return names;
}

bool Write(const QStringList& files, const QString& zipPath,
           const std::function<bool(double)>& progress, QString* reason)
{
    const auto fail = [reason](const QString& why) {
        if (reason)
            *reason = why;
        return false;
    };
    int error = 0;
    // libzip writes into a temporary file beside zipPath and renames it over zipPath at the
    // end, so a replaced archive is whole until the new one is.
    zip_t* archive =
        zip_open(QFile::encodeName(zipPath).constData(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!archive) {
        zip_error_t why;
        zip_error_init_with_code(&why, error);
        const QString text = QString::fromLocal8Bit(zip_error_strerror(&why));
        zip_error_fini(&why);
        return fail(QStringLiteral("Cannot create %1: %2").arg(zipPath, text));
    }
    const QStringList names = EntryNames(files);
    for (qsizetype i = 0; i < files.size(); ++i) {
        zip_source_t* source =
            zip_source_file(archive, QFile::encodeName(files[i]).constData(), 0, -1);
        const zip_int64_t index =
            source ? zip_file_add(archive, names[i].toUtf8().constData(), source, ZIP_FL_ENC_UTF_8)
                   : -1;
        if (index < 0) {
            const QString why = zipError(archive);
            if (source)
                zip_source_free(source);
            zip_discard(archive);
            return fail(QStringLiteral("Cannot add %1: %2").arg(files[i], why));
        }
        if (storedAsIs(names[i]))
            zip_set_file_compression(archive, zip_uint64_t(index), ZIP_CM_STORE, 0);
    }

    Callbacks callbacks{progress ? &progress : nullptr};
    if (callbacks.progress) {
        zip_register_progress_callback_with_state(
            archive, 0.01,
            [](zip_t*, double done, void* state) {
                auto* c = static_cast<Callbacks*>(state);
                if (!c->cancelled && !(*c->progress)(done))
                    c->cancelled = true;
            },
            nullptr, &callbacks);
        zip_register_cancel_callback_with_state(
            archive,
            [](zip_t*, void* state) { return static_cast<Callbacks*>(state)->cancelled ? 1 : 0; },
            nullptr, &callbacks);
    }
    if (zip_close(archive) != 0) {
        const QString why = callbacks.cancelled ? QStringLiteral("Cancelled.") : zipError(archive);
        zip_discard(archive);
        return fail(why);
    }
    return true;
}

void Run(QWidget* parent, const QStringList& files)
{
    if (files.isEmpty())
        return;
    const QFileInfo first(files.first());
    FileChooser::Request request;
    request.save = true;
    request.filter = QStringLiteral("Zip Archives|*.zip|");
    request.folder = first.absolutePath();
    request.fileName = files.size() == 1 ? first.completeBaseName() + QStringLiteral(".zip")
                                         : QStringLiteral("My Pictures.zip");
    const QStringList chosen = FileChooser::Ask(parent, request);
    if (chosen.isEmpty())
        return;
    QString zipPath = chosen.first();
    if (QFileInfo(zipPath).suffix().compare(QLatin1String("zip"), Qt::CaseInsensitive) != 0)
        zipPath += QStringLiteral(".zip");
    if (QFileInfo::exists(zipPath) &&
        MsgBox::Ask(parent, Title(),
                    QStringLiteral("There is already a file named ") +
                        QFileInfo(zipPath).fileName() + QStringLiteral(".") + cr +
                        QStringLiteral("Do you want to replace it?"),
                    QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
                    QMessageBox::No) != QMessageBox::Yes)
        return;

    // The dialog only appears when the work lasts long enough to need it.
    QProgressDialog dialog(QStringLiteral("Zipping %1 pictures...").arg(files.size()),
                           QStringLiteral("Cancel"), 0, 1000, parent);
    dialog.setWindowTitle(Title());
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setMinimumDuration(500);
    dialog.setAutoReset(false);
    dialog.setValue(0);
    QString why;
    const bool done = Write(
        files, zipPath,
        [&dialog](double share) {
            dialog.setValue(int(share * 1000));
            QCoreApplication::processEvents();
            return !dialog.wasCanceled();
        },
        &why);
    const bool cancelled = dialog.wasCanceled();
    dialog.reset();
    if (!done && !cancelled)
        MsgBox::Tell(parent, Title(),
                     QStringLiteral("The pictures could not be zipped.") + cr + cr + why,
                     QMessageBox::Warning);
}

} // namespace ZipPictures
