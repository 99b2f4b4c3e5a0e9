#pragma once

#include "store/schema/Schema.h"

namespace orlo::store
{

/// A step from one version of the file to the next.
struct Migration {
    int from;
    int to;
    /// What else changes, once the later version's own tables, fields, indexes and queries have been added: values of
    /// existing rows, and what is dropped. Null if nothing does.
    void (*run)(Database& database) = nullptr;
};

/// In order.
using Migrations = std::vector<Migration>;

namespace schema
{
/// The step from 1.0 is the update, requested by a file's name: it works on a file of its own, without a transaction,
/// adds everything itself, and is skipped when a file is opened. All other steps run when the current file is opened.
[[nodiscard]] const Migrations& migrations();
} // namespace schema

/// True if migrate() would change the open file.
[[nodiscard]] bool isBehind(const Database& database, const Versions& versions, const Migrations& steps);

/// Runs the steps from the file's version on in one transaction, and states the new version in the file. Does nothing
/// if another program has done it meanwhile. Raises 3010 if the file has something else by the name of a
/// new field, index or query, and what a step raises; nothing is changed then.
void migrate(Database& database, const Versions& versions, const Migrations& steps);

} // namespace orlo::store
