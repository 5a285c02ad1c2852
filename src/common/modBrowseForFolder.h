#pragma once

#include <QString>

class QWidget;

// Asks the user for a folder, starting in startFolder. The chosen folder ends with "/"; the
// result is empty when the user cancels.
QString BrowseForFolder(QWidget* parent, const QString& title, const QString& startFolder = {});
