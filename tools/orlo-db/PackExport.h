#pragma once

#include "store/schema/Schema.h"

/// Writes every table to a CSV file named after it, in a folder that it creates or that is empty. PackLoader can make a
/// new database from these; tables with fields added by others, or added themselves, would be refused there, so they go
/// to the subfolder "other". Returns the tables that couldn't be read, with reasons. Raises LoadError if a folder or
/// file can't be written.
[[nodiscard]] QStringList exportPack(orlo::store::Database& database, const QString& folder);
