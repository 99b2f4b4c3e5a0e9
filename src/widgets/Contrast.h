#pragma once

#include <QColor>

namespace orlo::widgets
{

/// The contrast needed for readable text and for visible edges.
inline constexpr double ReadableText = 4.5;
inline constexpr double VisibleEdge = 3;

/// The contrast of two colours, from 1 (equal) to 21 (black on white).
[[nodiscard]] double contrast(const QColor& a, const QColor& b);
/// A colour mixed with a ground; percent of the colour.
[[nodiscard]] QColor mixed(const QColor& over, const QColor& ground, int percent);
/// Moves a colour towards the text colour, just far enough for this contrast with every ground.
[[nodiscard]] QColor raised(const QColor& color, const QColor& text, std::initializer_list<QColor> grounds,
                            double least);

} // namespace orlo::widgets
