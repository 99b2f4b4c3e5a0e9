#pragma once

namespace orlo
{

/// Turns the version 1.0 file in the application's folder into the current file: tells the user, keeps a safety copy,
/// runs the update's steps on the old file, copies it to the current file's name, opens that and deletes the old one.
/// True when the new file was there after the copy; gDbNeedsUpdate is false from then on. Raises what a step or a file
/// operation raises; the old file then stays as far as the steps had come, and the safety copy is the way back, as the
/// report of the failure says.
bool UpdateDatabaseFile();

/// Runs the update's fifteen steps on the open database. Raises 3010 on a file that has had them.
void ApplyUpdateSteps();

} // namespace orlo
