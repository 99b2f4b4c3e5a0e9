#include "store/engine/Guard.h"

#include "platform/RuntimeError.h"
#include "store/engine/Database.h"
#include "store/engine/Functions.h"

#include <sqlite3.h>

#include <string_view>

namespace orlo::store
{

namespace
{

// Real work stays below a tenth of this.
constexpr int StepsBetweenChecks = 1'000'000;
constexpr int MaxChecks = 2000;

// Names of the engine's tables and of SQLite's table-valued functions. Called for every field of a statement, so
// the first letter is compared first.
bool isHidden(const char* table)
{
    const auto begins = [table](std::string_view name) {
        return (*table | 0x20) == name.front() &&
               sqlite3_strnicmp(table, name.data(), static_cast<int>(name.size())) == 0;
    };
    return table && (isEngineTable(table) || begins("pragma_") || begins("json_") || begins("dbstat") || begins("fts"));
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
        if (!isHidden(first) || owner.ofFile.contains(first))
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
