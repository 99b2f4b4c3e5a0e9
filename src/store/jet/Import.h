#pragma once

#include "store/engine/Database.h"
#include "store/jet/FormerFile.h"

#include <QStringList>

#include <functional>

namespace orlo::store::jet
{

class HelperStream;

/// What of a file could not go in its place, a line each.
using Report = QStringList;

/// Fills a new database with what the stream holds: the tables of the version that it is of, with their keys, checks
/// and stored queries, then the tables that are not ours. Compares the rows and the values of every table and the whole
/// file's integrity, and logs what it has counted. A row that its table refuses, or a value that its field refuses, is
/// kept whole in a table beside, named after the table and "_Kept". Raises 3049.
[[nodiscard]] Report import(HelperStream& stream, Connection& connection, Database& database,
                            const std::function<void(int percent)>& progress);

/// Reads the end of the stream. Raises 3049 where it isn't there.
void finishStream(HelperStream& stream);

/// The report as one message about a file and the name under which the old one is kept.
[[nodiscard]] QString words(const Report& report, const QString& file, const QString& kept);

} // namespace orlo::store::jet
