#pragma once

#include "store/schema/Schema.h"

namespace orlo::store
{

/// A step from one version of the file to the next.
struct Migration {
    int from;
    int to;
    void (*run)(Database& database);
};

/// In order.
using Migrations = std::vector<Migration>;

namespace schema
{
/// The step from 1.0 is the update, requested by a file's name: it works on a file of its own, without a transaction,
/// and opening a file skips it. All other steps run when the current file is opened.
[[nodiscard]] const Migrations& migrations();
} // namespace schema

/// True if migrate() would change the open file.
[[nodiscard]] bool isBehind(const Database& database, const Versions& versions, const Migrations& steps);

/// Runs the steps from the file's version on in one transaction, and states the new version in the file. Does nothing
/// if another program has done it meanwhile. Raises what a step raises; nothing is changed then.
void migrate(Database& database, const Versions& versions, const Migrations& steps);

} // namespace orlo::store
