#pragma once

#include "reporting/Formula.h"

namespace orlo::reporting
{

/// A piece of a formula's text.
struct FormulaToken {
    enum class Kind { End, Number, Text, Date, Field, Name, Sign };
    Kind kind = Kind::End;
    QString text; ///< a field's or name's name, a sign's characters
    Value value;  ///< of a number, text or date
    Place place;
    QString written; ///< as it stands in the text
};

/// Cuts a formula's text into tokens, the last of them the end. Raises ReportError 3075 with line and column.
[[nodiscard]] std::vector<FormulaToken> formulaTokens(QStringView text, Place origin);

} // namespace orlo::reporting
