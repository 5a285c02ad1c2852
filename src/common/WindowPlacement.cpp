#include "common/WindowPlacement.h"

#include "app/SettingsStore.h"
#include "common/Formats.h"

#include <QEvent>
#include <QGuiApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QScreen>
#include <QWidget>

namespace WindowPlacement {

namespace {

const QString LeftKey = QStringLiteral("Left");
const QString TopKey = QStringLiteral("Top");
const QString WidthKey = QStringLiteral("Width");
const QString HeightKey = QStringLiteral("Height");

// Enough of the title bar to grab the window by.
constexpr int ReachablePx = 48;

bool isNormal(const QWidget* window)
{
    return !(window->windowState() &
             (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen));
}

// The areas window may be placed in: its MDI area's viewport, or the available desktop.
QList<QRect> areasFor(const QWidget* window)
{
    if (const auto* sub = qobject_cast<const QMdiSubWindow*>(window)) {
        if (const QMdiArea* area = sub->mdiArea())
            return {QRect(QPoint(0, 0), area->viewport()->size())};
        return {};
    }
    QList<QRect> areas;
    for (const QScreen* screen : QGuiApplication::screens())
        areas << screen->availableGeometry();
    return areas;
}

class Keeper : public QObject
{
public:
    Keeper(QWidget* window, const QString& section)
        : QObject(window), m_window(window), m_section(section)
    {
        window->installEventFilter(this);
    }

    void restore()
    {
        const QRect saved = Saved(m_section);
        if (saved.isEmpty())
            return;
        const QList<QRect> areas = areasFor(m_window);
        // An MDI area not laid out yet has no size to judge by; trust the saved place.
        const QRect placed = areas.isEmpty() || areas.first().isEmpty() ? saved : Fit(saved, areas);
        m_window->resize(placed.size().expandedTo(m_window->minimumSize()));
        m_window->move(placed.topLeft());
        m_last = QRect(placed.topLeft(), m_window->size());
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched != m_window)
            return false;
        switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
            if (m_window->isVisible() && isNormal(m_window))
                m_last = QRect(m_window->pos(), m_window->size());
            break;
        case QEvent::Hide:
        case QEvent::Close:
            if (m_window->isVisible() && isNormal(m_window))
                m_last = QRect(m_window->pos(), m_window->size());
            if (!m_last.isEmpty())
                Save(m_last, m_section);
            break;
        default:
            break;
        }
        return false;
    }

private:
    QWidget* m_window;
    QString m_section;
    QRect m_last; // the placement in the normal state, as last seen
};

} // namespace

void Keep(QWidget* window, const QString& section)
{
    if (!window || section.isEmpty())
        return;
    (new Keeper(window, section))->restore();
}

QRect Saved(const QString& section)
{
    const SettingsStore& store = SettingsStore::global();
    qint64 values[4] = {0, 0, 0, 0};
    const QString* keys[4] = {&LeftKey, &TopKey, &WidthKey, &HeightKey};
    for (int i = 0; i < 4; ++i)
        if (!store.readInto(section, *keys[i], QString(), values[i]))
            return {};
    return {Formats::twipsToPixels(values[0]), Formats::twipsToPixels(values[1]),
            Formats::twipsToPixels(values[2]), Formats::twipsToPixels(values[3])};
}

void Save(const QRect& placement, const QString& section)
{
    SettingsStore& store = SettingsStore::global();
    store.write(section, LeftKey, Formats::pixelsToTwips(placement.x()));
    store.write(section, TopKey, Formats::pixelsToTwips(placement.y()));
    store.write(section, WidthKey, Formats::pixelsToTwips(placement.width()));
    store.write(section, HeightKey, Formats::pixelsToTwips(placement.height()));
}

QRect Fit(const QRect& saved, const QList<QRect>& areas)
{
    if (areas.isEmpty() || saved.isEmpty())
        return {};
    // The area that holds most of the window, or the nearest one when none holds any.
    QRect home = areas.first();
    qint64 best = -1;
    for (const QRect& area : areas) {
        const QRect common = area.intersected(saved);
        const qint64 shared = common.isEmpty() ? 0 : qint64(common.width()) * common.height();
        if (shared > best) {
            best = shared;
            home = area;
        }
    }
    if (best == 0) {
        qint64 nearest = -1;
        for (const QRect& area : areas) {
            const QPoint gap = area.center() - saved.center();
            const qint64 distance = qint64(gap.x()) * gap.x() + qint64(gap.y()) * gap.y();
            if (nearest < 0 || distance < nearest) {
                nearest = distance;
                home = area;
            }
        }
    }
    QRect fitted(saved.topLeft(), saved.size().boundedTo(home.size()));
    const int reach = qMin(ReachablePx, fitted.width());
    // The title bar must stay on the area: not above it, and a grip's width inside sideways.
    fitted.moveTop(qBound(home.top(), fitted.top(), home.bottom() - ReachablePx + 1));
    fitted.moveLeft(
        qBound(home.left() - fitted.width() + reach, fitted.left(), home.right() - reach + 1));
    return fitted;
}

} // namespace WindowPlacement
