#pragma once

#include "store/engine/Recordset.h"

namespace orlo
{

/// "Anna M. Berg" of a record with First_Name, MI and Last_Name, "Anna Berg" without an initial; names trimmed.
[[nodiscard]] QString firstMiddleLast(const store::Recordset& person);
/// "Berg, Anna M" of the same fields, each trimmed; the blank before the initial stands without one, too.
[[nodiscard]] QString lastFirstMiddle(const store::Recordset& person);

} // namespace orlo
