#pragma once

#include "platform/DateTime.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace orlo::platform
{

/// Today's date; every "today" of the program comes from here.
[[nodiscard]] QDate today();
/// Fixes the date that today() gives, for tests and pictures; an invalid date gives the machine's clock back.
void setToday(QDate date);

/// Reads a text as a date, month first: "m/d/yy", "m/d/yyyy" (also with "-" or "."), "m/d" (this year), "yyyy-mm-dd",
/// "7 June 2004", "June 7, 2004", each with a time after it or without. Years of two digits lie in 1930 to 2029.
/// Nothing for any other text; a month above 12 is refused and never taken for a day.
[[nodiscard]] std::optional<DateTime> readDate(QStringView text);
/// True if readDate() reads the text.
[[nodiscard]] bool isDate(QStringView text);
/// The date that a text holds. Raises 13 for a text that is no date.
[[nodiscard]] DateTime toDate(QStringView text);

/// The short form of the setting that the program is made for: "6/7/2004".
[[nodiscard]] QString shortDate(QDate date);
/// The short form with the time after it where there is one: "6/7/2004 1:30:00 PM".
[[nodiscard]] QString shortDate(const DateTime& date);
/// The form that date controls are written through, "mm/dd/yyyy": "06/07/2004".
[[nodiscard]] QString longDate(QDate date);

/// The numeric reading of a text: blanks are skipped, leading digits with sign, point and exponent count, anything else
/// gives 0. Raises 6 when the digits exceed the range of a double.
[[nodiscard]] double val(QStringView text);
/// The reading of a text of which leading digits only count: "12a" and "12.5" give 12, ".5" and "-5" give 0.
[[nodiscard]] double leadingDigits(QStringView text);
/// The number that the whole text is, as conversion on assignment reads it; nothing if it isn't one.
[[nodiscard]] std::optional<double> readNumber(QStringView text);
/// A number's plain decimal text, at most 15 significant digits.
[[nodiscard]] QString numberText(double number);

/// Rounds half to even, as every narrowing in the program does. Raises 6 outside the type's range.
[[nodiscard]] std::int16_t toInt16(double number);
[[nodiscard]] std::int32_t toInt32(double number);

} // namespace orlo::platform
