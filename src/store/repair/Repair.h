#pragma once

#include "store/engine/Database.h"

namespace orlo::store
{

/// The result of a repair.
struct Repaired {
    QString damaged;     ///< the damaged file's new path; empty if it was sound
    QStringList missing; ///< what the new file lacks, one line per row, field or page, as far as known
};

namespace DBEngine
{
/// The faults of a closed file, one per line; none if it is sound. Raises as openDatabase(), and 3049 if the file is
/// too damaged to tell.
[[nodiscard]] QStringList checkDatabase(const QString& path);
/// Repairs a closed file. A sound one is only compacted. All readable rows of a damaged one go into a new file with the
/// same tables, keys and queries, which replaces it; the damaged one stays beside it as "<name> (damaged).<suffix>". If
/// cut off at any moment, the name holds one of the two. A file that shows no version counts as the newest. Raises 3024
/// for a missing file, 3343 for a later version, 3049 if nothing can be read, 61 or 70 if the new file can't be
/// written.
Repaired repairDatabase(const QString& path, const Versions& versions);
} // namespace DBEngine

} // namespace orlo::store
