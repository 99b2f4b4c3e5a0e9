#pragma once

#include "store/engine/Database.h"
#include "store/jet/FormerFile.h"

#include <QStringList>

#include <functional>

namespace orlo::store::jet
{

class HelperStream;

/// What had no place in the new file, one line each.
using Report = QStringList;

/// Fills a new database from the stream: its version's tables with keys, checks and stored queries, then other tables.
/// Compares row and value counts, checks the file's integrity, and logs the counts. A refused row, or a row with a
/// refused value, is kept whole in a table named after its own plus "_Kept". Raises 3049.
[[nodiscard]] Report import(HelperStream& stream, Connection& connection, Database& database,
                            const std::function<void(int percent)>& progress);

/// The report as one message about a file and the old one's kept name.
[[nodiscard]] QString words(const Report& report, const QString& file, const QString& kept);

} // namespace orlo::store::jet
