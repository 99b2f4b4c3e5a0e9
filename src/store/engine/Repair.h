#pragma once

#include "store/engine/Database.h"

namespace orlo::store
{

class Connection;

/// What is wrong with a file, a line for each fault and at most so many; nothing for a sound one. Raises 3049 for one
/// that is too damaged to tell.
[[nodiscard]] QStringList faultsOf(Connection& connection, int most = 20);
/// What DBEngine::repairDatabase() does, on a native path. A sound file is only laid out anew. Of a damaged one every
/// row that can still be read goes, page by page, into a new file with the same tables, keys and queries, which takes
/// the damaged one's place; that stays beside it as "<name> (damaged).<suffix>". Cut off at any moment, the file under
/// the name is one of the two. A file that shows none of the versions is taken for one of the newest. Raises
/// 3343 for one of a later version than these.
Repaired repairFile(const QString& path, const Versions& versions);

} // namespace orlo::store
