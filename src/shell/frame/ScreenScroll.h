#pragma once

#include <QScrollArea>

namespace orlo
{

namespace widgets
{
class Form;
}

/// Holds a screen in its child window, and scrolls it where the window has less room than the screen needs.
class ScreenScroll : public QScrollArea
{
    Q_OBJECT

public:
    explicit ScreenScroll(widgets::Form& form);

    /// The screen that it holds.
    [[nodiscard]] widgets::Form& form() const;
    /// The room that the whole screen takes.
    [[nodiscard]] QSize sizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    /// Closing the window is closing the screen, which may refuse.
    void closeEvent(QCloseEvent* event) override;

private:
    void showPressed(const QWidget& pressed);

    bool m_movedUnderPointer = false; // by the last press
};

} // namespace orlo
