#include "store/engine/Functions.h"

#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "platform/Text.h"
#include "store/engine/Rows.h"
#include "store/engine/Value.h"

#include <QString>

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <type_traits>

namespace orlo::store
{

namespace
{

constexpr int Pure = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
constexpr int Changing = SQLITE_UTF8 | SQLITE_INNOCUOUS;

using Arguments = sqlite3_value**;

std::string_view utf8(sqlite3_value* value)
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return text ? std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value))) : std::string_view();
}

QString text(sqlite3_value* value)
{
    const std::string_view bytes = utf8(value);
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

bool isNull(sqlite3_value* value)
{
    return sqlite3_value_type(value) == SQLITE_NULL;
}

void giveText(sqlite3_context* context, QStringView result)
{
    const QByteArray bytes = result.toUtf8();
    sqlite3_result_text64(context, bytes.constData(), static_cast<sqlite3_uint64>(bytes.size()), SQLITE_TRANSIENT,
                          SQLITE_UTF8);
}

// A number of characters.
qsizetype count(sqlite3_value* value)
{
    return static_cast<qsizetype>(std::clamp<sqlite3_int64>(sqlite3_value_int64(value), 0, 1 << 30));
}

void like(sqlite3_context* context, int, Arguments arguments)
{
    if (!isNull(arguments[0]) && !isNull(arguments[1]))
        sqlite3_result_int(context, platform::matchesLikeUtf8(utf8(arguments[1]), utf8(arguments[0])));
}

// A function of a text; Null for Null.
template <auto Of>
void ofText(sqlite3_context* context, int, Arguments arguments)
{
    if (isNull(arguments[0]))
        return;
    const auto result = Of(text(arguments[0]), arguments + 1);
    if constexpr (std::is_same_v<decltype(result), const QString>)
        giveText(context, result);
    else
        sqlite3_result_int64(context, result);
}

void mid(sqlite3_context* context, int size, Arguments arguments)
{
    if (isNull(arguments[0]))
        return;
    const qsizetype start = count(arguments[1]);
    if (start < 1)
        return sqlite3_result_error(context, "Mid counts from 1", -1);
    giveText(context, text(arguments[0]).mid(start - 1, size > 2 ? count(arguments[2]) : -1));
}

template <auto Of>
void ofDate(sqlite3_context* context, int, Arguments arguments)
{
    if (isNull(arguments[0]))
        return;
    if (const auto date = platform::readDate(text(arguments[0])))
        sqlite3_result_int(context, Of(date->date));
}

// A date counts as its day, a text as the number it reads as.
std::optional<double> numberOf(sqlite3_value* value)
{
    if (isNull(value))
        return std::nullopt;
    if (sqlite3_value_type(value) != SQLITE_TEXT)
        return sqlite3_value_double(value);
    const std::string_view bytes = utf8(value);
    if (const auto date = readIso({bytes.data(), static_cast<qsizetype>(bytes.size())}))
        return Value(*date).toDouble();
    return platform::readNumber(text(value));
}

void asNumber(sqlite3_context* context, int, Arguments arguments)
{
    if (sqlite3_value_type(arguments[0]) == SQLITE_INTEGER)
        sqlite3_result_value(context, arguments[0]);
    else if (const auto number = numberOf(arguments[0]))
        sqlite3_result_double(context, *number);
}

void asText(sqlite3_context* context, int, Arguments arguments)
{
    if (sqlite3_value_type(arguments[0]) == SQLITE_FLOAT)
        giveText(context, platform::numberText(sqlite3_value_double(arguments[0]) + 0.0));
    else if (!isNull(arguments[0]))
        giveText(context, text(arguments[0]));
}

std::optional<DateTime> dateOf(sqlite3_value* value)
{
    if (sqlite3_value_type(value) == SQLITE_TEXT)
        return platform::readDate(text(value));
    try {
        return Value(sqlite3_value_double(value)).toDate();
    } catch (const platform::RuntimeError&) {
        return std::nullopt; // out of range
    }
}

// A value that isn't a date yields Null in comparisons. One to be stored is passed on, for the file to refuse.
template <bool Stays>
void asDate(sqlite3_context* context, int, Arguments arguments)
{
    if (isNull(arguments[0]))
        return;
    if (const auto date = dateOf(arguments[0]))
        giveText(context, QString::fromLatin1(isoText(*date)));
    else if (Stays)
        sqlite3_result_value(context, arguments[0]);
}

void dateText(sqlite3_context* context, int, Arguments arguments)
{
    if (isNull(arguments[0]))
        return;
    if (const auto date = dateOf(arguments[0]))
        giveText(context, platform::shortDate(*date));
}

// A text compared with a yes/no.
void asTruth(sqlite3_context* context, int, Arguments arguments)
{
    const QString word = text(arguments[0]);
    for (const bool yes : {true, false})
        for (const char16_t* said : {yes ? u"yes" : u"no", yes ? u"true" : u"false"})
            if (platform::sameName(word, said))
                return sqlite3_result_int(context, yes ? -1 : 0);
    asNumber(context, 1, arguments);
}

void asFinite(sqlite3_context* context, int, Arguments arguments)
{
    if (sqlite3_value_type(arguments[0]) == SQLITE_FLOAT && !std::isfinite(sqlite3_value_double(arguments[0])))
        return sqlite3_result_error(context, "number overflow", -1);
    sqlite3_result_value(context, arguments[0]);
}

// Rounds half to even, as a record set does.
void asWhole(sqlite3_context* context, int, Arguments arguments)
{
    const int type = sqlite3_value_type(arguments[0]);
    const auto number = type == SQLITE_FLOAT || type == SQLITE_TEXT ? numberOf(arguments[0]) : std::nullopt;
    if (number && std::abs(*number) < 1e15)
        sqlite3_result_int64(context, static_cast<sqlite3_int64>(std::nearbyint(*number)));
    else
        sqlite3_result_value(context, arguments[0]);
}

// `+` of operands whose kinds are known only at run time.
void joinOrAdd(sqlite3_context* context, int, Arguments arguments)
{
    if (sqlite3_value_type(arguments[0]) == SQLITE_TEXT && sqlite3_value_type(arguments[1]) == SQLITE_TEXT)
        return giveText(context, text(arguments[0]) + text(arguments[1]));
    const auto left = numberOf(arguments[0]);
    const auto right = numberOf(arguments[1]);
    if (left && right)
        sqlite3_result_double(context, *left + *right);
}

void findText(sqlite3_context* context, int, Arguments arguments)
{
    if (!isNull(arguments[0]) && !isNull(arguments[1]))
        sqlite3_result_int64(context, text(arguments[0]).indexOf(text(arguments[1]), 0, Qt::CaseInsensitive) + 1);
}

void roundEven(sqlite3_context* context, int size, Arguments arguments)
{
    if (isNull(arguments[0]))
        return;
    const double scale =
        std::pow(10.0, static_cast<double>(size > 1 ? std::min<qsizetype>(count(arguments[1]), 15) : 0));
    sqlite3_result_double(context, std::nearbyint(sqlite3_value_double(arguments[0]) * scale) / scale);
}

void date(sqlite3_context* context, int, Arguments)
{
    giveText(context, platform::today().toString(Qt::ISODate));
}

void now(sqlite3_context* context, int, Arguments)
{
    giveText(context, platform::today().toString(Qt::ISODate) + QTime::currentTime().toString(u" HH:mm:ss"));
}

int compareBytes(void*, int sizeA, const void* a, int sizeB, const void* b)
{
    return platform::compareUtf8({static_cast<const char*>(a), static_cast<std::size_t>(sizeA)},
                                 {static_cast<const char*>(b), static_cast<std::size_t>(sizeB)});
}

using Kind = ValueKind;

// A function without arguments gives another value each time.
constexpr DialectFunction Dialect[] = {
    {u"abs", u"abs", "n", 0, Kind::Number},
    {u"date", u"date", "", 0, Kind::Date, date},
    {u"day", u"day", "d", 0, Kind::Number, ofDate<[](const QDate& date) { return date.day(); }>},
    {u"instr", u"find_text", "tt", 0, Kind::Number, findText},
    {u"lcase", u"lcase", "t", 0, Kind::Text, ofText<[](const QString& text, Arguments) { return text.toLower(); }>},
    {u"left", u"\"left\"", "tn", 0, Kind::Text,
     ofText<[](const QString& text, Arguments size) { return text.left(count(*size)); }>},
    {u"len", u"len", "t", 0, Kind::Number, ofText<[](const QString& text, Arguments) { return text.size(); }>},
    {u"ltrim", u"ltrim", "t", 0, Kind::Text},
    {u"mid", u"mid", "tnn", 1, Kind::Text, mid},
    {u"month", u"month", "d", 0, Kind::Number, ofDate<[](const QDate& date) { return date.month(); }>},
    {u"now", u"now", "", 0, Kind::Date, now},
    {u"replace", u"replace", "ttt", 0, Kind::Text},
    {u"right", u"\"right\"", "tn", 0, Kind::Text,
     ofText<[](const QString& text, Arguments size) { return text.right(count(*size)); }>},
    {u"round", u"round_even", "nn", 1, Kind::Number, roundEven},
    {u"rtrim", u"rtrim", "t", 0, Kind::Text},
    {u"trim", u"trim", "t", 0, Kind::Text},
    {u"ucase", u"ucase", "t", 0, Kind::Text, ofText<[](const QString& text, Arguments) { return text.toUpper(); }>},
    {u"year", u"year", "d", 0, Kind::Number, ofDate<[](const QDate& date) { return date.year(); }>},
};

// What operators and conversions of the dialect become.
struct Conversion {
    const char* name;
    int arguments;
    void (*call)(sqlite3_context*, int, Arguments);
};

constexpr Conversion Conversions[] = {
    {"like", 2, like},          {"as_number", 1, asNumber},    {"as_text", 1, asText},       {"as_truth", 1, asTruth},
    {"as_finite", 1, asFinite}, {"as_date", 1, asDate<false>}, {"to_date", 1, asDate<true>}, {"date_text", 1, dateText},
    {"as_whole", 1, asWhole},   {"join_or_add", 2, joinOrAdd},
};

// SQLite's own functions that the translator uses, or that views of earlier versions may use. None of them reads files,
// reaches into the engine or makes large results out of small input.
constexpr const char* Allowed[] = {
    "abs",    "avg",   "coalesce", "count", "datetime", "glob",    "ifnull", "iif",   "instr",
    "length", "lower", "ltrim",    "max",   "min",      "nullif",  "round",  "rtrim", "replace",
    "substr", "sum",   "total",    "trim",  "typeof",   "unicode", "upper",
};

QStringView nameOf(const DialectFunction& function)
{
    const bool quoted = function.sql.startsWith(u'"');
    return quoted ? function.sql.sliced(1, function.sql.size() - 2) : function.sql;
}

} // namespace

void addFunctions(sqlite3* db)
{
    // The file's text columns use NOCASE, which every SQLite tool has; ours works beyond ASCII, too.
    sqlite3_create_collation(db, "NOCASE", SQLITE_UTF8, nullptr, compareBytes);
    for (const DialectFunction& function : Dialect)
        for (std::size_t size = function.arguments.size() - function.optional;
             function.call && size <= function.arguments.size(); ++size)
            sqlite3_create_function(db, nameOf(function).toLatin1().constData(), static_cast<int>(size),
                                    size == 0 ? Changing : Pure, nullptr, function.call, nullptr, nullptr);
    for (const Conversion& conversion : Conversions)
        sqlite3_create_function(db, conversion.name, conversion.arguments, Pure, nullptr, conversion.call, nullptr,
                                nullptr);
}

std::span<const DialectFunction> dialectFunctions()
{
    return Dialect;
}

bool isDialectFunction(const char* name)
{
    const auto same = [name](const char* allowed) { return sqlite3_stricmp(allowed, name) == 0; };
    return std::ranges::any_of(Allowed, same) || std::ranges::any_of(Conversions, same, &Conversion::name) ||
           std::ranges::any_of(Dialect, [name](const DialectFunction& function) {
               return nameOf(function).compare(QLatin1StringView(name), Qt::CaseInsensitive) == 0;
           });
}

} // namespace orlo::store
