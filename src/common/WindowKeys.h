#pragma once

#include <QKeySequence>
#include <QList>

class QAction;
class QWidget;

// Keys for the buttons of a window's own toolbars, which the keyboard cannot reach. The key
// works wherever the focus is inside the window and nowhere else, so child windows side by
// side in the main window can use the same keys, and the button's tip names it.
namespace WindowKeys {

void Give(QWidget* window, QAction* action, const QKeySequence& key);

// The desktop's keys for a standard command, or fallback where the desktop has none (many
// have no Save As or Quit key of their own).
QList<QKeySequence> Standard(QKeySequence::StandardKey key, const QKeySequence& fallback);

// Lets the close keys (Ctrl+W) close a window of its own, and Esc too when escape is set.
void CloseWith(QWidget* window, bool escape);

} // namespace WindowKeys
