#pragma once

class QString;

namespace orlo::store
{

class Database;

/// Writes a copy of a database's file, byte by byte and as of one state of it, to a new file, which isn't flushed. No
/// other program is waited for longer than a fifth of a second. Native path. Raises 3050 within a transaction and while
/// another program changes the file or keeps a log beside it, 3049 where it can't be read, 61 or 75 where the copy
/// can't be written.
void copyDatabase(const Database& database, const QString& path);

} // namespace orlo::store
