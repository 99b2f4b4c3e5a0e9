#include "platform/Conversion.h"
#include "platform/Text.h"
#include "reporting/FormulaFunctions.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orlo::reporting
{

namespace
{

using Arguments = FormulaFunction::Arguments;
using Type = FormulaNode::Type;

constexpr double MaxDays = 4e6;

[[noreturn]] void raiseWrongKind(const QString& message, Place place)
{
    throw ReportError(platform::TypeMismatch, message, place);
}

double operand(const Value& value, Place place)
{
    if (value.isText())
        raiseWrongKind(QStringLiteral("A number is needed here, ToNumber makes one of a text."), place);
    return numberArgument(value, place);
}

Value checked(double result, Place place)
{
    if (!std::isfinite(result))
        throw ReportError(platform::Overflow, QStringLiteral("The number is too large."), place);
    return result;
}

Value sum(const Value& a, const Value& b, bool subtract, Place place)
{
    if (a.isText() && b.isText() && !subtract)
        return QString(a.toText() + b.toText());
    if (a.isDate() && b.isDate() && subtract)
        return b.toDate().date.daysTo(a.toDate().date);
    if (a.isDate() && b.isNumber()) {
        const double days = b.toDouble();
        store::DateTime moved = a.toDate();
        if (std::abs(days) < MaxDays)
            moved.date = moved.date.addDays(qint64(subtract ? -days : days));
        if (std::abs(days) >= MaxDays || moved.date.year() < 100 || moved.date.year() > 9999)
            throw ReportError(platform::Overflow, QStringLiteral("The date is out of range."), place);
        return moved;
    }
    return checked(operand(a, place) + (subtract ? -1 : 1) * operand(b, place), place);
}

double divisor(const Value& value, Place place)
{
    const double number = operand(value, place);
    if (number == 0)
        throw ReportError(platform::DivisionByZero, QStringLiteral("Division by zero."), place);
    return number;
}

// An operator of any number of operands, evaluated from left to right.
template <Value (*Two)(const Value& a, const Value& b, Place place)>
Value folded(Arguments a, Place place)
{
    Value result = a[0];
    for (const Value& next : a.subspan(1))
        result = Two(result, next, place);
    return result;
}

Value added(const Value& a, const Value& b, Place place)
{
    return sum(a, b, false, place);
}
Value subtracted(const Value& a, const Value& b, Place place)
{
    return sum(a, b, true, place);
}
Value multiplied(const Value& a, const Value& b, Place place)
{
    return checked(operand(a, place) * operand(b, place), place);
}
Value divided(const Value& a, const Value& b, Place place)
{
    const double by = divisor(b, place);
    return checked(operand(a, place) / by, place);
}
Value dividedWhole(const Value& a, const Value& b, Place place)
{
    const double by = divisor(b, place);
    return checked(std::trunc(operand(a, place) / by), place);
}
Value remainder(const Value& a, const Value& b, Place place)
{
    const double by = divisor(b, place);
    return std::fmod(operand(a, place), by);
}
Value power(const Value& a, const Value& b, Place place)
{
    return checked(std::pow(operand(a, place), operand(b, place)), place);
}

template <typename Holds>
constexpr auto comparison(QLatin1StringView sign, Holds)
{
    return FormulaFunction{sign,
                           2,
                           2,
                           Type::Condition,
                           [](Arguments a, Place place) -> Value { return Holds()(compareValues(a[0], a[1], place)); },
                           false,
                           true,
                           sign};
}

// True if the first argument lies in any of the ranges that follow, two arguments each.
Value inRanges(Arguments a, Place place)
{
    if (a[0].isNull())
        return {};
    bool open = false;
    for (std::size_t i = 1; i < a.size(); i += 2) {
        if (a[i].isNull() || a[i + 1].isNull())
            open = true;
        else if (compareValues(a[0], a[i], place) >= 0 && compareValues(a[0], a[i + 1], place) <= 0)
            return true;
    }
    return open ? Value() : Value(false);
}

// {Text}[3], {Text}[1 to 3]; negative positions count from the end
Value part(Arguments a, Place place)
{
    const QString text = displayText(a[0]);
    const auto index = [&](const Value& value) {
        const int given = wholeArgument(value, place);
        if (given == 0)
            throw ReportError(platform::InvalidProcedureCall, QStringLiteral("Characters are counted from 1."), place);
        return given > 0 ? qsizetype(given) : text.size() + 1 + given;
    };
    const qsizetype first = std::max<qsizetype>(index(a[1]), 1);
    const qsizetype last = index(a[a.size() - 1]);
    return text.mid(first - 1, std::max<qsizetype>(last - first + 1, 0));
}

Value textsJoined(Arguments a, Place)
{
    QString text;
    for (const Value& value : a)
        text += displayText(value);
    return text;
}

Value negated(Arguments a, Place place)
{
    if (!a[0].isBool())
        raiseWrongKind(QStringLiteral("A condition is needed here."), place);
    return !a[0].toBool();
}

constexpr int Any = FormulaFunction::Any;
constexpr auto Operators = std::to_array<FormulaFunction>({
    comparison(QLatin1StringView("="), [](int order) { return order == 0; }),
    comparison(QLatin1StringView("<>"), [](int order) { return order != 0; }),
    comparison(QLatin1StringView("<"), [](int order) { return order < 0; }),
    comparison(QLatin1StringView("<="), [](int order) { return order <= 0; }),
    comparison(QLatin1StringView(">"), [](int order) { return order > 0; }),
    comparison(QLatin1StringView(">="), [](int order) { return order >= 0; }),
    {QLatin1StringView("in"), 3, Any, Type::Condition, inRanges, true, true, QLatin1StringView("in")},
    {QLatin1StringView("within"), 2, 2, Type::Condition,
     [](Arguments a, Place) -> Value { return displayText(a[1]).contains(displayText(a[0]), Qt::CaseInsensitive); }},
    {QLatin1StringView("like"), 2, 2, Type::Condition,
     [](Arguments a, Place) -> Value { return platform::matchesLike(displayText(a[0]), displayText(a[1])); }},
    {QLatin1StringView("startswith"), 2, 2, Type::Condition,
     [](Arguments a, Place) -> Value { // Qt takes an empty text for none, so it begins with nothing
         const QString part = displayText(a[1]);
         return part.isEmpty() || displayText(a[0]).startsWith(part, Qt::CaseInsensitive);
     }},
    {QLatin1StringView("not"), 1, 1, Type::Condition, negated, false, false, QLatin1StringView("Not")},
    {QLatin1StringView("negative"), 1, 1, Type::Number,
     [](Arguments a, Place place) -> Value { return -operand(a[0], place); }},
    {QLatin1StringView("&"), 2, Any, Type::Text, textsJoined, true},
    {QLatin1StringView("+"), 2, Any, Type::Any, folded<added>},
    {QLatin1StringView("-"), 2, Any, Type::Any, folded<subtracted>},
    {QLatin1StringView("*"), 2, Any, Type::Number, folded<multiplied>},
    {QLatin1StringView("/"), 2, Any, Type::Number, folded<divided>},
    {QLatin1StringView("\\"), 2, Any, Type::Number, folded<dividedWhole>},
    {QLatin1StringView("mod"), 2, Any, Type::Number, folded<remainder>},
    {QLatin1StringView("^"), 2, Any, Type::Number, folded<power>},
    {QLatin1StringView("["), 2, 3, Type::Text, part},
});

} // namespace

const FormulaFunction& operatorNamed(QLatin1StringView sign)
{
    return *std::find_if(Operators.begin(), Operators.end(), [&](const auto& known) { return known.name == sign; });
}

int compareValues(const Value& a, const Value& b, Place place)
{
    const auto sign = [](auto left, auto right) { return int(right < left) - int(left < right); };
    const auto numeric = [](const Value& value) { return value.isNumber() || value.isBool(); };
    if (numeric(a) && numeric(b))
        return sign(numberArgument(a, place), numberArgument(b, place));
    if (a.isText() && b.isText())
        return platform::compareText(a.toText(), b.toText());
    if (a.isDate() && b.isDate())
        return sign(a.toDate(), b.toDate());
    const Value& other = a.isText() ? b : a;
    if ((a.isText() || b.isText()) && other.isNumber())
        if (const auto read = platform::readNumber((a.isText() ? a : b).toText()))
            return a.isText() ? sign(*read, b.toDouble()) : sign(a.toDouble(), *read);
    if ((a.isText() || b.isText()) && other.isDate())
        if (const auto read = platform::readDate((a.isText() ? a : b).toText()))
            return a.isText() ? sign(*read, b.toDate()) : sign(a.toDate(), *read);
    raiseWrongKind(QStringLiteral("Values of different kinds can't be compared."), place);
}

} // namespace orlo::reporting
