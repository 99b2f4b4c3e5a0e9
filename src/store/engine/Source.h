#pragma once

#include "store/engine/Sql.h"
#include "store/engine/Value.h"

#include <QByteArray>

#include <memory>

namespace orlo::store
{

class Connection;
class Statement;
struct TableInfo;

/// The most records of an updatable set that are read at once.
constexpr int MaxBlock = 256;

/// What one record of a set looks like and how to read and write it.
struct RowShape {
    std::vector<FieldInfo> fields;
    std::vector<QByteArray> columns; ///< the table's column of each field, empty for an expression
    std::vector<Value> defaults;     ///< what a new record's buffer begins with
    bool plain = true;               ///< every field is a column under its own name
};

/// Where a record set comes from: the statements that an opening needs, ready made.
struct Source {
    std::shared_ptr<const RowShape> shape; ///< none for a read-only set: its rows tell
    QByteArray tableName;
    QByteArray table; ///< the same, quoted
    QByteArray rowKey;
    bool freeNumbers = false; ///< as of the table
    bool wholeTable = false;  ///< opened by the table's name
    QByteArray keysSql;       ///< the membership of an updatable set, the row's key in the last column
    QByteArray unorderedSql;  ///< the same from its key on, with what stands before it to be added, in no order
    QByteArray rowSql;        ///< one row by its key
    QByteArray blockSql;      ///< a row for each of MaxBlock keys, in their order, with the key in the last column
    QByteArray rowsSql;       ///< all rows of a read-only set
    std::shared_ptr<const KnownFields> fields; ///< what is known of its fields; null for nothing

    [[nodiscard]] bool updatable() const { return shape != nullptr; }
};

/// Resolves a table's name, a stored query's name or a Select statement. Raises 3061, 3075, 3078.
[[nodiscard]] std::shared_ptr<const Source> makeSource(Connection& connection, const QString& text);
/// The name by which a table's rows can be found, empty for a table without such a key.
[[nodiscard]] QByteArray rowKeyOf(Connection& connection, const QString& table);
/// True if a field of the table is the row's number under another name.
[[nodiscard]] bool showsNumbers(Connection& connection, const QString& table);
/// The fields of a prepared statement's result. What is known of them tells a computed date and yes/no.
[[nodiscard]] std::vector<FieldInfo> resultFields(Connection& connection, Statement& statement,
                                                  const KnownFields* known);
/// What is known of a table or stored query. Raises 3075 for a query that can't be read.
[[nodiscard]] KnownSource knownSource(Connection& connection, const TableInfo& table);

} // namespace orlo::store
