#include "common/MsgBox.h"

namespace MsgBox {

QString Lines(const QString& text)
{
    QString lines = text;
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    lines.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return lines;
}

QMessageBox::StandardButton Ask(QWidget* parent, const QString& title, const QString& text,
                                QMessageBox::Icon icon, QMessageBox::StandardButtons buttons,
                                QMessageBox::StandardButton defaultButton)
{
    QMessageBox box(icon, title, Lines(text), buttons, parent);
    box.setDefaultButton(defaultButton);
    box.setEscapeButton(defaultButton);
    const int answer = box.exec();
    return answer == 0 ? defaultButton : QMessageBox::StandardButton(answer);
}

void Tell(QWidget* parent, const QString& title, const QString& text, QMessageBox::Icon icon)
{
    QMessageBox box(icon, title, Lines(text), QMessageBox::Ok, parent);
    box.exec();
}

} // namespace MsgBox
