#pragma once

#include "store/engine/Database.h"
#include "store/repair/PageFile.h"

namespace orlo::store
{

/// The bytes of a text; none of anything else.
[[nodiscard]] QByteArray textOf(const RawValue& value);
/// True if a field takes the value, as far as its kind tells.
[[nodiscard]] bool fits(const RawValue& value, const Field& field);
/// True for a record that a table takes. It may end before the fields that the table got later.
[[nodiscard]] bool fits(const RawRecord& record, const TableDef& table);
/// True also for one of the table's shape in which somebody put odd values.
[[nodiscard]] bool mayBeOf(const RawRecord& record, const TableDef& table);

} // namespace orlo::store
