#include "store/engine/Edition.h"

namespace orlo::store
{

const TableDef* Edition::findTable(QStringView name) const
{
    for (const TableDef& table : tables)
        if (name.compare(table.name(), Qt::CaseInsensitive) == 0)
            return &table;
    return nullptr;
}

} // namespace orlo::store
