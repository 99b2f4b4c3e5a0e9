#pragma once

namespace orlo::widgets
{

/// Pixels above and below the text of a row, in lists and grids alike.
constexpr int CellMargin = 3;

} // namespace orlo::widgets
