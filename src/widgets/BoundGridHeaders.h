#pragma once

#include <QHeaderView>

namespace orlo::widgets
{

/// The column headings of a bound grid, with room above them for the grid's caption.
class HeadingRow : public QHeaderView
{
public:
    explicit HeadingRow(QWidget* parent);

    /// Leaves room for the caption over the headings.
    void setRoomAbove(int pixels) { setViewportMargins(0, pixels, 0, 0); }
    [[nodiscard]] QSize sizeHint() const override;
};

} // namespace orlo::widgets
