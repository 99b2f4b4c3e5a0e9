#pragma once

#include "jet/JetFile.h"

namespace orlo::jet
{

/// The bytes that a field's value takes where its width is fixed.
[[nodiscard]] int widthOf(const MdbColumn& field);

/// False for a definition that contradicts itself: two fields with one number or in one place, a number that no row
/// reaches, a width that its type doesn't have. It would read one field's bytes as another's, or none at all.
[[nodiscard]] bool isSound(const Table& table);

/// The fields of a row that lies there in a page; nothing where its ends and its fields' places contradict each other
/// or the table's definition, as they do in bytes that were lost.
[[nodiscard]] std::optional<Row> rowAt(const Table& table, bool isJet4, const unsigned char* page, int start, int size);

/// Whether a value that stands there in a page reaches into a sector of nothing but zeros, which no text does.
[[nodiscard]] bool isWipedOut(const unsigned char* page, int start, int size);

} // namespace orlo::jet
