#include "widgets/PageScroll.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QScrollBar>

#include <utility>

namespace orlo::widgets
{

PageScroll::PageScroll(QWidget* parent) : QScrollArea(parent)
{
    setFrameShape(NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    // During a press, wait for the release, which would otherwise miss the focused control.
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget*, QWidget* now) {
        if (widget() && widget()->isAncestorOf(now) && QGuiApplication::mouseButtons() == Qt::NoButton)
            ensureWidgetVisible(now);
    });
    qApp->installEventFilter(this);
}

void PageScroll::setWidget(QWidget* contents)
{
    QScrollArea::setWidget(contents);
    contents->setAutoFillBackground(false);
}

QSize PageScroll::sizeHint() const
{
    return widget() ? widget()->sizeHint().expandedTo(widget()->minimumSizeHint()) : QScrollArea::sizeHint();
}

// A bar that came while the sizes around it settled may stay where there is nothing to scroll.
bool PageScroll::event(QEvent* event)
{
    const bool isDone = QScrollArea::event(event);
    if (event->type() != QEvent::LayoutRequest && event->type() != QEvent::Resize)
        return isDone;
    const auto isIdle = [](const QScrollBar& bar) { return bar.isVisible() && bar.maximum() == 0; };
    const bool barIsIdle = isIdle(*horizontalScrollBar()) || isIdle(*verticalScrollBar());
    if (barIsIdle && !std::exchange(m_barIsIdle, barIsIdle))
        tellSize();
    m_barIsIdle = barIsIdle;
    return isDone;
}

bool PageScroll::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress)
        m_movedUnderPointer = false;
    else if (event->type() == QEvent::LayoutRequest && watched == widget())
        tellSize();
    else if (event->type() == QEvent::MouseButtonDblClick && m_movedUnderPointer && watched->isWidgetType() &&
             isAncestorOf(static_cast<QWidget*>(watched)))
        return true; // the second press of a double click would hit what scrolled under it
    else if (event->type() == QEvent::MouseButtonRelease && watched->isWidgetType() && widget())
        showPressed(*static_cast<QWidget*>(watched));
    return QScrollArea::eventFilter(watched, event);
}

void PageScroll::tellSize()
{
    for (QWidget* outer = this; outer && !outer->isWindow(); outer = outer->parentWidget())
        outer->updateGeometry();
    QCoreApplication::postEvent(this, new QEvent(QEvent::LayoutRequest)); // so the scroll bars are checked, too
}

void PageScroll::showPressed(const QWidget& pressed)
{
    QWidget* const now = QApplication::focusWidget();
    if (!widget()->isAncestorOf(now) || (now != &pressed && !now->isAncestorOf(&pressed)))
        return;
    // First let the press end.
    QMetaObject::invokeMethod(
        now,
        [this, self = QPointer(this), now] {
            if (!self || !isAncestorOf(now))
                return;
            const QPoint before = widget()->pos();
            ensureWidgetVisible(now);
            m_movedUnderPointer = widget()->pos() != before;
        },
        Qt::QueuedConnection);
}

} // namespace orlo::widgets
