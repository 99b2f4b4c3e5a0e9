#pragma once

#include "store/engine/Database.h"

namespace orlo::store
{

/// What a repair has done.
struct Repaired {
    QString damaged;     ///< the path of the damaged file, which stays beside the new one; empty for a sound one
    QStringList missing; ///< what the new file doesn't have, a line for each row, field or page, as far as it is known
};

namespace DBEngine
{
/// What is wrong with a closed file, a line for each fault; nothing for a sound one. Raises as openDatabase() does, and
/// 3049 for a file that is too damaged to tell.
[[nodiscard]] QStringList checkDatabase(const QString& path);
/// Repairs a closed file. A sound one is only laid out anew. Of a damaged one every row that can still be read goes
/// into a new file with the same tables, keys and queries, which takes its place; the damaged one stays beside it as
/// "<name> (damaged).<suffix>". Cut off at any moment, the file under the name is one of the two. A file that shows
/// none of the versions is taken for one of the newest. Raises 3024 for a missing file, 3343 for one of a later version,
/// 3049 for one in which nothing can be read, 61 or 70 when the new file can't be written.
Repaired repairDatabase(const QString& path, const Versions& versions);
} // namespace DBEngine

} // namespace orlo::store
