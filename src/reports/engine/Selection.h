#pragma once

#include "reports/engine/Formula.h"

#include <functional>
#include <optional>

namespace orlo::reports
{

/// Yields the query column that a formula's field stands for; nothing where the field isn't the query's.
using ColumnOf = std::function<std::optional<QString>(const QString& field)>;

/// The parts of a condition, cut at its outermost "and", that the query can select itself, in the store's dialect;
/// empty if there are none. The rows that they let pass are still the formula's to judge: it fails for a comparison of
/// unlike values, of which the store makes something.
[[nodiscard]] QString handDown(const Formula& formula, const ColumnOf& columnOf);

/// The same query with a condition on its own columns.
[[nodiscard]] QString withCondition(const QString& query, const QString& condition);

} // namespace orlo::reports
