#pragma once

#include "store/schema/Migration.h"

namespace orlo::store
{

/// Opens a database file, after taking it over where it is in the former format. Raises as DBEngine::openDatabase() and
/// takeOver().
[[nodiscard]] Database openFile(const QString& path, const Versions& versions = schema::versions());
/// The same for a pack's file. Raises 3343 for one that has none of a pack's tables, before anything in it changes.
[[nodiscard]] Database openPack(const QString& path, const Versions& versions = schema::versions());
/// The same for the file that the screens work on: one of an earlier version becomes one of the newest, by the steps
/// that run at the opening, after a copy of it. Where a step fails nothing in it changes; raises what the step raises.
[[nodiscard]] Database openCurrent(const QString& path, const Versions& versions = schema::versions(),
                                   const Migrations& steps = schema::migrations());

} // namespace orlo::store
