#pragma once

#include "store/engine/Database.h"

/// Fills an empty database with a pack's tables and rows, but nothing of people: names, addresses, numbers and other
/// texts become others of the same shape and size, notes and texts that the program doesn't know a row of "x", dates
/// move, the pack's own number and name go. Keys, yes/no, the program's own words, missing values, and what was equal
/// stay so. Returns the names of the stored queries that it left out because others made them. Raises RuntimeError for
/// what can't be read or written.
QStringList scramble(orlo::store::Database& pack, orlo::store::Database& made);
