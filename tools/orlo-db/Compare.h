#pragma once

#include <QStringList>

/// The differences between two packs' files, line by line: per table the numbers of rows added, gone and changed from
/// the first to the second and, unless only counts are wanted, which rows these are, with old and new value of each
/// changed field. Raises RuntimeError for a file that can't be read.
[[nodiscard]] QStringList differences(const QString& from, const QString& to, bool countsOnly);
