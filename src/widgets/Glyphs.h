#pragma once

#include <QIcon>

namespace orlo::widgets
{

/// The line drawings on buttons and in fields.
enum class Glyph {
    First,
    Previous,
    Next,
    Last,
    ZoomIn,
    ZoomOut,
    Find,
    Up,
    Down,
    Print,
    Pdf,
    Csv,
    Pages,
    Close,
    Calendar
};

/// A line drawing in the palette's text colour of the moment, sharp at every size.
[[nodiscard]] QIcon glyphIcon(Glyph glyph);

} // namespace orlo::widgets
