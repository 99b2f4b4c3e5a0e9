#pragma once

#include "store/engine/Version.h"

#include <vector>

namespace orlo::store
{

/// A position title with its rank in lists and reports.
struct PositionTitle {
    QStringView title;
    int sortOrder;
};

/// The definition of the database file: everything that makes, changes or checks one takes it from here.
namespace schema
{
inline constexpr int V10 = 10;
inline constexpr int V11 = 11;
inline constexpr int Newest = V11;

/// All versions as the engine takes them, the newest first.
[[nodiscard]] const Versions& versions();
/// The version of a number that there is.
[[nodiscard]] const Version& version(int number);
/// The tables of a version with their fields and indexes, in the order of their making.
[[nodiscard]] const std::vector<TableDef>& tables(int version = Newest);
/// The table of a name, without regard to case; none if the version has no such table.
[[nodiscard]] const TableDef* findTable(QStringView name, int version = Newest);
/// The stored queries of a version. A text may name a query that comes later in the list.
[[nodiscard]] const std::vector<QueryDef>& queries(int version = Newest);
/// Whether a table of this name is one of a pack's, in any version.
[[nodiscard]] bool isOurs(const QString& table);
/// Raises 3343 where none of the tables is.
void requireOurs(const QStringList& tables);
/// The titles that a new Den_Titles and a new Pack_Positions start with.
[[nodiscard]] const std::vector<PositionTitle>& denTitles();
[[nodiscard]] const std::vector<PositionTitle>& packTitles();
} // namespace schema

/// The version of an open file: what it states, also a later one than these, or what its tables tell.
[[nodiscard]] int versionOf(const Database& database, const Versions& versions = schema::versions());

/// Makes a version's tables and stored queries and the default titles, if it has any, in an empty database. Raises 3010
/// or 3012 for one that is there already.
void createSchema(Database& database, int version = schema::Newest);
/// Add the titles that a pack starts with. Raise 3022 for one that is there already.
void addDefaultDenTitles(Database& database);
void addDefaultPackTitles(Database& database);

} // namespace orlo::store
