#pragma once

#include "store/engine/Database.h"

namespace orlo::store
{

/// The fifteen steps that make a file of version 1.0 one of 1.1, each row final on its own. Raises 3010 on a file that
/// has had them.
void updateTo11(Database& database);

} // namespace orlo::store
