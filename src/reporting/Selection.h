#pragma once

#include "reporting/FormulaNode.h"

#include <functional>
#include <optional>

namespace orlo::reporting
{

/// A column of a query and its type.
struct QueryColumn {
    QString name;
    FormulaNode::Type type = FormulaNode::Type::Any;
};

/// Returns the query column of a formula's field; nothing if the query has none.
using ColumnOf = std::function<std::optional<QueryColumn>(const QString& field)>;

/// Those parts of a condition, split at its outermost "and", that the query itself can evaluate, in the store's
/// dialect; empty if none. The formula still checks the rows that pass. Comparisons of different types are never handed
/// down: the formula raises a failure for them where the store would convert.
[[nodiscard]] QString handDown(const Formula& formula, const ColumnOf& columnOf);

/// The query, restricted by a condition on its columns.
[[nodiscard]] QString withCondition(const QString& query, const QString& condition);

} // namespace orlo::reporting
