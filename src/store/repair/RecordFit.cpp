#include "store/repair/RecordFit.h"

#include "store/engine/TableDef.h"
#include "store/engine/Value.h"

#include <algorithm>

namespace orlo::store
{

QByteArray textOf(const RawValue& value)
{
    const auto* text = std::get_if<RawText>(&value);
    return text ? text->bytes : QByteArray();
}

bool fits(const RawValue& value, const Field& field)
{
    if (std::holds_alternative<std::monostate>(value))
        return true;
    switch (field.type) {
    case FieldType::Boolean:
    case FieldType::Integer:
    case FieldType::Long:
        return std::holds_alternative<qint64>(value) && !field.autoIncrement;
    case FieldType::Double: // integers are kept as such
        return std::holds_alternative<double>(value) || std::holds_alternative<qint64>(value);
    case FieldType::Date:
    case FieldType::Text:
    case FieldType::Memo:
        break;
    }
    return std::holds_alternative<RawText>(value);
}

// The number of fields with values that don't fit; all of them if the record has too many.
static qsizetype misfits(const RawRecord& record, const TableDef& table)
{
    const auto& fields = table.fields();
    if (record.values.size() > fields.size())
        return std::ssize(record.values);
    qsizetype count = 0;
    for (std::size_t i = 0; i < record.values.size(); ++i)
        count += fits(record.values[i], fields[i]) ? 0 : 1;
    return count;
}

bool fits(const RawRecord& record, const TableDef& table)
{
    return misfits(record, table) == 0;
}

bool mayBeOf(const RawRecord& record, const TableDef& table)
{
    return fits(record, table) ||
           (record.values.size() == table.fields().size() && 2 * misfits(record, table) <= std::ssize(record.values));
}

} // namespace orlo::store
