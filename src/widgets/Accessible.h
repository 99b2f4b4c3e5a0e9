#pragma once

#include <QString>

#include <functional>

class QModelIndex;

namespace orlo::widgets
{

/// Tells assistive programs what Qt doesn't: windows are dialogs, modal while they wait, and a group box has its own
/// title for a name. What such a program presses is clicked by the way of an access key, so that every rule for hands
/// holds for it; the click comes with the next event, for the program waits for its answer. To be called once, by the
/// application object.
void installAccessibility();

/// The texts of a row's other cells in the columns that are asked for, "Qty: 1, Award: Wolf Rank Advancement": with the
/// cell's own text the row as it is read aloud.
[[nodiscard]] QString otherCells(const QModelIndex& cell, const std::function<bool(int column)>& isRead);

} // namespace orlo::widgets
