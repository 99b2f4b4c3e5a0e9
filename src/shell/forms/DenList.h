#pragma once

#include "shell/forms/KeyedList.h"

namespace orlo::store
{
class Recordset;
}

namespace orlo
{

/// The text of the current record of a set with Den_Type and Den_Number.
[[nodiscard]] QString denText(const store::Recordset& den);

/// All dens as "Wolf Den 3", or the active ones, in number order. Raise 91 while no database is open.
[[nodiscard]] std::vector<ListEntry> allDens();
[[nodiscard]] std::vector<ListEntry> activeDens();

} // namespace orlo
