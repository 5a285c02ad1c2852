#include "app/FileChooser.h"

#include <QDir>
#include <QFileDialog>

namespace FileChooser {

namespace {

std::function<QStringList(const Request&)>& answerer()
{
    static std::function<QStringList(const Request&)> answer;
    return answer;
}

} // namespace

QString QtFilter(const QString& filter)
{
    const QStringList parts = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1];
        patterns.replace(u';', u' ');
        filters << parts[i] + QStringLiteral(" (") + patterns + u')';
    }
    return filters.join(QStringLiteral(";;"));
}

QStringList Ask(QWidget* parent, const Request& request)
{
    if (answerer())
        return answerer()(request);

    QFileDialog dialog(parent, request.save ? QStringLiteral("Save As") : QStringLiteral("Open"));
    dialog.setNameFilter(QtFilter(request.filter));
    if (!request.folder.isEmpty())
        dialog.setDirectory(request.folder);
    if (request.save) {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setFileMode(QFileDialog::AnyFile);
        dialog.selectFile(request.fileName);
    } else {
        dialog.setAcceptMode(QFileDialog::AcceptOpen);
        dialog.setFileMode(QFileDialog::ExistingFiles);
    }
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles();
}

void SetAnswer(std::function<QStringList(const Request&)> answer)
{
    answerer() = std::move(answer);
}

} // namespace FileChooser
