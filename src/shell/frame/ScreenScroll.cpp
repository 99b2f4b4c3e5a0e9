#include "shell/frame/ScreenScroll.h"

#include "widgets/Form.h"

#include <QApplication>
#include <QCloseEvent>

namespace orlo
{

ScreenScroll::ScreenScroll(widgets::Form& form)
{
    setFrameShape(NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    setWindowTitle(form.windowTitle());
    connect(&form, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
    setWidget(&form);
    // What gets the focus comes into sight; not under a press, which would then be let go beside it.
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget*, QWidget* now) {
        if (now && widget() && widget()->isAncestorOf(now) && QGuiApplication::mouseButtons() == Qt::NoButton)
            ensureWidgetVisible(now);
    });
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
