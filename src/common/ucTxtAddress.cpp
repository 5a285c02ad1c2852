#include "common/ucTxtAddress.h"

#include "app/SettingsStore.h"
#include "common/AddressRules.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyle>
#include <QTimer>
#include <QToolButton>

ucTxtAddress::ucTxtAddress(const QString& formName, QWidget* parent)
    : QWidget(parent), m_box(new QLineEdit(this)), m_back(new QToolButton(this)),
      m_backAction(new QAction(tr("Back"), this)), m_formName(formName)
{
    m_backAction->setObjectName(QStringLiteral("actBack"));
    m_backAction->setShortcuts(QKeySequence::Back);
    m_backAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    m_backAction->setEnabled(false);
    addAction(m_backAction);
    m_back->setObjectName(QStringLiteral("imgBack"));
    m_back->setIcon(QIcon(QStringLiteral(":/icons/back.svg")));
    m_back->setToolTip(
        tr("Back (%1)").arg(m_backAction->shortcut().toString(QKeySequence::NativeText)));
    m_back->setAutoRaise(true);
    m_back->setEnabled(false);
    m_box->setObjectName(QStringLiteral("txtAddress"));
    m_box->installEventFilter(this);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_back);
    layout->addWidget(m_box, 1);

    connect(m_back, &QToolButton::clicked, this, &ucTxtAddress::goBack);
    connect(m_backAction, &QAction::triggered, this, &ucTxtAddress::goBack);
}

RecentList& ucTxtAddress::history()
{
    if (!m_historyLoaded && !m_formName.isEmpty())
        m_history.Load(SettingsStore::global(), m_formName);
    m_historyLoaded = true;
    return m_history;
}

void ucTxtAddress::setAddress(const QString& value)
{
    // Compared in its final form, so "/pics" and "/pics/" are one address.
    const QString address = AddressRules::WithTrailingSeparator(
        value.isEmpty() ? AddressRules::DefaultAddress() : value);
    if (address == m_address)
        return;
    // Before any address is set there is nothing to go back to.
    if (!m_address.isEmpty()) {
        history().Propose(m_address);
        if (!m_formName.isEmpty())
            m_history.Save(SettingsStore::global(), m_formName);
    }
    m_backFrom = -1;
    apply(address);
}

void ucTxtAddress::goBack()
{
    const int index = AddressRules::BackIndex(history(), m_backFrom, m_address);
    if (index < 0)
        return;
    m_backFrom = index;
    apply(m_history.Item(index));
}

void ucTxtAddress::apply(const QString& address)
{
    m_address = address;
    m_back->setEnabled(AddressRules::BackIndex(history(), m_backFrom, m_address) >= 0);
    m_backAction->setEnabled(m_back->isEnabled());
    shorten();
    emit NewAddress();
}

void ucTxtAddress::confirmTyped()
{
    // The box may still show the shortened form of the address.
    const QString typed = m_box->text() == m_shown ? m_address : m_box->text();
    if (AddressRules::AddressExists(typed)) {
        setAddress(typed);
        if (m_box->text() == m_address)
            shorten();
    } else {
        m_box->setText(AddressRules::NotFoundText);
    }
}

int ucTxtAddress::boxTextWidth() const
{
    // The line edit keeps a frame and a small margin on each side of its text.
    const QMargins margins = m_box->textMargins();
    const int frame = m_box->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, m_box);
    return m_box->contentsRect().width() - margins.left() - margins.right() - 2 * frame - 4;
}

void ucTxtAddress::shorten()
{
    if (m_shortening)
        return;
    m_shortening = true;
    const QFontMetrics metrics = m_box->fontMetrics();
    m_shown = AddressRules::ShortenedText(m_address, boxTextWidth(), [&](const QString& text) {
        return metrics.horizontalAdvance(text);
    });
    m_box->setText(m_shown);
    m_box->setCursorPosition(0);
    m_shortening = false;
}

bool ucTxtAddress::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_box)
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::ShortcutOverride: {
        // Enter and Esc belong to the box while it has the focus, whatever keys its window has.
        const auto* press = static_cast<QKeyEvent*>(event);
        const int key = press->key();
        const bool plain =
            !(press->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
        if (plain && (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape))
            event->accept();
        break;
    }
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            confirmTyped();
            return true;
        }
        if (key == Qt::Key_Escape) {
            m_box->setText(m_address);
            return true;
        }
        break;
    }
    case QEvent::FocusIn:
        // Typing starts from the whole address, selected so it can be typed over.
        if (m_box->text() == m_shown) {
            m_box->setText(m_address);
            QTimer::singleShot(0, m_box, &QLineEdit::selectAll);
        }
        break;
    case QEvent::FocusOut:
        if (m_box->text() == m_address)
            shorten();
        break;
    case QEvent::Resize:
        // Only the address as last shown is fitted again; a text being typed is left alone.
        if (m_box->text() == m_shown)
            shorten();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}
