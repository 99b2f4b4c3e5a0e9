#pragma once

namespace orlo::widgets
{

/// Pixels above and below the text of a row, in lists and grids alike.
constexpr int CellMargin = 3;

/// Pixels on both sides of a heading's text that the style keeps free beside its own margin, so that the heading stands
/// over the texts of its cells.
inline constexpr int HeadingRoom = 3;

} // namespace orlo::widgets
