#pragma once

#include "widgets/ListBox.h"

namespace orlo::widgets
{

/// Where a text belongs in a list sorted by text, ignoring case; equal texts keep their order.
[[nodiscard]] int sortedRow(const ListBox& list, const QString& text);

/// A sorted list box with a check box in every row.
class CheckListBox : public ListBox
{
    Q_OBJECT

public:
    explicit CheckListBox(QWidget* parent = nullptr);

    /// Adds an unchecked row in sorted position.
    void addItem(const QString& text);
    /// Whether a row is checked; false if there is no such row.
    [[nodiscard]] bool checked(int index) const;
    /// Makes a row current and checks or unchecks it. Raises 5 if there is no such row.
    void setChecked(int index, bool on);

Q_SIGNALS:
    /// Emitted when the current row was checked or unchecked, by the user or in code.
    void itemCheck();
};

} // namespace orlo::widgets
