#pragma once

#include <QObject>
#include <QWidget>

#include <functional>

namespace orlo::widgets
{

/// Has a grid's open row written before a press or an access key outside the grid acts. If the row is refused, the user
/// is taken back to it and the press has no effect.
class RowGuard : public QObject
{
public:
    /// `writes` writes the open row, if any; false if it was refused.
    RowGuard(const QWidget& grid, std::function<bool()> writes);

    /// Call with true while the grid has the focus.
    void watch(bool on);
    /// Discards the press that moved the focus out of the grid, if it is still to come.
    void dropPress();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool isOutside(const QObject& watched) const;
    [[nodiscard]] bool refuses() const;

    const QWidget& m_grid;
    std::function<bool()> m_writes;
    bool m_dropping = false;
};

/// True for the widget and everything that belongs to it, including its menus and dialogs.
[[nodiscard]] bool belongsTo(const QObject* object, const QWidget& widget);

} // namespace orlo::widgets
