#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

// The open and save dialogs, behind one call a test can answer without a dialog on screen.
namespace FileChooser {

struct Request
{
    bool save = false; // a save dialog; otherwise open, several files at once
    QString filter;    // "description|patterns|..." pairs, patterns split by ";"
    QString folder;    // where the dialog starts; empty for its own choice
    QString fileName;  // proposed name (save)
};

// The chosen files in the order the dialog gives them; empty when cancelled.
QStringList Ask(QWidget* parent, const Request& request);

// Answers every Ask() instead of a dialog while set; an empty function brings the dialog back.
void SetAnswer(std::function<QStringList(const Request&)> answer);

// The filter as the Qt dialogs take it: "description (patterns)" joined by ";;". The
// descriptions stay as written, blanks and all.
QString QtFilter(const QString& filter);

} // namespace FileChooser
