#include "widgets/RowGuard.h"

#include <QApplication>
#include <QEvent>
#include <QMessageBox>
#include <QTimer>

namespace orlo::widgets
{

RowGuard::RowGuard(const QWidget& grid, std::function<bool()> writes) : m_grid(grid), m_writes(std::move(writes))
{
}

void RowGuard::watch(bool on)
{
    qApp->removeEventFilter(this);
    if (on)
        qApp->installEventFilter(this);
}

void RowGuard::dropPress()
{
    m_dropping = true;
    QTimer::singleShot(0, this, [this] { m_dropping = false; });
}

bool RowGuard::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return watched->isWidgetType() && isOutside(*watched) && refuses();
    case QEvent::Shortcut:
        return isOutside(*watched) && refuses();
    default:
        return false;
    }
}

// Message boxes and open menus come first; the grid keeps the focus below them.
bool RowGuard::isOutside(const QObject& watched) const
{
    if (belongsTo(&watched, m_grid))
        return false;
    if (!watched.isWidgetType())
        return true;
    const QWidget* window = static_cast<const QWidget&>(watched).window();
    return window->windowType() != Qt::Popup && !qobject_cast<const QMessageBox*>(window);
}

bool RowGuard::refuses() const
{
    return m_dropping || (m_grid.isVisible() && !m_writes());
}

bool belongsTo(const QObject* object, const QWidget& widget)
{
    while (object && object != &widget)
        object = object->parent();
    return object;
}

} // namespace orlo::widgets
