#pragma once

#include "reporting/Formula.h"

#include <functional>
#include <optional>

namespace orlo::reporting
{

/// A column of a query, and the kind of its values.
struct QueryColumn {
    QString name;
    FormulaNode::Type type = FormulaNode::Type::Any;
};

/// Yields the query column that a formula's field stands for; nothing where the field isn't the query's.
using ColumnOf = std::function<std::optional<QueryColumn>(const QString& field)>;

/// The parts of a condition, cut at its outermost "and", that the query can select itself, in the store's dialect;
/// empty if there are none. The rows that they let pass are still the formula's to judge. A comparison of unlike values
/// is not handed down: the formula fails for it, the store would make something of it.
[[nodiscard]] QString handDown(const Formula& formula, const ColumnOf& columnOf);

/// The same query with a condition on its own columns.
[[nodiscard]] QString withCondition(const QString& query, const QString& condition);

} // namespace orlo::reporting
