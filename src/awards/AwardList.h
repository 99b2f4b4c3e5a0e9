#pragma once

#include "shell/forms/KeyedList.h"

namespace orlo
{

/// All awards of the catalogue as "name type". Raises 91 while no database is open.
[[nodiscard]] std::vector<ListEntry> awardEntries();

} // namespace orlo
