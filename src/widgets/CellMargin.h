#pragma once

namespace orlo::widgets
{

/// Pixels above and below the text of a row, in lists and grids alike.
constexpr int CellMargin = 3;

/// Pixels that the style adds to both sides of a heading, so that it lines up with the texts of its cells.
inline constexpr int HeadingRoom = 3;

} // namespace orlo::widgets
