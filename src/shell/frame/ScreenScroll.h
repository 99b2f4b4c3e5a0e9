#pragma once

#include "widgets/PageScroll.h"

namespace orlo
{

namespace widgets
{
class Form;
}

/// Holds a form in its child window, and scrolls it if the window is smaller than the form.
class ScreenScroll : public widgets::PageScroll
{
    Q_OBJECT

public:
    explicit ScreenScroll(widgets::Form& form);

    /// The form inside.
    [[nodiscard]] widgets::Form& form() const;

protected:
    /// Closing the window closes the form, which may refuse.
    void closeEvent(QCloseEvent* event) override;
};

} // namespace orlo
