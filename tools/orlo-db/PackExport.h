#pragma once

#include "store/schema/Schema.h"

/// Writes every table of a database to a folder of CSV files, each named after its table, which it makes and which may
/// not hold anything yet. The tables are what a new database can be made from again (PackLoader); tables and fields
/// that others have added to the file would be refused there, so tables with such go whole to the folder "other" in it.
/// Gives the tables that can't be read, each with the reason. Raises LoadError for a folder or file that can't be
/// written.
[[nodiscard]] QStringList exportPack(orlo::store::Database& database, const QString& folder);
