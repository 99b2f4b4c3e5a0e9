#pragma once

#include "store/schema/Migration.h"

namespace orlo::store
{

/// Opens a database file, taking it over first if it is in the former format. Raises as DBEngine::openDatabase() and
/// takeOver().
[[nodiscard]] Database openFile(const QString& path, const Versions& versions = schema::versions());
/// The same for a pack's file. Raises 3343, before changing anything, if it has none of a pack's tables.
[[nodiscard]] Database openPack(const QString& path, const Versions& versions = schema::versions());
/// The same for the forms' file: one of an earlier version is copied, if there is room, and then migrated to the
/// newest. If a step fails nothing is changed; raises what the step raises.
[[nodiscard]] Database openCurrent(const QString& path, const Versions& versions = schema::versions(),
                                   const Migrations& steps = schema::migrations());

} // namespace orlo::store
