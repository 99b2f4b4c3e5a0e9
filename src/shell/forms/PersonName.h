#pragma once

#include <QString>

namespace orlo::store
{
class Recordset;
}

namespace orlo
{

/// "Anna M. Berg" from First_Name, MI and Last_Name, "Anna Berg" without an initial; names are trimmed.
[[nodiscard]] QString firstMiddleLast(const store::Recordset& person);
/// "Berg, Anna M" from the same fields, trimmed; the blank before the initial is there even without one.
[[nodiscard]] QString lastFirstMiddle(const store::Recordset& person);
/// The text between first and last name: " M. ", or a blank if the initial is blank.
[[nodiscard]] QString middlePart(const QString& initial);

/// A row of a people form's list, "Berg, Anna M." or "Anna M. Berg", with the given middle part.
[[nodiscard]] QString listRow(const QString& first, const QString& middle, const QString& last, bool lastNameFirst);
/// The row of a person added since the list was filled, in any order.
[[nodiscard]] QString newListRow(const QString& first, const QString& initial, const QString& last);

/// Removes blanks at the end, or at the beginning.
[[nodiscard]] QString rightTrimmed(QString text);
[[nodiscard]] QString leftTrimmed(QString text);

} // namespace orlo
