#include "store/schema/Migration.h"

#include "platform/RuntimeError.h"
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

const Version& numbered(const Versions& versions, int number)
{
    return *std::ranges::find(versions, number, &Version::number);
}

// A file that another tool has rebuilt may have lost only its version, so what is there already may stay, if it is what
// the version has.
bool isThere(bool there, bool same, const QString& words)
{
    if (there && !same)
        throw platform::RuntimeError(platform::ObjectAlreadyExists, QStringLiteral("Database"),
                                     QStringLiteral("There is another %1 already.").arg(words));
    return there;
}

// Adds a table's new fields and indexes.
void addTo(Database& database, const TableDef& before, const TableDef& after)
{
    TableDef table = database.tableDef(after.name());
    for (const Field& field : after.fields())
        if (!before.findField(field.name)) {
            const Field* found = table.findField(field.name);
            if (!isThere(found, found && found->type == field.type && found->size == field.size,
                         QStringLiteral("field %1 in %2").arg(field.name, table.name())))
                table.appendField(field);
        }
    for (const Index& index : after.indexes()) {
        const auto found = std::ranges::find(table.indexes(), index.name, &Index::name);
        const bool there = found != table.indexes().end();
        const bool same =
            there && found->fields == index.fields && found->unique == index.unique && found->primary == index.primary;
        if (!isThere(there, same, QStringLiteral("index %1 of %2").arg(index.name, table.name())))
            table.appendIndex(index);
    }
}

// Adds what a version has beyond the one before.
void addNew(Database& database, const Version& before, const Version& after)
{
    const QStringList tables = database.tableNames();
    const QStringList queries = database.queryNames();
    for (TableDef table : after.tables)
        if (const TableDef* known = before.findTable(table.name()))
            addTo(database, *known, table);
        else if (tables.contains(table.name(), Qt::CaseInsensitive))
            addTo(database, TableDef(table.name()), table);
        else
            database.appendTableDef(table);
    for (const QueryDef& query : after.queries) {
        const bool known = std::ranges::find(before.queries, query.name, &QueryDef::name) != before.queries.end();
        const bool there = queries.contains(query.name, Qt::CaseInsensitive);
        if (!known && !isThere(there, there && database.queryDef(query.name).sql == query.sql,
                               QStringLiteral("query %1").arg(query.name)))
            database.createQueryDef(query.name, query.sql);
    }
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
            addNew(database, numbered(versions, step.from), numbered(versions, step.to));
            if (step.run)
                step.run(database);
            version = step.to;
        }
    if (version == before)
        return;
    database.state(numbered(versions, version).stated);
    together.commit();
}

} // namespace orlo::store
