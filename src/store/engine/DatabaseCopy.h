#pragma once

class QString;

namespace orlo::store
{

class Connection;

/// Writes a whole copy of a connection's file, as of one state of it, to a new file, which isn't flushed. No other
/// program is waited for longer than a fifth of a second. Native path. Raises 3050 while another program changes the
/// file, 3049 where a page can't be read, 61, 70 or 75 where the copy can't be written.
void copyDatabase(Connection& connection, const QString& path);

} // namespace orlo::store
