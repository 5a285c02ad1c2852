#include "common/WindowKeys.h"

#include <QAction>
#include <QWidget>

namespace WindowKeys {

void Give(QWidget* window, QAction* action, const QKeySequence& key)
{
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    action->setToolTip(
        QStringLiteral("%1 (%2)").arg(action->toolTip(), key.toString(QKeySequence::NativeText)));
    window->addAction(action);
}

QList<QKeySequence> Standard(QKeySequence::StandardKey key, const QKeySequence& fallback)
{
    QList<QKeySequence> keys;
    if (key != QKeySequence::UnknownKey)
        keys = QKeySequence::keyBindings(key);
    if (keys.isEmpty())
        keys.append(fallback);
    return keys;
}

void CloseWith(QWidget* window, bool escape)
{
    auto* close = new QAction(QObject::tr("Close"), window);
    close->setObjectName(QStringLiteral("actClose"));
    QList<QKeySequence> keys = Standard(QKeySequence::Close, QKeySequence(Qt::CTRL | Qt::Key_W));
    if (escape)
        keys.append(QKeySequence(Qt::Key_Escape));
    close->setShortcuts(keys);
    QObject::connect(close, &QAction::triggered, window, &QWidget::close);
    window->addAction(close);
}

} // namespace WindowKeys
