#include "reporting/FormulaFunctions.h"

#include <QLocale>

#include <array>
#include <cmath>

namespace orlo::reports
{

namespace
{

using Arguments = std::span<const Value>;
using Type = FormulaNode::Type;

constexpr int LongestText = 1'000'000;

double numberOf(const Value& value, Place place)
{
    if (value.isNumber() || value.isBool())
        return value.isBool() ? double(value.toBool()) : value.toDouble();
    if (value.isText())
        if (const auto read = platform::readNumber(value.toText()))
            return *read;
    throw ReportError(platform::TypeMismatch, QStringLiteral("A number is needed here."), place);
}

int wholeNumber(const Value& value, Place place)
{
    const double read = numberOf(value, place);
    if (!(read >= -LongestText && read <= LongestText))
        throw ReportError(platform::InvalidProcedureCall, QStringLiteral("The number is out of range."), place);
    return int(read);
}

store::DateTime date(const Value& value, Place place)
{
    if (value.isDate())
        return value.toDate();
    if (value.isText())
        if (const auto read = platform::readDate(value.toText()))
            return *read;
    throw ReportError(platform::TypeMismatch, QStringLiteral("A date is needed here."), place);
}

bool anyNull(Arguments arguments)
{
    return std::any_of(arguments.begin(), arguments.end(), [](const Value& value) { return value.isNull(); });
}

template <typename Compute>
Value ofText(const Value& value, Compute compute)
{
    return value.isNull() ? Value() : Value(compute(displayText(value)));
}

Value makeDate(Arguments a, Place place)
{
    if (anyNull(a))
        return {};
    if (a.size() == 1)
        return Value(date(a[0], place).date);
    if (a.size() == 2)
        throw ReportError(platform::SyntaxError, QStringLiteral("Date takes a year, a month and a day."), place);
    const QDate made(wholeNumber(a[0], place), wholeNumber(a[1], place), wholeNumber(a[2], place));
    if (!made.isValid() || made.year() < 100 || made.year() > 9999)
        throw ReportError(platform::TypeMismatch, QStringLiteral("There is no such date."), place);
    return Value(made);
}

Value toText(Arguments a, Place place)
{
    if (a[0].isNull())
        return {};
    if (a.size() == 1)
        return displayText(a[0]);
    if (a[1].isText()) {
        const store::DateTime when = date(a[0], place);
        return QLocale::c().toString(QDateTime(when.date, when.time), a[1].toText());
    }
    const int decimals = wholeNumber(a[1], place);
    if (decimals < 0 || decimals > 15)
        throw ReportError(platform::InvalidProcedureCall, QStringLiteral("Decimals run from 0 to 15."), place);
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(numberOf(a[0], place), 'f', decimals);
}

Value joined(Arguments a, Place)
{
    QString text;
    const QString separator = displayText(a[0]);
    for (const Value& value : a.subspan(1))
        if (const QString part = displayText(value).trimmed(); !part.isEmpty())
            text += (text.isEmpty() ? QString() : separator) + part;
    return text;
}

Value middle(Arguments a, Place place)
{
    const int start = wholeNumber(a[1], place);
    const int length = a.size() > 2 ? wholeNumber(a[2], place) : LongestText;
    if (start < 1 || length < 0)
        throw ReportError(platform::InvalidProcedureCall, QStringLiteral("Mid counts from 1."), place);
    return ofText(a[0], [&](const QString& text) { return text.mid(start - 1, length); });
}

Value dayPart(Arguments a, Place place, int (QDate::*part)() const)
{
    if (a[0].isNull())
        return {};
    return (date(a[0], place).date.*part)();
}

Value rounded(Arguments a, Place place)
{
    if (anyNull(a))
        return {};
    const int decimals = a.size() > 1 ? wholeNumber(a[1], place) : 0;
    const double scale = std::pow(10.0, std::clamp(decimals, 0, 15));
    return std::round(numberOf(a[0], place) * scale) / scale;
}

const std::array Functions{
    FormulaFunction{QLatin1StringView("IsNull"), 1, 1, Type::Condition,
                    [](Arguments a, Place) { return Value(a[0].isNull()); }},
    FormulaFunction{QLatin1StringView("IsEmpty"), 1, 1, Type::Condition,
                    [](Arguments a, Place) { return Value(displayText(a[0]).trimmed().isEmpty()); }},
    FormulaFunction{QLatin1StringView("Date"), 1, 3, Type::Date, makeDate},
    FormulaFunction{QLatin1StringView("ToText"), 1, 2, Type::Text, toText},
    FormulaFunction{QLatin1StringView("ToNumber"), 1, 1, Type::Number,
                    [](Arguments a, Place p) { return a[0].isNull() ? Value() : Value(numberOf(a[0], p)); }},
    FormulaFunction{QLatin1StringView("Join"), 2, 20, Type::Text, joined},
    FormulaFunction{QLatin1StringView("Trim"), 1, 1, Type::Text,
                    [](Arguments a, Place) { return ofText(a[0], [](const QString& t) { return t.trimmed(); }); }},
    FormulaFunction{QLatin1StringView("UpperCase"), 1, 1, Type::Text,
                    [](Arguments a, Place) { return ofText(a[0], [](const QString& t) { return t.toUpper(); }); }},
    FormulaFunction{QLatin1StringView("LowerCase"), 1, 1, Type::Text,
                    [](Arguments a, Place) { return ofText(a[0], [](const QString& t) { return t.toLower(); }); }},
    FormulaFunction{
        QLatin1StringView("Length"), 1, 1, Type::Number,
        [](Arguments a, Place) { return a[0].isNull() ? Value() : Value(qint64(displayText(a[0]).size())); }},
    FormulaFunction{QLatin1StringView("Left"), 2, 2, Type::Text,
                    [](Arguments a, Place p) {
                        const int n = std::max(0, wholeNumber(a[1], p));
                        return ofText(a[0], [n](const QString& t) { return t.left(n); });
                    }},
    FormulaFunction{QLatin1StringView("Right"), 2, 2, Type::Text,
                    [](Arguments a, Place p) {
                        const int n = std::max(0, wholeNumber(a[1], p));
                        return ofText(a[0], [n](const QString& t) { return t.right(n); });
                    }},
    FormulaFunction{QLatin1StringView("Mid"), 2, 3, Type::Text, middle},
    FormulaFunction{QLatin1StringView("Year"), 1, 1, Type::Number,
                    [](Arguments a, Place p) { return dayPart(a, p, &QDate::year); }},
    FormulaFunction{QLatin1StringView("Month"), 1, 1, Type::Number,
                    [](Arguments a, Place p) { return dayPart(a, p, &QDate::month); }},
    FormulaFunction{QLatin1StringView("Day"), 1, 1, Type::Number,
                    [](Arguments a, Place p) { return dayPart(a, p, &QDate::day); }},
    FormulaFunction{QLatin1StringView("Round"), 1, 2, Type::Number, rounded},
    FormulaFunction{QLatin1StringView("Abs"), 1, 1, Type::Number,
                    [](Arguments a, Place p) { return a[0].isNull() ? Value() : Value(std::abs(numberOf(a[0], p))); }},
};

struct NamedWord {
    QLatin1StringView name;
    Word word;
    Type type;
};

constexpr std::array Words{
    NamedWord{QLatin1StringView("PageNumber"), Word::PageNumber, Type::Number},
    NamedWord{QLatin1StringView("PageCount"), Word::PageCount, Type::Number},
    NamedWord{QLatin1StringView("PrintDate"), Word::PrintDate, Type::Date},
    NamedWord{QLatin1StringView("PrintTime"), Word::PrintTime, Type::Text},
    NamedWord{QLatin1StringView("ReportTitle"), Word::ReportTitle, Type::Text},
    NamedWord{QLatin1StringView("ProgramName"), Word::ProgramName, Type::Text},
    NamedWord{QLatin1StringView("RecordNumber"), Word::RecordNumber, Type::Number},
    NamedWord{QLatin1StringView("Repeated"), Word::Repeated, Type::Condition},
    NamedWord{QLatin1StringView("NewLine"), Word::NewLine, Type::Text},
};

struct NamedSummary {
    QLatin1StringView name;
    Summary summary;
};

constexpr std::array Summaries{
    NamedSummary{QLatin1StringView("Sum"), Summary::Sum},
    NamedSummary{QLatin1StringView("Count"), Summary::Count},
    NamedSummary{QLatin1StringView("Average"), Summary::Average},
    NamedSummary{QLatin1StringView("Minimum"), Summary::Minimum},
    NamedSummary{QLatin1StringView("Maximum"), Summary::Maximum},
    NamedSummary{QLatin1StringView("DistinctCount"), Summary::DistinctCount},
};

template <typename Table>
auto find(const Table& table, QStringView name)
{
    return std::find_if(table.begin(), table.end(),
                        [&](const auto& entry) { return name.compare(entry.name, Qt::CaseInsensitive) == 0; });
}

} // namespace

int functionIndex(QStringView name)
{
    const auto found = find(Functions, name);
    return found == Functions.end() ? -1 : int(found - Functions.begin());
}

const FormulaFunction& functionAt(int index)
{
    return Functions[std::size_t(index)];
}

std::optional<Word> wordNamed(QStringView name)
{
    const auto found = find(Words, name);
    return found == Words.end() ? std::nullopt : std::optional(found->word);
}

Type typeOf(Word word)
{
    return Words[std::size_t(word)].type;
}

std::optional<Summary> summaryNamed(QStringView name)
{
    const auto found = find(Summaries, name);
    return found == Summaries.end() ? std::nullopt : std::optional(found->summary);
}

} // namespace orlo::reports
