#pragma once

#include "store/engine/Database.h"

/// What stands at the head of a column of a CSV file.
struct Heading {
    const orlo::store::Field* field = nullptr; ///< none where the table has no such field
    bool onScreen = false; ///< named as a window has it, where what points to a row shows as its text
};

/// The field that a heading names: as the file has it or as a window shows it, without regard to case, blanks and
/// punctuation.
[[nodiscard]] Heading headingOf(const orlo::store::TableDef& table, QStringView text);
/// The names of a table's fields, for a message.
[[nodiscard]] QString fieldNames(const orlo::store::TableDef& table);
