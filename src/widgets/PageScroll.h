#pragma once

#include <QScrollArea>

namespace orlo::widgets
{

/// Scrolls the contents of a page or a form that has less room than it needs. The focused control is scrolled into
/// view.
class PageScroll : public QScrollArea
{
    Q_OBJECT

public:
    explicit PageScroll(QWidget* parent = nullptr);

    /// Sets the contents, which show the background below.
    void setWidget(QWidget* contents);
    /// The size of the whole contents.
    [[nodiscard]] QSize sizeHint() const override;
    /// Makes the layouts around it ask for the new size at once, up to the window's, after the contents changed.
    void tellSize();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showPressed(const QWidget& pressed);

    bool m_barIsIdle = false;         // when last looked at
    bool m_movedUnderPointer = false; // by the last press
};

} // namespace orlo::widgets
