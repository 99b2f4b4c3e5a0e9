#pragma once

#include <functional>
#include <vector>

namespace orlo
{

/// Hands over the forms that work on the database file: what unloads each of them, in the order in which backup and
/// restore do so. The frame, which knows all screens, calls it.
void setDataForms(std::vector<std::function<void()>> unloads);

/// Unloads these forms. Raises what a form's load or unload step raises; the forms after it then stay.
void unloadDataForms();

} // namespace orlo
