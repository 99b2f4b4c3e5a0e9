#pragma once

#include <QScrollArea>

namespace orlo::widgets
{

/// Holds the contents of a page or a screen, and scrolls them where there is less room than they need. What gets the
/// focus comes into sight.
class PageScroll : public QScrollArea
{
    Q_OBJECT

public:
    explicit PageScroll(QWidget* parent = nullptr);

    /// Holds the contents, which show the ground of what lies below them.
    void setWidget(QWidget* contents);
    /// The room that the whole contents take.
    [[nodiscard]] QSize sizeHint() const override;
    /// Has the layouts around it ask for that room at once, up to the window's, after the contents have changed.
    void tellSize();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showPressed(const QWidget& pressed);

    bool m_movedUnderPointer = false; // by the last press
};

} // namespace orlo::widgets
