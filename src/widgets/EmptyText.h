#pragma once

#include <QString>

class QAbstractItemView;

namespace orlo::widgets
{

/// Shows a faint text in the middle of a list or grid while it has no rows: what to do next, or why it is empty. The
/// text is only painted; the model stays empty. Another call replaces it, "" removes it.
void sayWhenEmpty(QAbstractItemView& view, const QString& text);
/// The text shown at the moment; "" if there are rows or no text.
[[nodiscard]] QString saidWhileEmpty(const QAbstractItemView& view);

} // namespace orlo::widgets
