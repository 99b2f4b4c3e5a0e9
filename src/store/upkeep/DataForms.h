#pragma once

#include <functional>
#include <vector>

namespace orlo
{

/// Sets the functions that unload the forms working on the database file, in the order that backup and restore use.
/// Called by the main window, which knows all forms.
void setDataForms(std::vector<std::function<void()>> unloads);

/// Unloads these forms. Raises what loading or unloading a form raises; later forms then stay.
void unloadDataForms();

} // namespace orlo
