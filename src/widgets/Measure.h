#pragma once

class QWidget;

namespace orlo::widgets
{

/// Gives the controls of a window the sizes that its letters ask for. What a control usually holds is told by
/// properties in its `.ui` file:
///
/// - `chars`: it has room for so many characters at least; `lines`: a list, grid or text for so many lines.
/// - `longest`: a label has room for this text.
/// - `mostChars`: it grows no wider than so many characters take.
/// - `edge`: labels, sections and boxes with the same word here are as wide as the widest of them, so that what follows
///   them begins at one edge.
///
/// Buttons side by side in one row of a layout have one width. To be called again where the letters change.
void measure(QWidget& window);
/// Lets the lists, grids and texts of a window that is too high for the screen shrink to a few lines. Until the next
/// measure().
void letShrink(QWidget& window);

} // namespace orlo::widgets
