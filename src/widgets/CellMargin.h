#pragma once

namespace orlo::widgets
{

/// Pixels above and below the text of a grid's row.
constexpr int CellMargin = 3;

} // namespace orlo::widgets
