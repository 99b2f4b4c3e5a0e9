#pragma once

#include <QString>

class QAbstractButton;
class QAbstractItemView;

namespace orlo::widgets
{

/// Shows a faint text in the middle of a list or grid while it has no rows: what to do next, or why it is empty. The
/// text is painted, and the view's accessible description meanwhile; the model stays empty. Another call replaces it,
/// "" removes it. While the button that fills the view is enabled, a second sentence says to press it.
void sayWhenEmpty(QAbstractItemView& view, const QString& text, QAbstractButton* button = nullptr);

} // namespace orlo::widgets
