#pragma once

#include "store/engine/Statement.h"
#include "store/engine/TableDef.h"

#include <optional>

namespace orlo::store
{

class Database;

/// Fills tables of a file that nobody else has open, within a Transaction. Much faster than record sets for hundreds of
/// thousands of rows.
class BulkLoad
{
public:
    explicit BulkLoad(const Database& database);

    /// Starts inserting into these fields; the others get their defaults. Raises 3265 for an unknown name.
    void begin(const TableDef& table, const QStringList& fields);
    /// Sets a value of the next row, by its index in begin(). Raises 3421, 6 or 3163 as record sets do.
    void set(int field, const Value& value);
    /// Forgets what was set of the next row.
    void dropRow();
    /// Adds the row; unset fields are Null. Raises 3022, 3058 or 3315 and drops the row.
    void addRow();

private:
    std::shared_ptr<Connection> m_connection;
    std::optional<Statement> m_insert;
    std::vector<Field> m_fields;
};

} // namespace orlo::store
