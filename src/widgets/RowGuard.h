#pragma once

#include <QObject>
#include <QWidget>

#include <functional>

namespace orlo::widgets
{

/// Has a grid's open row written before anything outside the grid acts on a press or an access key. Where the row is
/// refused, the user is brought back to it, and what was pressed doesn't act.
class RowGuard : public QObject
{
public:
    /// `writes` writes the open row, if there is one; false if it was refused.
    RowGuard(const QWidget& grid, std::function<bool()> writes);

    /// It watches while the grid has the focus.
    void watch(bool on);
    /// The press that took the focus out of the grid doesn't act, if it is still to come.
    void dropPress();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool isOutside(const QObject& watched) const;
    [[nodiscard]] bool refuses() const;

    const QWidget& m_grid;
    std::function<bool()> m_writes;
    bool m_dropping = false;
};

/// True for the widget itself and all that belongs to it, menus and boxes of its own included.
[[nodiscard]] bool belongsTo(const QObject* object, const QWidget& widget);

} // namespace orlo::widgets
