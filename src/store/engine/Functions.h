#pragma once

#include "store/engine/Sql.h"

#include <span>
#include <string_view>

struct sqlite3;
struct sqlite3_context;
struct sqlite3_value;

namespace orlo::store
{

/// A function of the dialect.
struct DialectFunction {
    QStringView name;
    QStringView sql;            ///< its name in SQLite, quoted if need be
    std::string_view arguments; ///< t for a text, n for a number, d for a date
    std::size_t optional;       ///< arguments at the end that may be left out
    ValueKind result;
    void (*call)(sqlite3_context*, int, sqlite3_value**) = nullptr; ///< null for SQLite's own
};

[[nodiscard]] std::span<const DialectFunction> dialectFunctions();

/// Adds the dialect's functions, Like and text comparison to a connection.
void addFunctions(sqlite3* db);
/// True if statements from outside may call the function.
[[nodiscard]] bool isDialectFunction(const char* name);

} // namespace orlo::store
