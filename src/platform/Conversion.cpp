#include "platform/Conversion.h"

#include "platform/RuntimeError.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>

namespace orlo::platform
{

namespace
{

QDate fixedToday;

int fullYear(int year, qsizetype digits)
{
    if (digits > 2)
        return year;
    return year < 30 ? 2000 + year : 1900 + year;
}

std::optional<int> monthByName(const QString& name)
{
    static const QStringList names{"january", "february", "march",     "april",   "may",      "june",
                                   "july",    "august",   "september", "october", "november", "december"};
    const QString lower = name.toLower();
    for (int month = 0; month < names.size(); ++month)
        if (lower == names[month] || lower == names[month].left(3) || (lower == QLatin1String("sept") && month == 8))
            return month + 1;
    return std::nullopt;
}

std::optional<QDate> checkedDate(int year, int month, int day)
{
    const QDate date(year, month, day);
    if (!date.isValid() || year < 100 || year > 9999)
        return std::nullopt;
    return date;
}

std::optional<QTime> readTime(const QString& text)
{
    static const QRegularExpression form(QStringLiteral(R"(^(\d{1,2}):(\d{2})(?::(\d{2}))?\s*([AaPp][Mm])?$)"));
    const auto match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    int hour = match.capturedView(1).toInt();
    if (const QString half = match.captured(4).toLower(); !half.isEmpty()) {
        if (hour < 1 || hour > 12)
            return std::nullopt;
        hour = hour % 12 + (half == QLatin1String("pm") ? 12 : 0);
    }
    const QTime time(hour, match.capturedView(2).toInt(), match.capturedView(3).toInt());
    return time.isValid() ? std::optional(time) : std::nullopt;
}

// Two or three numbers with the same separator between them, blanks allowed: "6/7/2004", "6 / 7", "2004-06-07".
std::optional<QDate> readNumbers(QStringView text)
{
    struct Number {
        int value = 0;
        int digits = 0;
    };
    constexpr int MostDigits = 4;
    const auto isBlank = [](QChar c) { return c == u' ' || (c >= u'\t' && c <= u'\r'); };
    std::array<Number, 3> numbers;
    std::size_t count = 0;
    QStringView signs(u"/.-");
    for (const auto* at = text.begin();; ++at) {
        at = std::find_if_not(at, text.end(), isBlank);
        if (count == numbers.size())
            return std::nullopt;
        auto& [value, digits] = numbers[count++];
        for (; at != text.end() && *at >= u'0' && *at <= u'9' && digits < MostDigits; ++at, ++digits)
            value = value * 10 + (at->unicode() - u'0');
        if (digits == 0)
            return std::nullopt;
        if (at == text.end())
            break;
        at = std::find_if_not(at, text.end(), isBlank);
        if (at == text.end() || !signs.contains(*at))
            return std::nullopt;
        signs = {at, 1};
    }
    const bool yearFirst = numbers[0].digits == 4;
    if (yearFirst && (signs == u"." || std::ranges::any_of(text, isBlank)))
        return std::nullopt;
    if (yearFirst)
        std::rotate(numbers.begin(), numbers.begin() + 1, numbers.end());
    const auto [month, day, year] = numbers;
    if (month.digits > 2 || day.digits > 2)
        return std::nullopt;
    return checkedDate(count == 2 ? today().year() : fullYear(year.value, year.digits), month.value, day.value);
}

std::optional<QDate> readDay(QStringView text)
{
    static const QRegularExpression dayName(
        QStringLiteral(R"(^(\d{1,2})[\s-]+([A-Za-z]{3,9})\.?[\s,-]+(\d{1,2}|\d{4})$)"));
    static const QRegularExpression nameDay(
        QStringLiteral(R"(^([A-Za-z]{3,9})\.?\s+(\d{1,2})\s*,?\s+(\d{1,2}|\d{4})$)"));

    if (const auto date = readNumbers(text))
        return date;
    const QString words = text.toString();
    if (const auto m = dayName.match(words); m.hasMatch())
        if (const auto month = monthByName(m.captured(2)))
            return checkedDate(fullYear(m.capturedView(3).toInt(), m.capturedLength(3)), *month,
                               m.capturedView(1).toInt());
    if (const auto m = nameDay.match(words); m.hasMatch())
        if (const auto month = monthByName(m.captured(1)))
            return checkedDate(fullYear(m.capturedView(3).toInt(), m.capturedLength(3)), *month,
                               m.capturedView(2).toInt());
    return std::nullopt;
}

template <typename Int>
Int narrowed(double number)
{
    const double rounded = std::nearbyint(number);
    if (!(rounded >= std::numeric_limits<Int>::min() && rounded <= std::numeric_limits<Int>::max()))
        throw RuntimeError(Overflow);
    return static_cast<Int>(rounded);
}

} // namespace

QDate today()
{
    return fixedToday.isValid() ? fixedToday : QDate::currentDate();
}

void setToday(QDate date)
{
    fixedToday = date;
}

std::optional<DateTime> readDate(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    if (trimmed.isEmpty() || trimmed.size() > 40)
        return std::nullopt;
    if (const auto day = readDay(trimmed))
        return DateTime{*day};
    static const QRegularExpression withTime(
        QStringLiteral(R"(^(.*\S)[\sT]+(\d{1,2}:\d{2}(?::\d{2})?\s*(?:[AaPp][Mm])?)$)"));
    if (const auto match = withTime.match(trimmed.toString()); match.hasMatch())
        if (const auto day = readDay(match.capturedView(1)))
            if (const auto time = readTime(match.captured(2)))
                return DateTime{*day, *time};
    return std::nullopt;
}

bool isDate(QStringView text)
{
    return readDate(text).has_value();
}

DateTime toDate(QStringView text)
{
    if (const auto date = readDate(text))
        return *date;
    throw RuntimeError(TypeMismatch);
}

QString shortDate(QDate date)
{
    int year = 0;
    int month = 0;
    int day = 0;
    date.getDate(&year, &month, &day);
    char16_t text[40]; // room for three numbers of any size
    char16_t* begin = std::end(text);
    const auto put = [&begin](int number, int digits) {
        for (; number > 0 || digits > 0; number /= 10, --digits)
            *--begin = static_cast<char16_t>(u'0' + number % 10);
    };
    put(year, 4);
    *--begin = u'/';
    put(day, 1);
    *--begin = u'/';
    put(month, 1);
    return QStringView(begin, std::end(text)).toString();
}

QString shortDate(const DateTime& date)
{
    if (date.time == QTime(0, 0))
        return shortDate(date.date);
    const int hour = date.time.hour() % 12 == 0 ? 12 : date.time.hour() % 12;
    return QStringLiteral("%1 %2:%3:%4 %5")
        .arg(shortDate(date.date))
        .arg(hour)
        .arg(date.time.minute(), 2, 10, QLatin1Char('0'))
        .arg(date.time.second(), 2, 10, QLatin1Char('0'))
        .arg(date.time.hour() < 12 ? QLatin1String("AM") : QLatin1String("PM"));
}

QString longDate(QDate date)
{
    return QStringLiteral("%1/%2/%3")
        .arg(date.month(), 2, 10, QLatin1Char('0'))
        .arg(date.day(), 2, 10, QLatin1Char('0'))
        .arg(date.year(), 4, 10, QLatin1Char('0'));
}

double val(QStringView text)
{
    QString digits;
    bool point = false;
    bool exponent = false;
    for (const QChar c : text) {
        if (c == u' ' || c == u'\t' || c == u'\n' || c == u'\r')
            continue;
        const bool afterExponent = exponent && (digits.endsWith(u'e'));
        const bool sign = (c == u'+' || c == u'-') && (digits.isEmpty() || afterExponent);
        if (sign || (c >= u'0' && c <= u'9'))
            digits += c;
        else if (c == u'.' && !point && !exponent) {
            point = true;
            digits += c;
        } else if ((c == u'e' || c == u'E' || c == u'd' || c == u'D') && !exponent && !digits.isEmpty() &&
                   digits.back().isDigit()) {
            exponent = true;
            digits += u'e';
        } else
            break;
    }
    while (!digits.isEmpty() && !digits.back().isDigit())
        digits.chop(1);
    const double number = digits.toDouble(); // 0 if there are none
    if (std::isinf(number))
        throw RuntimeError(Overflow);
    return number;
}

double leadingDigits(QStringView text)
{
    text = text.trimmed();
    const auto end = std::ranges::find_if(text, [](QChar c) { return c < u'0' || c > u'9'; });
    return text.first(end - text.begin()).toDouble();
}

std::optional<double> readNumber(QStringView text)
{
    QString trimmed = text.trimmed().toString();
    static const QRegularExpression form(QStringLiteral(R"(^[+-]?(\d{1,3}(,\d{3})+|\d+)?(\.\d*)?([eE][+-]?\d+)?$)"));
    if (!form.match(trimmed).hasMatch())
        return std::nullopt;
    bool ok = false;
    const double number = trimmed.remove(u',').toDouble(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

QString numberText(double number)
{
    if (number == std::trunc(number) && std::fabs(number) < 1e15)
        return QString::number(static_cast<qint64>(number));
    return QString::number(number, 'G', 15);
}

std::int16_t toInt16(double number)
{
    return narrowed<std::int16_t>(number);
}

std::int32_t toInt32(double number)
{
    return narrowed<std::int32_t>(number);
}

} // namespace orlo::platform
