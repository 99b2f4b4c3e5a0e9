#pragma once

#include "shell/forms/KeyedList.h"

namespace orlo
{

/// The whole catalogue of awards by name and type, each as "name type". Raises 91 while no database is open.
[[nodiscard]] std::vector<ListEntry> awardEntries();

} // namespace orlo
