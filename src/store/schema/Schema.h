#pragma once

#include "store/engine/Database.h"

#include <vector>

namespace orlo::store
{

/// A position title and its rank in lists and reports.
struct PositionTitle {
    QStringView title;
    int sortOrder;
};

/// Defines the database file: everything that creates, changes or checks one uses this.
namespace schema
{
inline constexpr int V10 = 10;
inline constexpr int V11 = 11;
inline constexpr int Numbers[] = {V11, V10}; // newest first
inline constexpr int Newest = Numbers[0];

/// All versions, newest first, in the form that the engine takes.
[[nodiscard]] const Versions& versions();
/// The version with an existing number.
[[nodiscard]] const Version& version(int number);
/// A version's tables with fields and indexes, in creation order.
[[nodiscard]] const std::vector<TableDef>& tables(int version = Newest);
/// The table with a name, ignoring case; null if the version has none.
[[nodiscard]] const TableDef* findTable(QStringView name, int version = Newest);
/// A version's stored queries. A query may refer to one that comes later.
[[nodiscard]] const std::vector<QueryDef>& queries(int version = Newest);
/// Whether a pack's file has a table of this name in any version.
[[nodiscard]] bool isOurs(const QString& table);
/// Raises 3343 if none of the tables is ours.
void requireOurs(const QStringList& tables);
/// The initial titles of Den_Titles and Pack_Positions.
[[nodiscard]] const std::vector<PositionTitle>& denTitles();
[[nodiscard]] const std::vector<PositionTitle>& packTitles();
} // namespace schema

/// An open file's version: the one it states, even a later one, or the one its tables show.
[[nodiscard]] int versionOf(const Database& database, const Versions& versions = schema::versions());

/// Creates a version's tables, stored queries and default titles, if it has any, in an empty database. Raises 3010 or
/// 3012 if one exists.
void createSchema(Database& database, int version = schema::Newest);
/// Add a pack's initial titles. Raise 3022 if one exists.
void addDefaultDenTitles(Database& database);
void addDefaultPackTitles(Database& database);

} // namespace orlo::store
