#pragma once

#include "store/engine/Database.h"

namespace orlo::store
{

class Connection;
struct Index;

/// Reads a table's definition. Raises 3265 for an unknown name.
[[nodiscard]] TableDef readTable(Connection& connection, QStringView name);
/// Creates a table. Raises 3010 if the name is taken.
void createTable(Connection& connection, const TableDef& table);
/// Gives an existing table a new definition. Fields that keep their name keep their values; new ones are Null.
void rebuildTable(Connection& connection, const TableDef& table);
/// Adds the last field of the definition to an existing table; it is Null in every row.
void addColumn(Connection& connection, const TableDef& table);
void dropTable(Connection& connection, QStringView name);
void createIndex(Connection& connection, const QString& table, const Index& index);
/// Creates the table's indexes, and the triggers that keep its texts unique, where they don't exist yet.
void addIndexes(Connection& connection, const TableDef& table);
/// Drops all triggers except the engine's own, which it restores on the tables concerned: a foreign trigger would run
/// at the program's next write. Tables of the versions are checked without reading the catalogue, which would slow
/// every start.
void dropForeignTriggers(Connection& connection, const Versions& versions);
/// Creates the table of the stored queries' texts if it doesn't exist yet.
void createQueryTexts(Connection& connection);
/// Stores a query: a view of its name, and its text. Raises 3012 if the name is taken.
void createQuery(Connection& connection, const QueryDef& query);
/// Raises 3265 for an unknown name.
[[nodiscard]] QueryDef readQuery(Connection& connection, QStringView name);
/// Names, in order of creation.
[[nodiscard]] QStringList tableNames(Connection& connection);
[[nodiscard]] QStringList queryNames(Connection& connection);

} // namespace orlo::store
