#pragma once

#include "store/engine/Database.h"

/// Loose ends in a pack's records, one per line: awards of nobody or of no award, people and positions in deleted dens,
/// positions of deleted adults, duplicate keys, people entered twice, and the mark of a missing birth date in another
/// field. The program works with all of these.
[[nodiscard]] QStringList looseEnds(orlo::store::Database& database);
