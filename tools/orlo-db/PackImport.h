#pragma once

#include "CsvTable.h"

/// Adds the rows of a folder's CSV files to a file with records: all or none, in one transaction, so that others may
/// have the file open. Existing rows aren't added again. A trial keeps nothing. Returns what was added and what
/// existed, by table. Raises LoadError with a line for each error, RuntimeError if the file can't be changed.
[[nodiscard]] QStringList importPack(orlo::store::Database& database, const QString& folder, bool trial);
