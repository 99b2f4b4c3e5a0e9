#pragma once

class QWidget;

namespace orlo::bench
{

/// Has everything painted that is due, so that its time counts. Ends the program where the widget isn't painted.
void paint(QWidget& widget);

} // namespace orlo::bench
