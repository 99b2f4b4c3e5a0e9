#pragma once

class QString;

namespace orlo::store
{

/// What DBEngine::repairDatabase() does, on a native path. A sound file is only laid out anew. Of a damaged one every
/// row that can still be read goes, page by page, into a new file with the same tables, keys and queries, which takes
/// the damaged one's place; that stays beside it as "<name> (damaged).<suffix>". Cut off at any moment, the file under
/// the name is one of the two.
void repairFile(const QString& path);

} // namespace orlo::store
