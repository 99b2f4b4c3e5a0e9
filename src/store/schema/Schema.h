#pragma once

#include "store/engine/Edition.h"

#include <vector>

namespace orlo::store
{

/// The versions of the pack's database. A file doesn't tell its own: its name does.
enum class SchemaVersion { V10, V11 };

/// A position title with its rank in lists and reports.
struct PositionTitle {
    QStringView title;
    int sortOrder;
};

/// The definition of the database file: everything that makes, changes or checks one takes it from here.
namespace schema
{
/// The tables of a version with their fields and indexes, in the order of their making.
[[nodiscard]] const std::vector<TableDef>& tables(SchemaVersion version = SchemaVersion::V11);
/// The table of a name, without regard to case; none if the version has no such table.
[[nodiscard]] const TableDef* findTable(QStringView name, SchemaVersion version = SchemaVersion::V11);
/// The stored queries of version 1.1; version 1.0 has none. A text may name a query that comes later in the list.
[[nodiscard]] const std::vector<QueryDef>& queries();
/// The titles that a new Den_Titles and a new Pack_Positions start with.
[[nodiscard]] const std::vector<PositionTitle>& denTitles();
[[nodiscard]] const std::vector<PositionTitle>& packTitles();
/// Both versions as the engine takes them, to open and to repair a file.
[[nodiscard]] const Editions& editions();
} // namespace schema

/// Makes the tables, the stored queries and the default titles in an empty database. Raises 3010 or 3012 for one that
/// is there already.
void createSchema(Database& database);
/// The same as the previous version of the program had it: fewer tables, no stored queries, no titles.
void createSchema10(Database& database);
/// Add the titles that a pack starts with. Raise 3022 for one that is there already.
void addDefaultDenTitles(Database& database);
void addDefaultPackTitles(Database& database);

} // namespace orlo::store
