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
    // Signs of messages, on grounds of their own colour.
    Information,
    Question,
    Warning,
    Critical
};

/// A line drawing in the colour that the palette has for the role at the moment, sharp at every size. The signs of
/// messages have their own colours.
[[nodiscard]] QIcon glyphIcon(Glyph glyph, QPalette::ColorRole role = QPalette::ButtonText);

} // namespace orlo::widgets
