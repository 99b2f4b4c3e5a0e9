#pragma once

#include "store/engine/Database.h"

namespace orlo::store
{

/// Opens a pack's file, after taking it over where it is in the former format. Raises as DBEngine::openDatabase() and
/// takeOver().
[[nodiscard]] Database openFile(const QString& path);

} // namespace orlo::store
