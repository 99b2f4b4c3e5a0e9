#include "shell/frame/FocusKeeper.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFocusEvent>
#include <QMdiArea>

#include <utility>

namespace orlo
{

FocusKeeper::FocusKeeper(QMdiSubWindow* window) : QObject(window), m_window(window)
{
    window->installEventFilter(this);
}

bool FocusKeeper::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_window)
        return event->type() == QEvent::FocusIn; // put() says it once the window is back
    if (event->spontaneous())
        return false; // it comes and goes with the main window
    if (event->type() == QEvent::Hide && m_window->widget()->isAncestorOf(QApplication::focusWidget()))
        take(QApplication::focusWidget());
    else if (event->type() == QEvent::Show && m_kept && !m_window->isMinimized())
        put(std::exchange(m_kept, nullptr));
    return false;
}

void FocusKeeper::take(QWidget* control)
{
    if (m_kept)
        m_kept->removeEventFilter(this);
    m_kept = control;
    for (QWidget* outer = control; outer != m_window; outer = outer->parentWidget())
        if (qobject_cast<QAbstractItemView*>(outer))
            m_kept = outer; // a cell's editor goes with the focus
    m_kept->installEventFilter(this);
    if (QWidget* area = m_window->mdiArea())
        area->setFocus();
}

void FocusKeeper::put(QWidget* control)
{
    control->removeEventFilter(this);
    if (QMdiArea* area = m_window->mdiArea(); !area || area->activeSubWindow() != m_window)
        return;
    QFocusEvent back(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    if (control->hasFocus())
        QCoreApplication::sendEvent(control, &back);
    else
        control->setFocus(back.reason());
}

} // namespace orlo
