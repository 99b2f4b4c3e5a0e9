#pragma once

#include "store/engine/Database.h"

/// What in a pack's records leads nowhere or stands twice, a line each: awards of nobody or of no award, people and
/// positions in dens that are gone, positions of adults who are gone, keys used twice, people entered twice, and the
/// mark of a missing birth date in another field. The program works with all of it.
[[nodiscard]] QStringList looseEnds(orlo::store::Database& database);
