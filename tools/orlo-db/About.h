#pragma once

#include <QStringList>

/// Describes a pack's file for a bug report: versions, sizes, SQLite's settings from the header, and the number of rows
/// in each of the program's tables. No contents, no folder names, no names of other tables. Raises RuntimeError 3024
/// for a missing file, 3343 if it isn't a database; for a damaged one it describes the header.
[[nodiscard]] QStringList about(const QString& file);
