#pragma once

#include <QMessageBox>
#include <QString>

class QWidget;

// Message boxes with the program's texts. The texts break lines with a carriage return alone,
// as they were written; the box shows each one as a line break.
namespace MsgBox {

// The text as the box shows it: "\r" and "\r\n" become "\n".
QString Lines(const QString& text);

// Asks and returns the button pressed (defaultButton when the box is closed otherwise).
QMessageBox::StandardButton Ask(QWidget* parent, const QString& title, const QString& text,
                                QMessageBox::Icon icon, QMessageBox::StandardButtons buttons,
                                QMessageBox::StandardButton defaultButton);

// Tells, with an OK button.
void Tell(QWidget* parent, const QString& title, const QString& text,
          QMessageBox::Icon icon = QMessageBox::Information);

} // namespace MsgBox
