#pragma once

#include "store/engine/Recordset.h"

namespace orlo
{

/// "Anna M. Berg" of a record with First_Name, MI and Last_Name, "Anna Berg" without an initial; names trimmed.
[[nodiscard]] QString firstMiddleLast(const store::Recordset& person);
/// "Berg, Anna M" of the same fields, each trimmed; the blank before the initial stands without one, too.
[[nodiscard]] QString lastFirstMiddle(const store::Recordset& person);
/// What stands between first and last name: " M. ", or a blank for an initial of blanks only.
[[nodiscard]] QString middlePart(const QString& initial);

/// A row of a people form's list, "Berg, Anna M." or "Anna M. Berg", the middle part as it is given.
[[nodiscard]] QString listRow(const QString& first, const QString& middle, const QString& last, bool lastNameFirst);
/// The row of somebody who was added since the list was filled, whatever its order.
[[nodiscard]] QString newListRow(const QString& first, const QString& initial, const QString& last);

/// Without the blanks at its end, or at its beginning.
[[nodiscard]] QString rightTrimmed(QString text);
[[nodiscard]] QString leftTrimmed(QString text);

} // namespace orlo
