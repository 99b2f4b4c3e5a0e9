#pragma once

class QIcon;

namespace orlo
{

/// The program's icon in all its sizes. Giving it to a window decodes them, so a splash that is to show at once does
/// without.
[[nodiscard]] QIcon programIcon();

/// The way from process start to the event loop: shows the splash, decides between the database files, opens the
/// current one. A failure ends in CriticalError, and the program goes on without a database.
void Main();
/// Takes the program from a fresh application object to its event loop: the reports' way to the open database,
/// what it tells of old files, and Main.
void startProgram();
/// Runs the program; the process's exit status.
int runProgram(int argc, char** argv);

} // namespace orlo
