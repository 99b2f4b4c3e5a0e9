#include "store/schema/Migration.h"

#include "store/engine/Version.h"
#include "store/schema/Update11.h"

#include <algorithm>

namespace orlo::store
{

namespace
{

bool runsAtOpening(const Migration& step)
{
    return step.from >= schema::V11;
}

} // namespace

const Migrations& schema::migrations()
{
    static const Migrations All = {
        {V10, V11, updateTo11},
    };
    return All;
}

bool isBehind(const Database& database, const Versions& versions, const Migrations& steps)
{
    if (database.stated() == versions.front().stated) // spares a look at the tables
        return false;
    const int version = versionOf(database, versions);
    return std::ranges::any_of(
        steps, [version](const Migration& step) { return runsAtOpening(step) && step.from == version; });
}

void migrate(Database& database, const Versions& versions, const Migrations& steps)
{
    Transaction together(database);
    const int before = versionOf(database, versions);
    int version = before;
    for (const Migration& step : steps)
        if (runsAtOpening(step) && step.from == version) {
            step.run(database);
            version = step.to;
        }
    if (version == before)
        return;
    database.state(std::ranges::find(versions, version, &Version::number)->stated);
    together.commit();
}

} // namespace orlo::store
