#pragma once

#include "reporting/FormulaNode.h"

#include <limits>
#include <optional>
#include <span>

namespace orlo::reporting
{

/// A function or operator of the formula language. A row in a table adds a function; an operator also needs its place
/// in the grammar (FormulaParser.cpp).
struct FormulaFunction {
    using Arguments = std::span<const Value>;
    static constexpr int Any = std::numeric_limits<int>::max();

    QLatin1StringView name;
    int min; ///< fewest arguments
    int max;
    FormulaNode::Type type;
    Value (*compute)(Arguments arguments, Place place);
    bool takesNull = false;     ///< others yield Null if any argument is Null
    bool compares = false;      ///< compares the first argument with each of the others
    QLatin1StringView sql = {}; ///< the same operator in the store's dialect, if any
};

/// Looks up by name, ignoring case; null if unknown.
[[nodiscard]] const FormulaFunction* functionNamed(QStringView name);
/// An operator by its sign or word, which must exist.
[[nodiscard]] const FormulaFunction& operatorNamed(QLatin1StringView sign);

/// A word of the language and its meaning.
struct WordEntry {
    QLatin1StringView name;
    Word word;
    FormulaNode::Type type;
};
/// Looks up ignoring case; null if unknown.
[[nodiscard]] const WordEntry* wordNamed(QStringView name);

/// A summary and whether it is running: "RunningSum" is the sum up to the current row.
struct SummaryName {
    Summary summary;
    bool running;
};
/// Looks up ignoring case; nothing if unknown.
[[nodiscard]] std::optional<SummaryName> summaryNamed(QStringView name);

/// An argument as a number or a date; texts are converted. Raise ReportError 13 if that fails.
[[nodiscard]] double numberArgument(const Value& value, Place place);
[[nodiscard]] store::DateTime dateArgument(const Value& value, Place place);
/// A whole number; raises ReportError 5 above a million.
[[nodiscard]] int wholeArgument(const Value& value, Place place);
/// Formats a number by a pattern such as "#,##0.00", "$0.00" or "0%".
[[nodiscard]] QString patternText(double number, const QString& pattern);

/// The date functions.
[[nodiscard]] std::span<const FormulaFunction> dateFunctions();

} // namespace orlo::reporting
