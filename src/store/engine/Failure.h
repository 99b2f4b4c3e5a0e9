#pragma once

struct sqlite3;

namespace orlo::store
{

/// The failure number for SQLite's last error.
[[nodiscard]] int failureNumber(sqlite3* db, bool preparing);

} // namespace orlo::store
