#include "common/ucFolders.h"

#include "common/FolderRules.h"
#include "common/Utilities.h"

#include <QAction>
#include <QHBoxLayout>
#include <QToolBar>

namespace {

struct ButtonInfo
{
    const char* key;
    const char* text;
    const char* icon;
    int folder; // a Utilities::SpecialFolder; 0 for "Folder Up"
};

constexpr ButtonInfo Buttons[] = {
    {"FolderUp", "Folder Up", "folderup", 0},
    {"Desktop", "Desktop", "desktop", Utilities::Desktop},
    {"My Documents", "My Documents", "documents", Utilities::Documents},
    {"My Pictures", "My Pictures", "pictures", Utilities::Pictures},
};

} // namespace

ucFolders::ucFolders(QWidget* parent) : QWidget(parent), m_bar(new QToolBar(this))
{
    m_bar->setObjectName(QStringLiteral("tlbFolders"));
    m_bar->setIconSize(QSize(16, 16));
    m_bar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    for (const ButtonInfo& info : Buttons) {
        QAction* button = m_bar->addAction(
            QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(info.icon))), tr(info.text));
        button->setObjectName(QLatin1String(info.key));
        button->setData(info.folder);
        if (info.folder == 0)
            m_bar->addSeparator();
    }
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_bar);

    QAction* up = Button(1);
    up->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Up));
    up->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    up->setToolTip(tr("Folder Up (%1)").arg(up->shortcut().toString(QKeySequence::NativeText)));
    // The other folders have no key of their own: Tab reaches their buttons.
    for (QAction* button : m_bar->actions())
        if (QWidget* widget = m_bar->widgetForAction(button); widget && !button->isSeparator())
            widget->setFocusPolicy(Qt::TabFocus);

    connect(m_bar, &QToolBar::actionTriggered, this, &ucFolders::buttonClicked);
    setCurrentPath({});
}

QAction* ucFolders::Button(int index) const
{
    const QList<QAction*> buttons = m_bar->actions();
    return index >= 1 && index <= buttons.size() ? buttons[index - 1] : nullptr;
}

QList<QAction*> ucFolders::KeyActions() const
{
    return {Button(1)};
}

void ucFolders::setCurrentPath(const QString& path)
{
    m_currentPath = path;
    Button(1)->setEnabled(!path.isEmpty());
}

void ucFolders::buttonClicked(QAction* button)
{
    const int folder = button->data().toInt();
    emit FolderChanged(folder == 0
                           ? FolderRules::FolderUp(m_currentPath)
                           : Utilities::SpecialFolderPath(Utilities::SpecialFolder(folder)));
}
