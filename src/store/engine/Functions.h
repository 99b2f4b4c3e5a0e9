#pragma once

struct sqlite3;

namespace orlo::store
{

/// Gives a connection the dialect's functions, its Like, and its way to compare texts.
void addFunctions(sqlite3* db);
/// True for a function that a statement from outside may call.
[[nodiscard]] bool isDialectFunction(const char* name);

} // namespace orlo::store
