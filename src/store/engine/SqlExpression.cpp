#include "store/engine/SqlExpression.h"

#include <QStringBuilder>

#include <array>
#include <span>

namespace orlo::store
{

namespace
{

using Kind = ValueKind;
using Form = Expression::Form;

QString within(Expression value, Binding least)
{
    return value.binding >= least ? std::move(value.sql) : QString(u'(' % value.sql % u')');
}

Expression called(QLatin1String function, const Expression& argument, Kind result)
{
    return {function + u'(' + argument.sql + u')', result};
}

// Chains of one operator go on without brackets: SQLite's parser takes only so many of them.
Expression binary(Expression left, Binding binding, QLatin1String sign, const Expression& right, Kind kind)
{
    QString sql = within(left, binding);
    sql += sign;
    sql += within(right, Binding(int(binding) + 1));
    return {std::move(sql), kind, binding};
}

QString caseBlind(const Expression& text)
{
    return within(text, Binding::Operand) % QLatin1String(" COLLATE NOCASE");
}

bool mayBeText(const Expression& value)
{
    return !value.isNull() && (value.kind == Kind::Text || value.kind == Kind::Unknown);
}

// The kind in which values of two kinds compare.
Kind common(const Expression& a, const Expression& b)
{
    const auto either = [&](Kind kind) { return a.kind == kind || b.kind == kind; };
    if (a.kind == b.kind || b.isNull())
        return a.kind;
    if (a.isNull())
        return b.kind;
    if (either(Kind::Unknown))
        return Kind::Unknown;
    if (either(Kind::Text))
        return either(Kind::Date) ? Kind::Date : Kind::Text;
    return Kind::Number;
}

// Beside a value of unknown kind only a truth is told by its number.
Expression asCommon(Kind kind, Expression value)
{
    if (kind == Kind::Unknown)
        return value.kind == Kind::Truth ? as(Kind::Number, std::move(value)) : std::move(value);
    return as(kind, std::move(value));
}

QLatin1String textOf(Keyword sign)
{
    switch (sign) {
    case Keyword::Equal:
        return QLatin1String(" = ");
    case Keyword::Unequal:
        return QLatin1String(" <> ");
    case Keyword::Less:
        return QLatin1String(" < ");
    case Keyword::LessOrEqual:
        return QLatin1String(" <= ");
    case Keyword::Greater:
        return QLatin1String(" > ");
    default:
        return QLatin1String(" >= ");
    }
}

// Makes the values those of a kind that they have in common, texts without regard to case: SQLite goes by the first.
void makeAlike(std::span<Expression> values)
{
    Expression all = {{}, values[0].kind, {}, values[0].form};
    bool text = mayBeText(all);
    for (const Expression& value : values.subspan(1)) {
        text = text && mayBeText(value);
        all.kind = common(all, value);
        if (all.isNull())
            all.form = value.form;
    }
    // Of two truths the true one is the lesser.
    const Kind kind = all.kind == Kind::Truth ? Kind::Number : all.kind;
    text = kind == Kind::Text || (kind == Kind::Unknown && text);
    for (Expression& value : values) {
        value = asCommon(kind, std::move(value));
        value.sql = text && &value == &values.front() ? caseBlind(value) : within(std::move(value), Binding::Sum);
    }
}

QString joinable(Expression value)
{
    const bool neverNull = value.neverNull;
    value = as(Kind::Text, std::move(value));
    return neverNull ? std::move(value.sql) : QLatin1String("ifnull(") + value.sql + QLatin1String(",'')");
}

Expression asSum(Expression left, Keyword sign, Expression right)
{
    const bool plus = sign == Keyword::Plus;
    const bool dates = left.kind == Kind::Date || right.kind == Kind::Date;
    const bool days = !plus && left.kind == Kind::Date && right.kind == Kind::Date;
    if (plus && left.kind == Kind::Text && right.kind == Kind::Text)
        return binary(std::move(left), Binding::Join, QLatin1String(" || "), right, Kind::Text);
    if (plus && mayBeText(left) && mayBeText(right))
        return call(QLatin1String("join_or_add"), {left, right}, Kind::Unknown);
    // As dates stand in the file they can't be reckoned with.
    Expression number = binary(as(Kind::Number, std::move(left)), Binding::Sum, QLatin1String(plus ? " + " : " - "),
                               as(Kind::Number, std::move(right)), Kind::Number);
    return dates && !days ? as(Kind::Date, std::move(number)) : number;
}

} // namespace

Expression connected(Expression left, Binding binding, Expression right)
{
    left = condition(std::move(left));
    QString sql = left.binding == binding ? std::move(left.sql) : within(left, Binding::Comparison);
    sql += binding == Binding::And ? QLatin1String(" AND ") : QLatin1String(" OR ");
    sql += within(condition(std::move(right)), Binding::Comparison);
    return {std::move(sql), Kind::Truth, binding};
}

Expression negated(Expression value)
{
    return {QLatin1String("NOT ") + within(condition(std::move(value)), Binding::Comparison), Kind::Truth,
            Binding::Not};
}

Expression nullTest(Expression tested, bool null)
{
    return {within(tested, Binding::Sum) + QLatin1String(null ? " IS NULL" : " IS NOT NULL"), Kind::Truth,
            Binding::Comparison};
}

Expression compared(Expression left, Keyword sign, Expression right)
{
    const bool equality = sign == Keyword::Equal || sign == Keyword::Unequal;
    if (equality && (left.isNull() || right.isNull()))
        return nullTest(right.isNull() ? std::move(left) : std::move(right), sign == Keyword::Equal);
    std::array sides{std::move(left), std::move(right)};
    makeAlike(sides);
    return {sides[0].sql % textOf(sign) % sides[1].sql, Kind::Truth, Binding::Comparison};
}

Expression between(Expression value, bool negative, Expression from, Expression to)
{
    std::array values{std::move(value), std::move(from), std::move(to)};
    makeAlike(values);
    return {values[0].sql % QLatin1String(negative ? " NOT BETWEEN " : " BETWEEN ") % values[1].sql %
                QLatin1String(" AND ") % values[2].sql,
            Kind::Truth, Binding::Comparison};
}

Expression oneOf(std::vector<Expression>& valueAndList, bool negative)
{
    makeAlike(valueAndList);
    QString sql = valueAndList[0].sql;
    sql += negative ? QLatin1String(" NOT IN ") : QLatin1String(" IN ");
    for (std::size_t i = 1; i < valueAndList.size(); ++i)
        sql += (i == 1 ? u'(' : u',') + valueAndList[i].sql;
    return {sql + u')', Kind::Truth, Binding::Comparison};
}

Expression inRows(Expression value, bool negative, const Expression& rows)
{
    if (value.kind != Kind::Unknown)
        value = as(rows.kind, std::move(value));
    QString sql = mayBeText(value) ? caseBlind(value) : within(value, Binding::Sum);
    sql += (negative ? QLatin1String(" NOT IN ") : QLatin1String(" IN ")) + rows.sql;
    return {std::move(sql), Kind::Truth, Binding::Comparison};
}

Expression like(Expression text, bool negative, Expression pattern)
{
    QString sql = within(as(Kind::Text, std::move(text)), Binding::Sum);
    sql += negative ? QLatin1String(" NOT LIKE ") : QLatin1String(" LIKE ");
    sql += within(as(Kind::Text, std::move(pattern)), Binding::Sum);
    return {std::move(sql), Kind::Truth, Binding::Comparison};
}

Expression joined(Expression left, Expression right)
{
    QString sql = joinable(std::move(left));
    sql += QLatin1String(" || ");
    sql += joinable(std::move(right));
    Expression text{std::move(sql), Kind::Text, Binding::Join};
    text.neverNull = true;
    return text;
}

Expression calculated(Expression left, Keyword sign, Expression right)
{
    if (sign == Keyword::Plus || sign == Keyword::Minus)
        return asSum(std::move(left), sign, std::move(right));
    left = as(Kind::Number, std::move(left));
    right = as(Kind::Number, std::move(right));
    if (sign == Keyword::Star)
        return binary(std::move(left), Binding::Product, QLatin1String(" * "), right, Kind::Number);
    Expression real{QLatin1String("CAST(") + left.sql + QLatin1String(" AS REAL)"), Kind::Number};
    return binary(std::move(real), Binding::Product, QLatin1String(" / "), right, Kind::Number);
}

Expression oppositeOf(Expression number)
{
    const bool whole = number.whole;
    number = as(Kind::Number, std::move(number));
    return {u'-' + within(number, Binding::Operand), Kind::Number, Binding::Sign, Form::Computed, whole};
}

Expression choice(Expression test, Expression then, Expression otherwise)
{
    Kind kind = common(then, otherwise);
    if (kind == Kind::Text || kind == Kind::Date)
        kind = then.kind == otherwise.kind || then.isNull() || otherwise.isNull() ? kind : Kind::Unknown;
    then = asCommon(kind, std::move(then));
    otherwise = asCommon(kind, std::move(otherwise));
    return {QLatin1String("iif(") + condition(std::move(test)).sql + u',' + then.sql + u',' + otherwise.sql + u')',
            kind};
}

Expression call(QLatin1String function, const std::vector<Expression>& arguments, ValueKind result)
{
    QString sql = function + u'(';
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (i > 0)
            sql += u',';
        sql += arguments[i].sql;
    }
    return {sql + u')', result};
}

Expression as(ValueKind kind, Expression value)
{
    if (value.kind == kind || value.isNull() || kind == Kind::Unknown)
        return value;
    switch (kind) {
    case Kind::Number:
        if (value.kind == Kind::Truth)
            return {u'-' + within(value, Binding::Operand), Kind::Number, Binding::Sign, Form::Computed, true};
        return called(QLatin1String("as_number"), value, Kind::Number);
    case Kind::Text:
        if (value.kind == Kind::Truth)
            value = as(Kind::Number, std::move(value));
        return called(value.kind == Kind::Date ? QLatin1String("date_text") : QLatin1String("as_text"), value,
                      Kind::Text);
    case Kind::Date:
        return called(QLatin1String("as_date"), as(value.kind == Kind::Truth ? Kind::Number : value.kind, value),
                      Kind::Date);
    default:
        value = as(Kind::Number, std::move(value));
        return {within(value, Binding::Sum) + QLatin1String(" <> 0"), Kind::Truth, Binding::Comparison};
    }
}

Expression condition(Expression value)
{
    const bool number = value.kind == Kind::Text || value.kind == Kind::Date;
    return number ? as(Kind::Number, std::move(value)) : value;
}

Expression given(Expression value, const KnownField& field)
{
    if (value.isNull() || value.kind == Kind::Unknown)
        return value;
    const bool stays = value.kind == Kind::Text;
    switch (field.kind) {
    case Kind::Number:
        if (!stays)
            value = as(Kind::Number, std::move(value));
        return field.whole && !value.whole ? called(QLatin1String("as_whole"), value, Kind::Number) : value;
    case Kind::Text:
        return as(Kind::Text, std::move(value));
    case Kind::Date:
        return stays ? called(QLatin1String("to_date"), value, Kind::Date) : as(Kind::Date, std::move(value));
    case Kind::Truth:
        return stays ? std::move(value) : as(Kind::Truth, std::move(value));
    case Kind::Unknown:
        break;
    }
    return value;
}

QString ordered(Expression value)
{
    return mayBeText(value) ? caseBlind(value) : std::move(value.sql);
}

QString quotedName(QStringView name)
{
    if (name.contains(u'"'))
        return u'"' % name.toString().replace(u'"', QLatin1String("\"\"")) % u'"';
    return u'"' % name % u'"';
}

} // namespace orlo::store
