#pragma once

#include "platform/DateTime.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace orlo::platform
{

/// Today's date; every "today" of the program comes from here.
[[nodiscard]] QDate today();
/// Fixes the date that today() returns, for tests and pictures; an invalid date restores the machine's clock.
void setToday(QDate date);

/// Reads a text as a date, month first: "m/d/yy", "m/d/yyyy" (also with "-" or "."), "m/d" (this year), "yyyy-mm-dd",
/// "7 June 2004", "June 7, 2004", each with an optional time after it. Two-digit years lie in 1930 to 2029. Nothing for
/// any other text; a month above 12 is refused, never taken for a day.
[[nodiscard]] std::optional<DateTime> readDate(QStringView text);
/// True if readDate() reads the text.
[[nodiscard]] bool isDate(QStringView text);
/// The date in a text. Raises 13 if the text isn't a date.
[[nodiscard]] DateTime toDate(QStringView text);

/// The short US form: "6/7/2004".
[[nodiscard]] QString shortDate(QDate date);
/// The short form, followed by the time if there is one: "6/7/2004 1:30:00 PM".
[[nodiscard]] QString shortDate(const DateTime& date);
/// The form that date controls write, "mm/dd/yyyy": "06/07/2004".
[[nodiscard]] QString longDate(QDate date);

/// The numeric reading of a text: blanks are skipped, leading digits with sign, point and exponent count, anything else
/// gives 0. Raises 6 when the digits exceed the range of a double.
[[nodiscard]] double val(QStringView text);
/// The number that a text's leading digits make: "12a" and "12.5" give 12, ".5" and "-5" give 0.
[[nodiscard]] double leadingDigits(QStringView text);
/// The number that the whole text stands for, as assigning it to a number would read it; nothing if it isn't one.
[[nodiscard]] std::optional<double> readNumber(QStringView text);
/// A number as plain decimal text, at most 15 significant digits.
[[nodiscard]] QString numberText(double number);

/// Rounds half to even, as every narrowing in the program does. Raises 6 outside the type's range.
[[nodiscard]] std::int16_t toInt16(double number);
[[nodiscard]] std::int32_t toInt32(double number);

} // namespace orlo::platform
