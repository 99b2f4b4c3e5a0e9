#pragma once

#include <QString>

#include <functional>

class QModelIndex;

namespace orlo::widgets
{

/// Adds to Qt's accessibility: windows are dialogs, modal while they wait, and group boxes are named by their titles. A
/// press by an assistive program goes the way of an access key, with all rules for hands; the click comes with the next
/// event, since the program waits for an answer. Call once, from the application object.
void installAccessibility();

/// The texts of a row's other cells in the wanted columns: "Qty: 1, Award: Wolf Rank Advancement". With the cell's own
/// text this is the row as read aloud.
[[nodiscard]] QString otherCells(const QModelIndex& cell, const std::function<bool(int column)>& isRead);

} // namespace orlo::widgets
