#pragma once

#include "store/repair/PageFile.h"

namespace orlo::store
{

class TableDef;
struct Field;

/// A text's bytes; empty for anything else.
[[nodiscard]] QByteArray textOf(const RawValue& value);
/// True if the value's type suits the field.
[[nodiscard]] bool fits(const RawValue& value, const Field& field);
/// True if the record suits the table. It may lack fields added later.
[[nodiscard]] bool fits(const RawRecord& record, const TableDef& table);
/// True also for a record of the table's shape with odd values.
[[nodiscard]] bool mayBeOf(const RawRecord& record, const TableDef& table);

} // namespace orlo::store
