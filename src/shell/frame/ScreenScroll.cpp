#include "shell/frame/ScreenScroll.h"

#include "widgets/Form.h"

#include <QCloseEvent>

namespace orlo
{

ScreenScroll::ScreenScroll(widgets::Form& form)
{
    setObjectName(form.objectName()); // outside programs look for the window under the form's name
    setWindowTitle(form.windowTitle());
    connect(&form, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
    setWidget(&form);
}

widgets::Form& ScreenScroll::form() const
{
    return *static_cast<widgets::Form*>(widget());
}

void ScreenScroll::closeEvent(QCloseEvent* event)
{
    event->setAccepted(form().close());
}

} // namespace orlo
