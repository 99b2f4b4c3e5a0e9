#pragma once

class QWidget;

namespace orlo::bench
{

/// Paints everything that is due, so that its time counts. Ends the program if the widget isn't painted.
void paint(QWidget& widget);

} // namespace orlo::bench
