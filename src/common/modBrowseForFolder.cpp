#include "common/modBrowseForFolder.h"

#include <QFileDialog>

QString BrowseForFolder(QWidget* parent, const QString& title, const QString& startFolder)
{
    QString chosen = QFileDialog::getExistingDirectory(parent, title, startFolder);
    if (!chosen.isEmpty() && !chosen.endsWith(u'/'))
        chosen += u'/';
    return chosen;
}
