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

/// In their order.
using Migrations = std::vector<Migration>;

namespace schema
{
/// The step from 1.0 is the update's, which a file's name asks for: it works on a file of its own, without a
/// transaction, and an opening passes over it. All others run when the current file is opened.
[[nodiscard]] const Migrations& migrations();
} // namespace schema

/// True for an open file that migrate() would change.
[[nodiscard]] bool isBehind(const Database& database, const Versions& versions, const Migrations& steps);

/// Runs the steps from the file's version on in one transaction, at whose end the file states the version that it came
/// to. Nothing where another program has done it by then. Raises what a step raises; nothing in the file is changed
/// then.
void migrate(Database& database, const Versions& versions, const Migrations& steps);

} // namespace orlo::store
