#pragma once

#include "widgets/ListBox.h"

namespace orlo::widgets
{

/// The row at which a text goes into a list that is sorted by its rows' texts, without regard to case; equal texts keep
/// the order in which they came.
[[nodiscard]] int sortedRow(const ListBox& list, const QString& text);

/// A list box, sorted by text, with a check box for every row.
class CheckListBox : public ListBox
{
    Q_OBJECT

public:
    explicit CheckListBox(QWidget* parent = nullptr);

    /// Adds an unchecked row at its sorted place.
    void addItem(const QString& text);
    /// Whether a row is checked; false for a row that isn't there.
    [[nodiscard]] bool checked(int index) const;
    /// Makes a row the current one and checks or unchecks it. Raises 5 for a row that isn't there.
    void setChecked(int index, bool on);

Q_SIGNALS:
    /// The current row was checked or unchecked, by the user or by the program.
    void itemCheck();
};

} // namespace orlo::widgets
