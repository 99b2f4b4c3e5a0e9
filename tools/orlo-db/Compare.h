#pragma once

#include <QStringList>

/// What differs between two packs' files, line by line: for each table how many rows were added, are gone and have
/// changed from the first to the second, and, unless only the counts are wanted, which rows these are and each changed
/// field with its old and its new value. Raises RuntimeError for a file that can't be read.
[[nodiscard]] QStringList differences(const QString& from, const QString& to, bool countsOnly);
