#pragma once

class QWidget;

namespace orlo::widgets
{

/// A length in twips (1440 to the inch) as pixels of the widget's screen.
[[nodiscard]] int twipsToPixels(int twips, const QWidget* widget);

} // namespace orlo::widgets
