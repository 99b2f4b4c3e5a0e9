#include "shell/frame/ScreenScroll.h"

#include "widgets/Form.h"

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
