#pragma once

class QWidget;

namespace orlo::widgets
{

/// Converts twips (1440 per inch) to pixels of the widget's screen.
[[nodiscard]] int twipsToPixels(int twips, const QWidget* widget);

} // namespace orlo::widgets
