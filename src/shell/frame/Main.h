#pragma once

class QIcon;

namespace orlo
{

/// The program's icon in all sizes. Setting it decodes them all, so the splash does without.
[[nodiscard]] QIcon programIcon();

/// From process start to the event loop: shows the splash, chooses between the database files, opens the current one. A
/// failure is shown by CriticalError, and the program goes on without a database.
void Main();
/// Starts the program in a fresh application object: connects reports to the open database, reports on takeovers, and
/// runs Main.
void startProgram();
/// Runs the program and returns its exit status.
int runProgram(int argc, char** argv);

} // namespace orlo
