#include "reporting/FormulaFunctions.h"

#include "platform/Conversion.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cmath>

namespace orlo::reporting
{

namespace
{

using Arguments = FormulaFunction::Arguments;
using Type = FormulaNode::Type;

constexpr int MaxTextSize = 1'000'000;
constexpr int MaxDecimals = 15;
constexpr double FirstOfSixteenDigits = 1e15; // rounding to 15 digits would change whole numbers

const QLocale& english()
{
    static const QLocale locale(QLocale::English, QLocale::UnitedStates);
    return locale;
}

QString text(const Value& value)
{
    return displayText(value);
}

[[noreturn]] void refuse(const QString& message, Place place)
{
    throw ReportError(platform::InvalidProcedureCall, message, place);
}

int count(const Value& value, Place place)
{
    return std::max(0, wholeArgument(value, place));
}

// A number that prints as 0 has no sign.
bool hasDigitAboveZero(const QString& digits)
{
    return std::any_of(digits.begin(), digits.end(), [](QChar c) { return c >= u'1' && c <= u'9'; });
}

// ToText(value), ToText(number, decimals[, thousands[, point]]), ToText(number or date, pattern)
Value toText(Arguments a, Place place)
{
    if (a.size() == 1)
        return text(a[0]);
    if (a[1].isText()) {
        if (a[0].isNumber())
            return patternText(a[0].toDouble(), a[1].toText());
        const store::DateTime when = dateArgument(a[0], place);
        return QLocale::c().toString(QDateTime(when.date, when.time), a[1].toText());
    }
    const int decimals = wholeArgument(a[1], place);
    if (decimals < 0 || decimals > MaxDecimals)
        refuse(QStringLiteral("Decimals run from 0 to 15."), place);
    QString number = english().toString(numberArgument(a[0], place), 'f', decimals);
    if (number.startsWith(u'-') && !hasDigitAboveZero(number))
        number.remove(0, 1);
    if (a.size() > 2) {
        const QString point = a.size() > 3 ? text(a[3]) : QStringLiteral(".");
        const QString whole = number.section(u'.', 0, 0).replace(u',', text(a[2]));
        number = decimals > 0 ? whole + point + number.section(u'.', 1) : whole;
    }
    return number;
}

Value joined(Arguments a, Place)
{
    QString all;
    const QString separator = text(a[0]);
    for (const Value& value : a.subspan(1))
        if (const QString part = text(value); !QStringView(part).trimmed().isEmpty())
            all += (all.isEmpty() ? QString() : separator) + part;
    return all;
}

Value middle(Arguments a, Place place)
{
    const int start = wholeArgument(a[1], place);
    const int length = a.size() > 2 ? wholeArgument(a[2], place) : MaxTextSize;
    if (start < 1 || length < 0)
        refuse(QStringLiteral("Mid counts from 1."), place);
    return text(a[0]).mid(start - 1, length);
}

QString properCase(const QString& given)
{
    QString proper = given.toLower();
    bool begins = true;
    for (QChar& c : proper) {
        if (begins)
            c = c.toUpper();
        begins = !c.isLetterOrNumber() && c != u'\'';
    }
    return proper;
}

// InStr([start,] text, part): position from 1, 0 if not found
Value position(Arguments a, Place place)
{
    const bool started = a.size() == 3;
    const int start = started ? wholeArgument(a[0], place) : 1;
    if (start < 1)
        refuse(QStringLiteral("InStr counts from 1."), place);
    return qint64(text(a[started]).indexOf(text(a[started + 1]), start - 1, Qt::CaseInsensitive) + 1);
}

Value repeated(Arguments a, Place place)
{
    const QString part = text(a[0]);
    const int times = count(a[1], place);
    if (part.size() * times > MaxTextSize)
        refuse(QStringLiteral("The text is too long."), place);
    return part.repeated(times);
}

// The number at the start of a text, 0 for none.
Value leadingNumber(Arguments a, Place)
{
    static const QRegularExpression number(
        QStringLiteral("^\\s*([+-]?(?:[0-9]{1,3}(?:,[0-9]{3})+(?![0-9])|[0-9]*)(?:\\.[0-9]*)?(?:[eE][+-]?[0-9]+)?)"));
    bool read = false;
    const double value = number.match(text(a[0])).captured(1).remove(u',').toDouble(&read);
    return read ? value : 0;
}

// Rounds by decimal digits: 2.675 is stored as slightly less, but must still give 2.68.
double roundedTo(double number, int decimals, double (*round)(double))
{
    const double scale = std::pow(10.0, std::abs(decimals));
    const double scaled = decimals < 0 ? number / scale : number * scale;
    if (std::abs(scaled) >= FirstOfSixteenDigits)
        return decimals > 0 ? number : round(scaled) * scale;
    const double whole = round(QString::number(scaled, 'g', 15).toDouble());
    return decimals < 0 ? whole * scale : whole / scale;
}

template <double (*Round)(double)>
Value rounded(Arguments a, Place place)
{
    const int decimals = a.size() > 1 ? std::clamp(wholeArgument(a[1], place), -MaxDecimals, MaxDecimals) : 0;
    return roundedTo(numberArgument(a[0], place), decimals, Round);
}

double nearest(double number)
{
    return std::round(number);
}
double truncated(double number)
{
    return std::trunc(number);
}
double below(double number)
{
    return std::floor(number);
}
double above(double number)
{
    return std::ceil(number);
}

template <QString (*Change)(const QString&)>
Value changed(Arguments a, Place)
{
    return Change(text(a[0]));
}

constexpr auto Functions = std::to_array<FormulaFunction>({
    {QLatin1StringView("IsNull"), 1, 1, Type::Condition, [](Arguments a, Place) -> Value { return a[0].isNull(); }, true},
    {QLatin1StringView("IsEmpty"), 1, 1, Type::Condition,
     [](Arguments a, Place) -> Value { return text(a[0]).trimmed().isEmpty(); }, true},
    {QLatin1StringView("IsNumber"), 1, 1, Type::Condition,
     [](Arguments a, Place) -> Value { return a[0].isNumber() || platform::readNumber(text(a[0])).has_value(); }},
    {QLatin1StringView("IsDate"), 1, 1, Type::Condition,
     [](Arguments a, Place) -> Value { return a[0].isDate() || (a[0].isText() && platform::readDate(text(a[0]))); }},

    {QLatin1StringView("ToText"), 1, 4, Type::Text, toText},
    {QLatin1StringView("Join"), 2, 20, Type::Text, joined, true},
    {QLatin1StringView("Trim"), 1, 1, Type::Text, [](Arguments a, Place) -> Value { return text(a[0]).trimmed(); }},
    {QLatin1StringView("UpperCase"), 1, 1, Type::Text, [](Arguments a, Place) -> Value { return text(a[0]).toUpper(); }},
    {QLatin1StringView("LowerCase"), 1, 1, Type::Text, [](Arguments a, Place) -> Value { return text(a[0]).toLower(); }},
    {QLatin1StringView("ProperCase"), 1, 1, Type::Text, changed<properCase>},
    {QLatin1StringView("Length"), 1, 1, Type::Number,
     [](Arguments a, Place) -> Value { return qint64(text(a[0]).size()); }},
    {QLatin1StringView("Left"), 2, 2, Type::Text,
     [](Arguments a, Place p) -> Value { return text(a[0]).left(count(a[1], p)); }},
    {QLatin1StringView("Right"), 2, 2, Type::Text,
     [](Arguments a, Place p) -> Value { return text(a[0]).right(count(a[1], p)); }},
    {QLatin1StringView("Mid"), 2, 3, Type::Text, middle},
    {QLatin1StringView("InStr"), 2, 3, Type::Number, position},
    {QLatin1StringView("Replace"), 3, 3, Type::Text,
     [](Arguments a, Place) -> Value {
         const QString part = text(a[1]);
         return part.isEmpty() ? text(a[0]) : text(a[0]).replace(part, text(a[2]), Qt::CaseInsensitive);
     }},
    {QLatin1StringView("Repeat"), 2, 2, Type::Text, repeated},

    {QLatin1StringView("ToNumber"), 1, 1, Type::Number,
     [](Arguments a, Place p) -> Value { return numberArgument(a[0], p); }},
    {QLatin1StringView("Val"), 1, 1, Type::Number, leadingNumber},
    {QLatin1StringView("Round"), 1, 2, Type::Number, rounded<nearest>},
    {QLatin1StringView("Truncate"), 1, 2, Type::Number, rounded<truncated>},
    {QLatin1StringView("Int"), 1, 1, Type::Number, rounded<below>},
    {QLatin1StringView("Ceiling"), 1, 2, Type::Number, rounded<above>},
    {QLatin1StringView("Abs"), 1, 1, Type::Number,
     [](Arguments a, Place p) -> Value { return std::abs(numberArgument(a[0], p)); }},
    {QLatin1StringView("Sgn"), 1, 1, Type::Number,
     [](Arguments a, Place p) -> Value {
         const double number = numberArgument(a[0], p);
         return int(number > 0) - int(number < 0);
     }},
});

struct Alias {
    QLatin1StringView name;
    QLatin1StringView of;
};
constexpr auto Aliases = std::to_array<Alias>({
    {QLatin1StringView("Len"), QLatin1StringView("Length")},
    {QLatin1StringView("UCase"), QLatin1StringView("UpperCase")},
    {QLatin1StringView("LCase"), QLatin1StringView("LowerCase")},
    {QLatin1StringView("CStr"), QLatin1StringView("ToText")},
    {QLatin1StringView("CDbl"), QLatin1StringView("ToNumber")},
    {QLatin1StringView("Fix"), QLatin1StringView("Truncate")},
    {QLatin1StringView("Floor"), QLatin1StringView("Int")},
    {QLatin1StringView("IsNumeric"), QLatin1StringView("IsNumber")},
    {QLatin1StringView("ReplicateString"), QLatin1StringView("Repeat")},
    {QLatin1StringView("CDate"), QLatin1StringView("Date")},
    {QLatin1StringView("DateValue"), QLatin1StringView("Date")},
    {QLatin1StringView("DateSerial"), QLatin1StringView("Date")},
    {QLatin1StringView("Weekday"), QLatin1StringView("DayOfWeek")},
});

constexpr auto Words = std::to_array<WordEntry>({
    {QLatin1StringView("PageNumber"), Word::PageNumber, Type::Number},
    {QLatin1StringView("PageCount"), Word::PageCount, Type::Number},
    {QLatin1StringView("TotalPageCount"), Word::PageCount, Type::Number},
    {QLatin1StringView("PageNofM"), Word::PageOfPages, Type::Text},
    {QLatin1StringView("PrintDate"), Word::PrintDate, Type::Date},
    {QLatin1StringView("Today"), Word::PrintDate, Type::Date},
    {QLatin1StringView("CurrentDate"), Word::PrintDate, Type::Date},
    {QLatin1StringView("PrintTime"), Word::PrintTime, Type::Text},
    {QLatin1StringView("CurrentTime"), Word::PrintTime, Type::Text},
    {QLatin1StringView("ReportTitle"), Word::ReportTitle, Type::Text},
    {QLatin1StringView("ProgramName"), Word::ProgramName, Type::Text},
    {QLatin1StringView("RecordNumber"), Word::RecordNumber, Type::Number},
    {QLatin1StringView("GroupNumber"), Word::GroupNumber, Type::Number},
    {QLatin1StringView("OnFirstRecord"), Word::OnFirstRecord, Type::Condition},
    {QLatin1StringView("OnLastRecord"), Word::OnLastRecord, Type::Condition},
    {QLatin1StringView("Repeated"), Word::Repeated, Type::Condition},
    {QLatin1StringView("NewLine"), Word::NewLine, Type::Text},
});

struct SummaryEntry {
    QLatin1StringView name;
    Summary summary;
};
constexpr auto Summaries = std::to_array<SummaryEntry>({
    {QLatin1StringView("Sum"), Summary::Sum},
    {QLatin1StringView("Total"), Summary::Sum},
    {QLatin1StringView("Count"), Summary::Count},
    {QLatin1StringView("Average"), Summary::Average},
    {QLatin1StringView("Avg"), Summary::Average},
    {QLatin1StringView("Minimum"), Summary::Minimum},
    {QLatin1StringView("Min"), Summary::Minimum},
    {QLatin1StringView("Maximum"), Summary::Maximum},
    {QLatin1StringView("Max"), Summary::Maximum},
    {QLatin1StringView("DistinctCount"), Summary::DistinctCount},
    {QLatin1StringView("Median"), Summary::Median},
});

template <typename Table>
auto find(const Table& table, QStringView name)
{
    const auto found = std::find_if(table.begin(), table.end(), [&](const auto& entry) {
        return name.compare(entry.name, Qt::CaseInsensitive) == 0;
    });
    return found == table.end() ? nullptr : &*found;
}

} // namespace

double numberArgument(const Value& value, Place place)
{
    if (value.isNumber() || value.isBool())
        return value.isBool() ? double(value.toBool()) : value.toDouble();
    if (value.isText())
        if (const auto read = platform::readNumber(value.toText()))
            return *read;
    throw ReportError(platform::TypeMismatch, QStringLiteral("A number is needed here."), place);
}

int wholeArgument(const Value& value, Place place)
{
    const double read = numberArgument(value, place);
    if (!(read >= -MaxTextSize && read <= MaxTextSize))
        refuse(QStringLiteral("The number is out of range."), place);
    return int(read);
}

store::DateTime dateArgument(const Value& value, Place place)
{
    if (value.isDate())
        return value.toDate();
    if (value.isText())
        if (const auto read = platform::readDate(value.toText()))
            return *read;
    throw ReportError(platform::TypeMismatch, QStringLiteral("A date is needed here."), place);
}

QString patternText(double number, const QString& pattern)
{
    const auto isDigit = [](QChar c) { return c == u'0' || c == u'#'; };
    const auto first = std::find_if(pattern.begin(), pattern.end(), isDigit);
    if (first == pattern.end())
        return pattern;
    auto last = first;
    const auto isInside = [&](auto at) { // except the period of a sentence
        return (*at == u',' || *at == u'.') && at + 1 != pattern.end() && isDigit(*(at + 1));
    };
    while (last != pattern.end() && (isDigit(*last) || isInside(last)))
        ++last;
    const QString digits(first, last - first);
    const QString whole = digits.section(u'.', 0, 0);
    const QString fraction = digits.section(u'.', 1);
    if (QStringView(last, pattern.end()).contains(u'%'))
        number *= 100;
    const int decimals = std::min(int(fraction.size()), MaxDecimals);
    const QString shown = QString::number(std::abs(roundedTo(number, decimals, nearest)), 'f', decimals);
    QString front = shown.section(u'.', 0, 0);
    QString back = shown.section(u'.', 1);
    while (back.size() > fraction.count(u'0') && back.endsWith(u'0'))
        back.chop(1);
    if (front == u"0") // there again if the pattern has a 0
        front.clear();
    front = front.rightJustified(whole.count(u'0'), u'0');
    if (whole.contains(u','))
        for (qsizetype at = front.size() - 3; at > 0; at -= 3)
            front.insert(at, u',');
    const bool negative = number < 0 && hasDigitAboveZero(front + back);
    return (negative ? QStringLiteral("-") : QString()) + QString(pattern.begin(), first - pattern.begin()) + front +
           (back.isEmpty() ? QString() : u'.' + back) + QString(last, pattern.end() - last);
}

const FormulaFunction* functionNamed(QStringView name)
{
    if (const Alias* alias = find(Aliases, name))
        return functionNamed(QString(alias->of));
    const FormulaFunction* known = find(Functions, name);
    return known ? known : find(dateFunctions(), name);
}

const WordEntry* wordNamed(QStringView name)
{
    return find(Words, name);
}

std::optional<SummaryName> summaryNamed(QStringView name)
{
    const bool running = name.startsWith(QLatin1StringView("Running"), Qt::CaseInsensitive);
    const SummaryEntry* known = find(Summaries, running ? name.mid(7) : name);
    return known ? std::optional(SummaryName{known->summary, running}) : std::nullopt;
}

} // namespace orlo::reporting
