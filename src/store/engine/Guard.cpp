#include "store/engine/Guard.h"

#include "platform/RuntimeError.h"
#include "store/engine/Database.h"
#include "store/engine/Functions.h"

#include <sqlite3.h>

namespace orlo::store
{

namespace
{

// No work of the program comes near a tenth of this many steps; a stored query made to keep it busy goes on for good.
constexpr int StepsBetweenChecks = 1'000'000;
constexpr int MaxChecks = 2000;

// What no statement from outside names: the engine's tables and SQLite's table-like functions, as far as names tell.
bool isHidden(const char* table)
{
    if (!table)
        return false;
    switch (table[0] | 0x20) {
    case 's':
        return isEngineTable(table);
    case 'p':
        return sqlite3_strnicmp(table, "pragma_", 7) == 0;
    case 'j':
        return sqlite3_strnicmp(table, "json_", 5) == 0;
    case 'd':
        return sqlite3_stricmp(table, "dbstat") == 0;
    case 'f':
        return sqlite3_strnicmp(table, "fts", 3) == 0;
    default:
        return false;
    }
}

int guard(void* watch, int action, const char* first, const char* second, const char*, const char*)
{
    auto& owner = *static_cast<Watch*>(watch);
    if (!owner.guarding)
        return SQLITE_OK;
    switch (action) {
    case SQLITE_SELECT:
        return SQLITE_OK;
    case SQLITE_READ:
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
        if (!isHidden(first) || (!isEngineTable(first) && owner.ofFile.contains(first)))
            return SQLITE_OK;
        owner.hidden = first;
        owner.refusal = platform::UnknownTable;
        return SQLITE_DENY;
    case SQLITE_FUNCTION:
        if (second && isDialectFunction(second))
            return SQLITE_OK;
        break;
    default:
        break;
    }
    owner.refusal = platform::SyntaxError;
    return SQLITE_DENY;
}

} // namespace

bool isEngineTable(const char* name)
{
    return sqlite3_strnicmp(name, "sqlite_", 7) == 0 || sqlite3_stricmp(name, StoredQueries) == 0;
}

void Watch::set(sqlite3* db)
{
    const auto check = [](void* watch) { return ++static_cast<Watch*>(watch)->checks > MaxChecks ? 1 : 0; };
    sqlite3_progress_handler(db, StepsBetweenChecks, check, this);
    sqlite3_set_authorizer(db, guard, this);
}

} // namespace orlo::store
