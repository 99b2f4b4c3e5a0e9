#pragma once

struct sqlite3;

namespace orlo::store
{

/// Adds the dialect's functions, Like and text comparison to a connection.
void addFunctions(sqlite3* db);
/// True if statements from outside may call the function.
[[nodiscard]] bool isDialectFunction(const char* name);

} // namespace orlo::store
