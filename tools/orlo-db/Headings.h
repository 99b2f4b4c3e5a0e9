#pragma once

#include "store/engine/Database.h"

/// The heading of a column in a CSV file.
struct Heading {
    const orlo::store::Field* field = nullptr; ///< null if the table has no such field
    bool onScreen = false;                     ///< named as in a window, where links are shown as texts
};

/// The field that a heading names, as in the file or in a window, ignoring case, blanks and punctuation.
[[nodiscard]] Heading headingOf(const orlo::store::TableDef& table, QStringView text);
/// The names of a table's fields, for a message.
[[nodiscard]] QString fieldNames(const orlo::store::TableDef& table);
