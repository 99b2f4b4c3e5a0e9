#include "shell/frame/ScreenScroll.h"

#include "widgets/Form.h"

#include <QApplication>
#include <QCloseEvent>
#include <QPointer>

namespace orlo
{

ScreenScroll::ScreenScroll(widgets::Form& form)
{
    setFrameShape(NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    setObjectName(form.objectName()); // the child window's widget goes by the screen's name
    setWindowTitle(form.windowTitle());
    connect(&form, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
    setWidget(&form);
    // What gets the focus comes into sight. Under a press it waits for the release, which would miss it otherwise.
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget*, QWidget* now) {
        if (now && widget() && widget()->isAncestorOf(now) && QGuiApplication::mouseButtons() == Qt::NoButton)
            ensureWidgetVisible(now);
    });
    qApp->installEventFilter(this);
}

bool ScreenScroll::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress)
        m_movedUnderPointer = false;
    else if (event->type() == QEvent::MouseButtonDblClick && m_movedUnderPointer && watched->isWidgetType() &&
             isAncestorOf(static_cast<QWidget*>(watched)))
        return true; // its second press would hit what has come in the first one's place
    else if (event->type() == QEvent::MouseButtonRelease && watched->isWidgetType() && widget())
        showPressed(*static_cast<QWidget*>(watched));
    return QScrollArea::eventFilter(watched, event);
}

void ScreenScroll::showPressed(const QWidget& pressed)
{
    QWidget* const now = QApplication::focusWidget();
    if (!now || !widget()->isAncestorOf(now) || (now != &pressed && !now->isAncestorOf(&pressed)))
        return;
    // The press is let go first.
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

widgets::Form& ScreenScroll::form() const
{
    return *static_cast<widgets::Form*>(widget());
}

QSize ScreenScroll::sizeHint() const
{
    return form().sizeHint().expandedTo(form().minimumSizeHint());
}

void ScreenScroll::closeEvent(QCloseEvent* event)
{
    event->setAccepted(form().close());
}

} // namespace orlo
