#include "reporting/FormulaFunctions.h"

#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>

namespace orlo::reporting
{

namespace
{

using Arguments = FormulaFunction::Arguments;
using Type = FormulaNode::Type;
using store::DateTime;

constexpr int FirstYear = 100;
constexpr int LastYear = 9999;
// More seconds, or months, than there are between the first and the last year.
constexpr double MaxSeconds = 1e12;
constexpr qint64 MaxMonths = 1'000'000;

[[noreturn]] void noSuchDate(Place place)
{
    throw ReportError(platform::TypeMismatch, QStringLiteral("There is no such date."), place);
}

// Date(text or date), Date(year, month, day)
Value makeDate(Arguments a, Place place)
{
    if (a.size() == 1)
        return Value(dateArgument(a[0], place).date);
    if (a.size() == 2)
        throw ReportError(platform::SyntaxError, QStringLiteral("Date takes a year, a month and a day."), place);
    const QDate made(wholeArgument(a[0], place), wholeArgument(a[1], place), wholeArgument(a[2], place));
    if (made.year() < FirstYear || made.year() > LastYear) // the year of an invalid date is 0
        noSuchDate(place);
    return Value(made);
}

// Monday is 2, Sunday 1.
int dayOfWeek(QDate date)
{
    return date.dayOfWeek() % 7 + 1;
}

QDateTime moment(const DateTime& when)
{
    return {when.date, when.time, Qt::UTC};
}

Value inBounds(const QDateTime& moved, Place place)
{
    if (moved.date().year() < FirstYear || moved.date().year() > LastYear)
        throw ReportError(platform::Overflow, QStringLiteral("The date is out of range."), place);
    return Value(DateTime{moved.date(), moved.time()});
}

// The Sunday that begins a day's week, as a day number.
qint64 weekOf(QDate date)
{
    return date.toJulianDay() - (dayOfWeek(date) - 1);
}

qint64 between(const QDateTime& from, const QDateTime& to, qint64 seconds)
{
    const auto units = [&](const QDateTime& when) {
        return qint64(std::floor(double(when.toSecsSinceEpoch()) / double(seconds)));
    };
    return units(to) - units(from);
}

// What the interval letters of DateAdd, DateDiff and DatePart stand for.
struct Interval {
    QLatin1StringView letters;
    QDateTime (*add)(const QDateTime& when, qint64 count);
    qint64 (*difference)(const QDateTime& from, const QDateTime& to);
    qint64 (*part)(const QDateTime& when);
};

QDateTime plusDays(const QDateTime& when, qint64 count)
{
    return when.addDays(count);
}
// A count of years or months for QDateTime; beyond the bound there is no date anyway.
int bounded(qint64 count)
{
    return int(std::clamp(count, -MaxMonths, MaxMonths));
}
qint64 days(const QDateTime& from, const QDateTime& to)
{
    return from.date().daysTo(to.date());
}

const auto Intervals = std::to_array<Interval>({
    {QLatin1StringView("yyyy"), [](const QDateTime& w, qint64 n) { return w.addYears(bounded(n)); },
     [](const QDateTime& a, const QDateTime& b) { return qint64(b.date().year() - a.date().year()); },
     [](const QDateTime& w) { return qint64(w.date().year()); }},
    {QLatin1StringView("q"), [](const QDateTime& w, qint64 n) { return w.addMonths(3 * bounded(n)); },
     [](const QDateTime& a, const QDateTime& b) {
         const auto quarter = [](QDate d) { return 4 * d.year() + (d.month() - 1) / 3; };
         return qint64(quarter(b.date()) - quarter(a.date()));
     },
     [](const QDateTime& w) { return qint64((w.date().month() + 2) / 3); }},
    {QLatin1StringView("m"), [](const QDateTime& w, qint64 n) { return w.addMonths(bounded(n)); },
     [](const QDateTime& a, const QDateTime& b) {
         return qint64(12 * (b.date().year() - a.date().year()) + b.date().month() - a.date().month());
     },
     [](const QDateTime& w) { return qint64(w.date().month()); }},
    {QLatin1StringView("y"), plusDays, days, [](const QDateTime& w) { return qint64(w.date().dayOfYear()); }},
    {QLatin1StringView("d"), plusDays, days, [](const QDateTime& w) { return qint64(w.date().day()); }},
    {QLatin1StringView("w"), plusDays, [](const QDateTime& a, const QDateTime& b) { return days(a, b) / 7; },
     [](const QDateTime& w) { return qint64(dayOfWeek(w.date())); }},
    {QLatin1StringView("ww"), [](const QDateTime& w, qint64 n) { return w.addDays(7 * n); },
     [](const QDateTime& a, const QDateTime& b) { return (weekOf(b.date()) - weekOf(a.date())) / 7; },
     [](const QDateTime& w) { return (weekOf(w.date()) - weekOf(QDate(w.date().year(), 1, 1))) / 7 + 1; }},
    {QLatin1StringView("h"), [](const QDateTime& w, qint64 n) { return w.addSecs(3600 * n); },
     [](const QDateTime& a, const QDateTime& b) { return between(a, b, 3600); },
     [](const QDateTime& w) { return qint64(w.time().hour()); }},
    {QLatin1StringView("n"), [](const QDateTime& w, qint64 n) { return w.addSecs(60 * n); },
     [](const QDateTime& a, const QDateTime& b) { return between(a, b, 60); },
     [](const QDateTime& w) { return qint64(w.time().minute()); }},
    {QLatin1StringView("s"), [](const QDateTime& w, qint64 n) { return w.addSecs(n); },
     [](const QDateTime& a, const QDateTime& b) { return between(a, b, 1); },
     [](const QDateTime& w) { return qint64(w.time().second()); }},
});

const Interval& intervalOf(const Value& letters, Place place)
{
    const QString wanted = displayText(letters);
    const auto known = std::find_if(Intervals.begin(), Intervals.end(), [&](const Interval& interval) {
        return wanted.compare(interval.letters, Qt::CaseInsensitive) == 0;
    });
    if (known == Intervals.end())
        throw ReportError(platform::InvalidProcedureCall,
                          QStringLiteral("\"%1\" is no interval: yyyy, q, m, y, d, w, ww, h, n or s.").arg(wanted),
                          place);
    return *known;
}

// WeekdayName(1 to 7[, short]), MonthName(1 to 12[, short])
template <int Last>
Value named(Arguments a, Place place)
{
    const int number = wholeArgument(a[0], place);
    if (number < 1 || number > Last)
        throw ReportError(platform::InvalidProcedureCall, QStringLiteral("The number is 1 to %1.").arg(Last), place);
    const auto format = a.size() > 1 && numberArgument(a[1], place) != 0 ? QLocale::ShortFormat : QLocale::LongFormat;
    if constexpr (Last == 12)
        return QLocale::c().monthName(number, format);
    else
        return QLocale::c().dayName(number == 1 ? 7 : number - 1, format);
}

template <int (QDate::*Part)() const>
Value partOf(Arguments a, Place place)
{
    return (dateArgument(a[0], place).date.*Part)();
}

constexpr auto DateFunctions = std::to_array<FormulaFunction>({
    {QLatin1StringView("Date"), 1, 3, Type::Date, makeDate},
    {QLatin1StringView("Year"), 1, 1, Type::Number, partOf<&QDate::year>},
    {QLatin1StringView("Month"), 1, 1, Type::Number, partOf<&QDate::month>},
    {QLatin1StringView("Day"), 1, 1, Type::Number, partOf<&QDate::day>},
    {QLatin1StringView("DayOfWeek"), 1, 1, Type::Number,
     [](Arguments a, Place p) -> Value { return dayOfWeek(dateArgument(a[0], p).date); }},
    {QLatin1StringView("WeekdayName"), 1, 2, Type::Text, named<7>},
    {QLatin1StringView("MonthName"), 1, 2, Type::Text, named<12>},
    {QLatin1StringView("DateAdd"), 3, 3, Type::Date,
     [](Arguments a, Place p) -> Value {
         const Interval& interval = intervalOf(a[0], p);
         const auto count = qint64(std::clamp(numberArgument(a[1], p), -MaxSeconds, MaxSeconds));
         return inBounds(interval.add(moment(dateArgument(a[2], p)), count), p);
     }},
    {QLatin1StringView("DateDiff"), 3, 3, Type::Number,
     [](Arguments a, Place p) -> Value {
         return intervalOf(a[0], p).difference(moment(dateArgument(a[1], p)), moment(dateArgument(a[2], p)));
     }},
    {QLatin1StringView("DatePart"), 2, 2, Type::Number,
     [](Arguments a, Place p) -> Value { return intervalOf(a[0], p).part(moment(dateArgument(a[1], p))); }},
});

} // namespace

std::span<const FormulaFunction> dateFunctions()
{
    return DateFunctions;
}

} // namespace orlo::reporting
