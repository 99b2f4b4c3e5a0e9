#pragma once

#include "jet/JetFile.h"

namespace orlo::jet
{

/// The width in bytes of a fixed-width field's value.
[[nodiscard]] int widthOf(const MdbColumn& field);

/// False for a contradictory definition: two fields with one number or place, a number out of range, a width that
/// doesn't fit the type. Reading by it would mix up fields.
[[nodiscard]] bool isSound(const Table& table);

/// The fields of the row at a place in a page; nothing if its offsets contradict each other or the definition, as in
/// damaged pages.
[[nodiscard]] std::optional<Row> rowAt(const Table& table, bool isJet4, const unsigned char* page, int start, int size);

/// Whether a value at a place in a page reaches into a sector of nothing but zeros, which no text contains.
[[nodiscard]] bool isWipedOut(const unsigned char* page, int start, int size);

} // namespace orlo::jet
