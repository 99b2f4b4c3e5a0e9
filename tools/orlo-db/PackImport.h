#pragma once

#include "CsvTable.h"

/// Adds the rows of a folder's CSV files to a file that has records already: all of them or nothing, in one
/// transaction, so that others may have the file open. What stands there already isn't added again. With trial nothing
/// is kept. Gives what was added and what stood there, by table. Raises LoadError with a line for each thing that is
/// wrong, RuntimeError for a file that can't be changed.
[[nodiscard]] QStringList importPack(orlo::store::Database& database, const QString& folder, bool trial);
