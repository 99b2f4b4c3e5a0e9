#pragma once

#include "reports/engine/Formula.h"

#include <functional>
#include <optional>

namespace orlo::reports
{

/// Yields the query column that a formula's field stands for; nothing where the field isn't the query's.
using ColumnOf = std::function<std::optional<QString>(const QString& field)>;

/// A selection cut in two: what the query can select itself, and what is left for each row that it gives.
struct Selection {
    QString condition;             ///< in the store's dialect, empty if nothing can be handed down
    std::vector<FormulaNode> rest; ///< all must hold
};

/// Cuts a condition at its outermost "and"; the two parts together select exactly what the formula does.
[[nodiscard]] Selection handDown(const Formula& formula, const ColumnOf& columnOf);

/// The same query with a condition on its own columns.
[[nodiscard]] QString withCondition(const QString& query, const QString& condition);

} // namespace orlo::reports
