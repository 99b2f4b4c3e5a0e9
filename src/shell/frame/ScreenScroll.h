#pragma once

#include "widgets/PageScroll.h"

namespace orlo
{

namespace widgets
{
class Form;
}

/// Holds a screen in its child window, and scrolls it where the window has less room than the screen needs.
class ScreenScroll : public widgets::PageScroll
{
    Q_OBJECT

public:
    explicit ScreenScroll(widgets::Form& form);

    /// The screen that it holds.
    [[nodiscard]] widgets::Form& form() const;

protected:
    /// Closing the window is closing the screen, which may refuse.
    void closeEvent(QCloseEvent* event) override;
};

} // namespace orlo
