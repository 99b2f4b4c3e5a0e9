#pragma once

#include <QString>

class QAbstractItemView;

namespace orlo::widgets
{

/// Has a list or grid say a text in faint letters, wrapped in its middle, for as long as it has no rows: what to do
/// next, or why there is nothing. The text is painted only: the model stays empty. A later call gives another text, ""
/// none.
void sayWhenEmpty(QAbstractItemView& view, const QString& text);
/// What the view says at the moment; "" where it has rows or no text.
[[nodiscard]] QString saidWhileEmpty(const QAbstractItemView& view);

} // namespace orlo::widgets
