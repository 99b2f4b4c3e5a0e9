#include "store/engine/SqlExpression.h"

#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "platform/Text.h"

#include <algorithm>
#include <array>

namespace orlo::store
{

namespace
{

[[noreturn]] void raiseSyntax(const QString& detail)
{
    throw platform::RuntimeError(platform::SyntaxError, QStringLiteral("Database"),
                                 platform::standardDescription(platform::SyntaxError) + u' ' + detail);
}

using Kind = ValueKind;
using Form = Expression::Form;

bool mayBeText(const Expression& value)
{
    return !value.isNull() && (value.kind == Kind::Text || value.kind == Kind::Unknown);
}

// The kind in which two values are compared.
Kind common(const Expression& a, const Expression& b)
{
    const auto either = [&](Kind kind) { return a.kind == kind || b.kind == kind; };
    if (a.kind == b.kind || b.isNull())
        return a.kind;
    if (a.isNull())
        return b.kind;
    if (either(Kind::Unknown))
        return Kind::Unknown;
    return either(Kind::Text) && either(Kind::Date) ? Kind::Date : Kind::Number;
}

// Such a sum of a text and another kind would be Null in almost every row. Literals are checked by their value.
bool addsToText(const Expression& text, const Expression& other)
{
    const bool literal = !text.literal.isNull() || other.neverNull;
    return text.kind == Kind::Text && !mayBeText(other) && !other.isNull() && !literal;
}

// In order of the symbols.
constexpr const char* Comparisons[] = {" = ", " <> ", " < ", " <= ", " > ", " >= "};

} // namespace

void SqlWriter::name(QStringView name)
{
    if (std::ranges::find(name, u'"') != name.end()) {
        sql += u'"' + name.toString().replace(u'"', QLatin1String("\"\"")) + u'"';
        return;
    }
    // A statement consists of names for the most part, so each is appended in one go.
    const qsizetype at = sql.size();
    sql.resize(at + name.size() + 2);
    QChar* const to = sql.data() + at;
    to[0] = u'"';
    *std::copy(name.begin(), name.end(), to + 1) = u'"';
}

Expression SqlWriter::written(qsizetype start, Kind kind, Binding binding) const
{
    return {start, sql.size(), kind, binding};
}

void SqlWriter::enclose(Expression& value, QLatin1String before, QLatin1String after)
{
    sql.insert(value.end, after);
    sql.insert(value.start, before);
    value = {value.start, value.end + before.size() + after.size(), value.kind};
}

void SqlWriter::call(QLatin1String function, Expression& value, Kind result)
{
    enclose(value, function, QLatin1String(")"));
    value.kind = result;
}

void SqlWriter::bracket(Expression& value, Binding least)
{
    if (value.binding < least)
        enclose(value, QLatin1String("("), QLatin1String(")"));
}

// No brackets around chains of one operator: SQLite limits the depth of nesting.
Expression SqlWriter::binary(Expression left, Binding binding, QLatin1String sign, Expression right, Kind kind)
{
    as(kind, right);
    bracket(right, Binding(int(binding) + 1));
    sql.insert(right.start, sign);
    as(kind, left);
    bracket(left, binding);
    return written(left.start, kind, binding);
}

// Converts the values to a common kind and writes the operators between them; a condition becomes its number, so no
// value needs brackets. Texts get the collation on the first value, which SQLite goes by.
void SqlWriter::makeAlike(std::span<Expression> values, QLatin1String first, QLatin1String next)
{
    Expression all = values[0];
    bool text = mayBeText(all);
    for (const Expression& value : values.subspan(1)) {
        text = text && mayBeText(value);
        all.kind = common(all, value);
        if (all.isNull())
            all.form = value.form;
    }
    // Compared as numbers, because true is less than false.
    const Kind kind = all.kind == Kind::Truth ? Kind::Number : all.kind;
    const bool truth = std::ranges::any_of(values, [](const Expression& value) { return value.kind == Kind::Truth; });
    const auto becomeAlike = [&](Expression& value) {
        truth&& value.kind == Kind::Text ? asTruth(value) : beside(kind, value);
    };
    for (std::size_t i = values.size() - 1; i > 0; --i) {
        becomeAlike(values[i]);
        sql.insert(values[i].start, i == 1 ? first : next);
    }
    becomeAlike(values[0]);
    if (kind == Kind::Text || (kind == Kind::Unknown && text))
        order(values[0]);
}

// Beside an unknown kind, only yes/no is converted, to its number.
void SqlWriter::beside(Kind kind, Expression& value)
{
    as(kind == Kind::Unknown && value.kind == Kind::Truth ? Kind::Number : kind, value);
}

// A text compared with a yes/no may say yes or no.
void SqlWriter::asTruth(Expression& value)
{
    const bool word = std::ranges::any_of(std::array{u"yes", u"no", u"true", u"false"},
                                          [&](const char16_t* one) { return platform::sameName(one, value.literal); });
    if (!value.literal.isNull() && !word && !platform::readNumber(value.literal))
        raiseSyntax(QStringLiteral("(\"%1\" is neither yes nor no.)").arg(value.literal));
    call(QLatin1String("as_truth("), value, Kind::Number);
}

Expression SqlWriter::connected(Expression left, Binding binding, Expression right)
{
    condition(right);
    bracket(right, Binding::Comparison);
    sql.insert(right.start, QLatin1String(binding == Binding::And ? " AND " : " OR "));
    condition(left);
    if (left.binding != binding)
        bracket(left, Binding::Comparison);
    return written(left.start, Kind::Truth, binding);
}

Expression SqlWriter::negated(Expression value)
{
    condition(value);
    bracket(value, Binding::Comparison);
    sql.insert(value.start, QLatin1String("NOT "));
    return written(value.start, Kind::Truth, Binding::Not);
}

Expression SqlWriter::nullTest(Expression tested, bool null)
{
    bracket(tested, Binding::Sum);
    sql += QLatin1String(null ? " IS NULL" : " IS NOT NULL");
    return written(tested.start, Kind::Truth, Binding::Comparison);
}

Expression SqlWriter::compared(Expression left, Symbol sign, Expression right)
{
    if ((sign == Symbol::Equal || sign == Symbol::Unequal) && (left.isNull() || right.isNull())) {
        Expression& tested = right.isNull() ? left : right;
        const Expression& null = right.isNull() ? right : left;
        sql.remove(null.start, null.end - null.start);
        tested.start = left.start;
        tested.end = sql.size();
        return nullTest(tested, sign == Symbol::Equal);
    }
    std::array sides{left, right};
    makeAlike(sides, QLatin1String(Comparisons[int(sign) - int(Symbol::Equal)]), {});
    return written(left.start, Kind::Truth, Binding::Comparison);
}

Expression SqlWriter::between(std::span<Expression> values, bool negative)
{
    makeAlike(values, QLatin1String(negative ? " NOT BETWEEN " : " BETWEEN "), QLatin1String(" AND "));
    return written(values[0].start, Kind::Truth, Binding::Comparison);
}

Expression SqlWriter::oneOf(std::span<Expression> values, bool negative)
{
    makeAlike(values, QLatin1String(negative ? " NOT IN (" : " IN ("), QLatin1String(","));
    sql += u')';
    return written(values[0].start, Kind::Truth, Binding::Comparison);
}

Expression SqlWriter::inRows(Expression value, bool negative, const Expression& rows)
{
    sql.insert(rows.start, QLatin1String(negative ? " NOT IN " : " IN "));
    if (value.kind != Kind::Unknown)
        as(rows.kind, value);
    if (mayBeText(value))
        order(value);
    else
        bracket(value, Binding::Sum);
    return written(value.start, Kind::Truth, Binding::Comparison);
}

Expression SqlWriter::like(Expression text, bool negative, Expression pattern)
{
    as(Kind::Text, pattern);
    sql.insert(pattern.start, QLatin1String(negative ? " NOT LIKE " : " LIKE "));
    as(Kind::Text, text);
    return written(text.start, Kind::Truth, Binding::Comparison);
}

void SqlWriter::joinable(Expression& value)
{
    const bool neverNull = value.neverNull;
    as(Kind::Text, value);
    if (!neverNull)
        enclose(value, QLatin1String("ifnull("), QLatin1String(",'')"));
}

Expression SqlWriter::joined(Expression left, Expression right)
{
    joinable(right);
    sql.insert(right.start, QLatin1String(" || "));
    joinable(left);
    Expression text = written(left.start, Kind::Text, Binding::Join);
    text.neverNull = true;
    return text;
}

Expression SqlWriter::sum(Expression left, bool plus, Expression right)
{
    if (plus && (addsToText(left, right) || addsToText(right, left)))
        raiseSyntax(QStringLiteral("(\"+\" of a text and a value of another kind. Instead: a & b.)"));
    const bool dates = left.kind == Kind::Date || right.kind == Kind::Date;
    const bool days = !plus && left.kind == Kind::Date && right.kind == Kind::Date;
    const auto textual = [](const Expression& value) { return value.kind == Kind::Text || value.isNull(); };
    if (plus && textual(left) && textual(right))
        return binary(left, Binding::Join, QLatin1String(" || "), right, Kind::Text);
    if (plus && mayBeText(left) && mayBeText(right)) {
        sql.insert(right.start, u',');
        sql.insert(left.start, QLatin1String("join_or_add("));
        sql += u')';
        return written(left.start, Kind::Unknown);
    }
    // Stored dates are texts, so they are converted to numbers first.
    Expression number = binary(left, Binding::Sum, QLatin1String(plus ? " + " : " - "), right, Kind::Number);
    if (dates && !days)
        as(Kind::Date, number);
    return number;
}

Expression SqlWriter::calculated(Expression left, Symbol sign, Expression right)
{
    if (sign == Symbol::Plus || sign == Symbol::Minus)
        return sum(left, sign == Symbol::Plus, right);
    if (sign == Symbol::Star)
        return binary(left, Binding::Product, QLatin1String(" * "), right, Kind::Number);
    const Expression quotient = binary(left, Binding::Product, QLatin1String(" / "), right, Kind::Number);
    sql.insert(quotient.start, QLatin1String("1.0 * ")); // 5/2 is 2.5
    return written(quotient.start, Kind::Number, Binding::Product);
}

Expression SqlWriter::oppositeOf(Expression number)
{
    const bool whole = number.whole;
    const bool neverNull = number.neverNull;
    as(Kind::Number, number);
    bracket(number, Binding::Operand);
    sql.insert(number.start, u'-');
    number = written(number.start, Kind::Number, Binding::Sign);
    number.whole = whole;
    number.neverNull = neverNull;
    return number;
}

Expression SqlWriter::choice(Expression test, Expression then, Expression otherwise)
{
    const auto either = [&](Kind kind) { return then.kind == kind || otherwise.kind == kind; };
    const bool differ = then.kind != otherwise.kind && !then.isNull() && !otherwise.isNull();
    const bool mixed = differ && (either(Kind::Text) || either(Kind::Date));
    const Kind kind = mixed ? Kind::Unknown : common(then, otherwise);
    const bool whole = then.whole && otherwise.whole;
    // A date among mixed values is shown as a date. An unknown field may hold dates of its own, so that beside it
    // nothing is converted.
    const auto become = [&](Expression& value, const Expression& other) {
        const bool dates = other.kind == Kind::Unknown && other.form == Form::Field;
        mixed&& value.kind == Kind::Date && !dates ? as(Kind::Text, value) : beside(kind, value);
    };
    const Expression first = then;
    become(otherwise, first);
    sql.insert(otherwise.start, u',');
    become(then, otherwise);
    sql.insert(then.start, u',');
    condition(test);
    sql.insert(test.start, QLatin1String("iif("));
    sql += u')';
    Expression chosen = written(test.start, kind);
    chosen.whole = whole;
    return chosen;
}

void SqlWriter::as(Kind kind, Expression& value)
{
    if (value.kind == kind || value.isNull() || kind == Kind::Unknown)
        return;
    if (value.kind == Kind::Truth) {
        bracket(value, Binding::Operand);
        enclose(value, QLatin1String("-"), {});
        value.kind = Kind::Number;
        value.binding = Binding::Sign;
        value.whole = true;
    }
    if (kind == Kind::Date)
        call(QLatin1String("as_date("), value, kind);
    else if (kind == Kind::Text)
        call(QLatin1String(value.kind == Kind::Date ? "date_text(" : "as_text("), value, kind);
    else if (value.kind != Kind::Number) {
        if (!value.literal.isNull() && !platform::readNumber(value.literal))
            raiseSyntax(QStringLiteral("(\"%1\" is no number.)").arg(value.literal));
        call(QLatin1String("as_number("), value, Kind::Number);
    }
    if (kind == Kind::Truth) {
        enclose(value, {}, QLatin1String(" <> 0"));
        value.kind = kind;
        value.binding = Binding::Comparison;
    }
}

void SqlWriter::condition(Expression& value)
{
    if (value.kind == Kind::Text || value.kind == Kind::Date)
        as(Kind::Number, value);
}

void SqlWriter::give(Expression& value, const KnownField& field)
{
    if (value.kind == Kind::Unknown)
        return;
    const bool text = value.kind == Kind::Text;
    if (field.kind == Kind::Date && (text || value.kind == Kind::Number))
        call(QLatin1String("to_date("), value, Kind::Date);
    else if (!text || field.kind == Kind::Text)
        as(field.kind, value);
    if (field.kind == Kind::Number && field.whole && !value.whole)
        call(QLatin1String("as_whole("), value, Kind::Number);
    else if (field.kind == Kind::Number && value.form == Form::Computed && value.kind == Kind::Number && !value.whole)
        call(QLatin1String("as_finite("), value, Kind::Number);
}

void SqlWriter::order(Expression& value)
{
    // Left alone if SQLite already compares the column that way, so that a sort by a grouped field needs no second
    // sorting.
    if (!mayBeText(value) || (value.known && value.known->caseless))
        return;
    bracket(value, Binding::Operand);
    enclose(value, {}, QLatin1String(" COLLATE NOCASE"));
}

} // namespace orlo::store
