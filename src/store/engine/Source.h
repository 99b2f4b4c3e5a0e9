#pragma once

#include "store/engine/Field.h"
#include "store/engine/Sql.h"

#include <QByteArray>

#include <memory>

namespace orlo::store
{

class Connection;
class Statement;
struct TableInfo;

/// The largest block of an updatable set.
constexpr int MaxBlock = 256;

/// How a record looks.
struct RowShape {
    std::vector<Field> fields;
    std::vector<QByteArray> columns; ///< quoted, by field; empty for an expression
    bool plain = true;               ///< all fields are columns under their own names
};

/// The prepared statements of a record set.
struct Source {
    std::shared_ptr<const RowShape> shape; ///< null for a read-only set
    QByteArray tableName;
    QByteArray table; ///< the same, quoted
    QByteArray rowKey;
    bool freeNumbers = false;                  ///< as in TableInfo
    bool wholeTable = false;                   ///< opened by the table's name
    QByteArray keysSql;                        ///< an updatable set's rows; the last column is the row number
    QByteArray unorderedSql;                   ///< the same in no order, from the row number on, to be completed before
    QByteArray rowSql;                         ///< one row by its number
    QByteArray blockSql;                       ///< one row per number, of MaxBlock; the last column is the row number
    QByteArray rowsSql;                        ///< all rows of a read-only set
    std::shared_ptr<const KnownFields> fields; ///< null if unknown

    [[nodiscard]] bool updatable() const { return shape != nullptr; }
};

/// Resolves a table, a stored query or a Select. Raises 3061, 3075, 3078.
[[nodiscard]] std::shared_ptr<const Source> makeSource(Connection& connection, const QString& text);
/// The name of the table's row number, empty if it has none.
[[nodiscard]] QByteArray rowKeyOf(Connection& connection, const QString& table);
/// True if a field is an alias of the row number.
[[nodiscard]] bool showsNumbers(Connection& connection, const QString& table);
/// The fields of a statement's result. `known` tells computed dates and yes/no.
[[nodiscard]] std::vector<Field> resultFields(Connection& connection, Statement& statement, const KnownFields* known);
/// The fields of a table or stored query. Raises 3075 for a query that can't be read.
[[nodiscard]] KnownSource knownSource(Connection& connection, const TableInfo& table);

} // namespace orlo::store
