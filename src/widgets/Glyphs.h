#pragma once

#include <QIcon>
#include <QPalette>

namespace orlo::widgets
{

/// The line drawings on buttons, in fields and in message boxes.
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
    Refresh,
    Close,
    Calendar,
    // Signs of message boxes, on coloured grounds.
    Information,
    Question,
    Warning,
    Critical
};

/// A line drawing in the palette's current colour for the role, sharp at every size. Message signs have their own
/// colours.
[[nodiscard]] QIcon glyphIcon(Glyph glyph, QPalette::ColorRole role = QPalette::ButtonText);

} // namespace orlo::widgets
