#pragma once

#include <QColor>

namespace orlo::widgets
{

/// The contrast that a text needs to be read by everybody, and that an edge needs to be seen.
inline constexpr double ReadableText = 4.5;
inline constexpr double VisibleEdge = 3;

/// The contrast of two colours, from 1 for equal ones to 21 for black on white.
[[nodiscard]] double contrast(const QColor& a, const QColor& b);
/// So many percent of a colour over a ground.
[[nodiscard]] QColor mixed(const QColor& over, const QColor& ground, int percent);
/// A colour moved towards a text's, no further than it takes for this contrast with every ground.
[[nodiscard]] QColor raised(const QColor& color, const QColor& text, std::initializer_list<QColor> grounds,
                            double least);

} // namespace orlo::widgets
