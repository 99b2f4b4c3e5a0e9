#pragma once

#include <QStringList>

/// What a pack's file is, for a report of a fault: versions, sizes, SQLite's settings as its head tells them, and how
/// many rows each table of the program has. Nothing of what it holds, and no name of a folder or of another's table.
/// Raises RuntimeError 3024 for a missing file, 3343 for one that is no database; of a damaged one it tells the head.
[[nodiscard]] QStringList about(const QString& file);
