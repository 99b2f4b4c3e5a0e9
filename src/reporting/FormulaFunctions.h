#pragma once

#include "reporting/Formula.h"

#include <limits>
#include <optional>

namespace orlo::reporting
{

/// A function or an operator of the formula language: one line in a table, and the language has it.
struct FormulaFunction {
    using Arguments = std::span<const Value>;
    static constexpr int Any = std::numeric_limits<int>::max();

    QLatin1StringView name;
    int min; ///< fewest arguments
    int max;
    FormulaNode::Type type;
    Value (*compute)(Arguments arguments, Place place);
    bool takesNull = false;     ///< others give Null as soon as one of their arguments is Null
    bool compares = false;      ///< the first argument with each of the others
    QLatin1StringView sql = {}; ///< the same operator in the store's dialect, if it has it
};

/// Looks up by name without regard to case; null for an unknown one.
[[nodiscard]] const FormulaFunction* functionNamed(QStringView name);
/// An operator by its sign or word, which must be one of the language's.
[[nodiscard]] const FormulaFunction& operatorNamed(QLatin1StringView sign);

/// A word of the language, and what it gives.
struct WordEntry {
    QLatin1StringView name;
    Word word;
    FormulaNode::Type type;
};
/// Looks up without regard to case; null for an unknown one.
[[nodiscard]] const WordEntry* wordNamed(QStringView name);

/// A summary and whether it runs: "RunningSum" is the sum up to the current row.
struct SummaryName {
    Summary summary;
    bool running;
};
/// Looks up without regard to case; none for an unknown one.
[[nodiscard]] std::optional<SummaryName> summaryNamed(QStringView name);

/// An argument as a number or a date, a text by what it reads as. Raise ReportError 13 for what is neither.
[[nodiscard]] double numberArgument(const Value& value, Place place);
[[nodiscard]] store::DateTime dateArgument(const Value& value, Place place);
/// A whole number; raises ReportError 5 beyond a million.
[[nodiscard]] int wholeArgument(const Value& value, Place place);
/// A number by a pattern as "#,##0.00", "$0.00" or "0%".
[[nodiscard]] QString patternText(double number, const QString& pattern);

/// The functions of dates.
[[nodiscard]] std::span<const FormulaFunction> dateFunctions();

} // namespace orlo::reporting
