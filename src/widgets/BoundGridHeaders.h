#pragma once

#include <QHeaderView>

namespace orlo::widgets
{

/// The column headings of a bound grid, with room for the grid's caption above.
class HeadingRow : public QHeaderView
{
public:
    explicit HeadingRow(QWidget* parent);

    /// Sets the room above the headings for the caption.
    void setRoomAbove(int pixels) { setViewportMargins(0, pixels, 0, 0); }
    [[nodiscard]] QSize sizeHint() const override;
};

} // namespace orlo::widgets
