#pragma once

#include "store/engine/Database.h"

namespace orlo::store
{

class Connection;

/// The definition of a table of the file. Raises 3265 for an unknown name.
[[nodiscard]] TableDef readTable(Connection& connection, QStringView name);
/// Makes a table of a definition. Raises 3010 for a name that is there already.
void createTable(Connection& connection, const TableDef& table);
/// Gives a table of the file a new definition; fields that keep their name keep their values, new ones are Null.
void rebuildTable(Connection& connection, const TableDef& table);
/// Gives a table of the file the field that its definition has last; it is Null in every row.
void addColumn(Connection& connection, const TableDef& table);
/// Drops a table of the file, with its indexes.
void dropTable(Connection& connection, QStringView name);
/// Adds an index to a table of the file.
void createIndex(Connection& connection, const QString& table, const Index& index);
/// Makes those of a table's indexes, and of the triggers that keep its unique texts apart, that aren't there yet.
void addIndexes(Connection& connection, const TableDef& table);
/// Drops the triggers that aren't the engine's own, which would run in the program's name at its next write, and makes
/// the own ones of the tables that they stood on anew. Those of the versions' tables are known without reading the
/// file's catalogue, which every start would wait for.
void dropForeignTriggers(Connection& connection, const Versions& versions);
/// Makes the table that keeps the given texts of queries, where it isn't there yet.
void createQueryTexts(Connection& connection);
/// Stores a query as a view of its name, with its given text beside it. Raises 3012 for a name that is there already.
void createQuery(Connection& connection, const QueryDef& query);
/// Raises 3265 for an unknown name.
[[nodiscard]] QueryDef readQuery(Connection& connection, QStringView name);
/// Names in the order of their making.
[[nodiscard]] QStringList tableNames(Connection& connection);
[[nodiscard]] QStringList queryNames(Connection& connection);

} // namespace orlo::store
