#pragma once

#include "store/engine/Sql.h"
#include "store/engine/SqlTokens.h"

namespace orlo::store
{

/// How tightly SQLite binds an expression's outermost operator, loosest first.
enum class Binding : quint8 { Or, And, Not, Comparison, Sum, Product, Join, Sign, Operand };

/// An expression in SQLite's words, with what is known of its value.
struct Expression {
    enum class Form : quint8 { Field, Null, Computed };

    QString sql = {};
    ValueKind kind = ValueKind::Unknown;
    Binding binding = Binding::Operand;
    Form form = Form::Computed;
    bool whole = false;     ///< a whole number
    bool neverNull = false; ///< a literal, or a text that `&` has made
    QStringView name = {};  ///< of a field

    [[nodiscard]] bool isNull() const { return form == Form::Null; }
};

/// `And` and `Or`, of which the binding tells.
[[nodiscard]] Expression connected(Expression left, Binding binding, Expression right);
[[nodiscard]] Expression negated(Expression condition);
/// The test for Null, or for anything but Null.
[[nodiscard]] Expression nullTest(Expression tested, bool null);
/// `=`, `<>`, `<`, `<=`, `>`, `>=`, as values of a kind that both have or can be given.
[[nodiscard]] Expression compared(Expression left, Keyword sign, Expression right);
[[nodiscard]] Expression between(Expression value, bool negative, Expression from, Expression to);
/// `In`, the value first.
[[nodiscard]] Expression oneOf(std::vector<Expression>& valueAndList, bool negative);
/// `In` with the rows of a Select.
[[nodiscard]] Expression inRows(Expression value, bool negative, const Expression& rows);
[[nodiscard]] Expression like(Expression text, bool negative, Expression pattern);
/// `&`
[[nodiscard]] Expression joined(Expression left, Expression right);
/// `+`, `-`, `*`, `/`
[[nodiscard]] Expression calculated(Expression left, Keyword sign, Expression right);
[[nodiscard]] Expression oppositeOf(Expression number);
[[nodiscard]] Expression choice(Expression condition, Expression then, Expression otherwise);
/// A call of one of SQLite's or the engine's functions.
[[nodiscard]] Expression call(QLatin1String function, const std::vector<Expression>& arguments, ValueKind result);

/// The expression as a value of the kind. What can't be one becomes Null.
[[nodiscard]] Expression as(ValueKind kind, Expression value);
/// As a condition.
[[nodiscard]] Expression condition(Expression value);
/// As what a field is given. What can't be a value of the field's kind stays as it is, for the file to refuse.
[[nodiscard]] Expression given(Expression value, const KnownField& field);
/// To sort, group and tell rows apart by: a text without regard to case.
[[nodiscard]] QString ordered(Expression value);
/// A name in double quotes.
[[nodiscard]] QString quotedName(QStringView name);

} // namespace orlo::store
