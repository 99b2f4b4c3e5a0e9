#pragma once

#include "reporting/Formula.h"

#include <optional>

namespace orlo::reports
{

/// A function of the formula language.
struct FormulaFunction {
    QLatin1StringView name;
    int least; ///< fewest arguments
    int most;
    FormulaNode::Type type;
    Value (*compute)(std::span<const Value> arguments, Place place);
};

/// Looks up by name without regard to case; -1 and nothing for an unknown one.
[[nodiscard]] int functionIndex(QStringView name);
[[nodiscard]] const FormulaFunction& functionAt(int index);
[[nodiscard]] std::optional<Word> wordNamed(QStringView name);
[[nodiscard]] FormulaNode::Type typeOf(Word word);
[[nodiscard]] std::optional<Summary> summaryNamed(QStringView name);

} // namespace orlo::reports
