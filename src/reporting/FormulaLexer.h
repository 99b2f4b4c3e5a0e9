#pragma once

#include "reporting/ReportError.h"
#include "store/engine/Value.h"

#include <vector>

namespace orlo::reporting
{

using store::Value;

/// A token of a formula.
struct FormulaToken {
    enum class Kind { End, Number, Text, Date, Field, Name, Sign };
    Kind kind = Kind::End;
    QString text; ///< a field's or word's name, or an operator
    Value value;  ///< of a number, text or date literal
    Place place;
    QString written; ///< as written
};

/// Splits a formula's text into tokens; the last one marks the end. Raises ReportError 3075 with line and column.
[[nodiscard]] std::vector<FormulaToken> formulaTokens(QStringView text, Place origin);

} // namespace orlo::reporting
