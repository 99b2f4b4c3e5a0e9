#pragma once

#include "store/engine/Sql.h"
#include "store/engine/SqlTokens.h"

#include <span>

namespace orlo::store
{

/// Precedence of an expression's outermost operator in SQLite, loosest first.
enum class Binding : quint8 { Or, And, Not, Comparison, Sum, Product, Join, Sign, Operand };

/// An expression in the written text, with what is known of its value.
struct Expression {
    enum class Form : quint8 { Field, Null, Computed };

    qsizetype start = 0;
    qsizetype end = 0;
    ValueKind kind = ValueKind::Unknown;
    Binding binding = Binding::Operand;
    Form form = Form::Computed;
    bool whole = false;     ///< a whole number
    bool neverNull = false; ///< a literal or the result of `&`
    QStringView name = {};  ///< of a field
    const KnownField* known = nullptr;
    QStringView literal = {}; ///< a text literal, without quotes

    [[nodiscard]] bool isNull() const { return form == Form::Null; }
};

/// Writes expressions in SQLite's SQL. Operands are appended next to each other, and operators are inserted between
/// them afterwards; so the last operand must be changed first.
class SqlWriter
{
public:
    QString sql;

    void name(QStringView name);
    /// The expression written from a position on.
    [[nodiscard]] Expression written(qsizetype start, ValueKind kind, Binding binding = Binding::Operand) const;

    /// `And` or `Or`, by the binding.
    Expression connected(Expression left, Binding binding, Expression right);
    /// `Not`
    Expression negated(Expression condition);
    /// `Is Null` or `Is Not Null`.
    Expression nullTest(Expression tested, bool null);
    /// `=`, `<>`, `<`, `<=`, `>`, `>=`, after conversion to a common kind.
    Expression compared(Expression left, Symbol sign, Expression right);
    /// `Between` of a value and two ends.
    Expression between(std::span<Expression> values, bool negative);
    /// `In` with a value and a list.
    Expression oneOf(std::span<Expression> values, bool negative);
    /// `In` with a Select.
    Expression inRows(Expression value, bool negative, const Expression& rows);
    /// `Like` or `Not Like`.
    Expression like(Expression text, bool negative, Expression pattern);
    /// `&`
    Expression joined(Expression left, Expression right);
    /// `+`, `-`, `*`, `/`
    Expression calculated(Expression left, Symbol sign, Expression right);
    /// `-` before a number.
    Expression oppositeOf(Expression number);
    /// `IIf`; unknown in kind if both values differ.
    Expression choice(Expression condition, Expression then, Expression otherwise);

    /// Converts to a kind. What can't be converted becomes Null; such a literal is refused.
    void as(ValueKind kind, Expression& value);
    /// Converts to a condition.
    void condition(Expression& value);
    /// Converts to the kind of a field. What can't be converted stays, for the file to refuse.
    void give(Expression& value, const KnownField& field);
    /// Makes texts sort, group and compare case-insensitively.
    void order(Expression& value);

private:
    void enclose(Expression& value, QLatin1String before, QLatin1String after);
    void call(QLatin1String function, Expression& value, ValueKind result);
    void bracket(Expression& value, Binding least);
    void beside(ValueKind kind, Expression& value);
    void asTruth(Expression& value);
    void joinable(Expression& value);
    void makeAlike(std::span<Expression> values, QLatin1String first, QLatin1String next);
    Expression binary(Expression left, Binding binding, QLatin1String sign, Expression right, ValueKind kind);
    Expression sum(Expression left, bool plus, Expression right);
};

} // namespace orlo::store
