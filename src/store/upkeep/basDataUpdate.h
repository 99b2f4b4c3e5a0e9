#pragma once

namespace orlo
{

/// Turns the version 1.0 file in the application's folder into the current file: tells the user, keeps a safety copy,
/// updates the old file, copies it to the current file's name, opens that and deletes the old one. True if the new file
/// existed after the copy; gDbNeedsUpdate is false from then on. Raises what a step or a file operation raises; the old
/// file then stays half updated, and the safety copy is the way back, as the failure's report says.
bool UpdateDatabaseFile();

/// Runs the update's fifteen steps on the open database. Raises 3010 if they were run before.
void ApplyUpdateSteps();

} // namespace orlo
