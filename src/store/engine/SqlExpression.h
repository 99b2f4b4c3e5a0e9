#pragma once

#include "store/engine/Sql.h"
#include "store/engine/SqlTokens.h"

#include <span>

namespace orlo::store
{

/// How tightly SQLite binds an expression's outermost operator, loosest first.
enum class Binding : quint8 { Or, And, Not, Comparison, Sum, Product, Join, Sign, Operand };

/// An expression by its place in the written text, with what is known of its value.
struct Expression {
    enum class Form : quint8 { Field, Null, Computed };

    qsizetype start = 0;
    qsizetype end = 0;
    ValueKind kind = ValueKind::Unknown;
    Binding binding = Binding::Operand;
    Form form = Form::Computed;
    bool whole = false;     ///< a whole number
    bool neverNull = false; ///< a literal, or a text that `&` has made
    QStringView name = {};  ///< of a field
    const KnownField* known = nullptr;
    QStringView literal = {}; ///< what stands in the quotes of a text

    [[nodiscard]] bool isNull() const { return form == Form::Null; }
};

/// Writes expressions as SQLite takes them, at the end of one text. Operands stand there next to each other, the last
/// of them at the text's end; what connects them comes between them. So the last one is always changed first.
class SqlWriter
{
public:
    QString sql;

    /// Writes a name in double quotes.
    void name(QStringView name);
    /// Tells the expression that was written from the place on.
    [[nodiscard]] Expression written(qsizetype start, ValueKind kind, Binding binding = Binding::Operand) const;

    /// `And` and `Or`, of which the binding tells.
    Expression connected(Expression left, Binding binding, Expression right);
    /// `Not`
    Expression negated(Expression condition);
    /// The test for Null, or for anything but Null.
    Expression nullTest(Expression tested, bool null);
    /// `=`, `<>`, `<`, `<=`, `>`, `>=`, as values of a kind that both have or can be given.
    Expression compared(Expression left, Symbol sign, Expression right);
    /// `Between`: the value and the ends.
    Expression between(std::span<Expression> values, bool negative);
    /// `In`: the value and the list.
    Expression oneOf(std::span<Expression> values, bool negative);
    /// `In` with the rows of a Select.
    Expression inRows(Expression value, bool negative, const Expression& rows);
    /// `Like` and `Not Like`, of texts.
    Expression like(Expression text, bool negative, Expression pattern);
    /// `&`
    Expression joined(Expression left, Expression right);
    /// `+`, `-`, `*`, `/`
    Expression calculated(Expression left, Symbol sign, Expression right);
    /// `-` before a number.
    Expression oppositeOf(Expression number);
    /// `IIf`: its kind is what both values have in common.
    Expression choice(Expression condition, Expression then, Expression otherwise);

    /// Makes the expression a value of the kind. What can't be one becomes Null; a literal that can't is refused.
    void as(ValueKind kind, Expression& value);
    /// Makes it a condition.
    void condition(Expression& value);
    /// Makes it what a field is given. What can't be a value of the field's kind stays, for the file to refuse.
    void give(Expression& value, const KnownField& field);
    /// Makes it something to sort, group and tell rows apart by: a text without regard to case.
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
