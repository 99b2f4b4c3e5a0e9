#pragma once

#include "store/engine/Database.h"

/// Fills an empty database with a pack's tables and rows, without people's data: names, addresses, numbers and other
/// texts become different ones of the same shape and size, notes and unknown texts become "x"s, dates move, and the
/// pack's number and name are removed. Keys, yes/no, the program's own words, Nulls and equalities are kept. Returns
/// the names of stored queries left out because others made them. Raises RuntimeError if something can't be read or
/// written.
QStringList scramble(orlo::store::Database& pack, orlo::store::Database& made);
