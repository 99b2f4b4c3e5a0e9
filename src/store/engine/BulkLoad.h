#pragma once

#include "store/engine/Database.h"

#include <memory>

namespace orlo::store
{

/// Makes and fills a new file's tables in one go: all that happens on the database meanwhile becomes durable together
/// at commit(), which a record set's row by row updates can't do at hundreds of thousands of rows. For files that
/// nobody else has open; no record set may be in edit meanwhile.
class BulkLoad
{
public:
    explicit BulkLoad(Database& database);
    /// Drops everything that was not committed.
    ~BulkLoad();
    BulkLoad(const BulkLoad&) = delete;
    BulkLoad& operator=(const BulkLoad&) = delete;

    /// Sends the rows that follow to these fields of the table, in this order; fields left out take their defaults.
    /// Raises 3265 for an unknown name.
    void begin(const TableDef& table, const QStringList& fields);
    /// Puts a value into the next row, 0-based in the order of begin(). Raises 3421, 6 or 3163 as a record set does.
    void set(int field, const Value& value);
    /// Adds the row; what it doesn't set is Null. Raises 3022, 3058 or 3315 and drops the row.
    void addRow();
    void commit();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace orlo::store
