#pragma once

#include "store/engine/Value.h"

#include <QByteArray>

#include <optional>

namespace orlo::store
{

/// Converts as assignment to the field does; Null stays Null. Raises 3421, 6 or 3163.
[[nodiscard]] Value converted(const Value& value, const Field& field);
/// The field that a declared column type stands for: its type and size.
[[nodiscard]] Field declaredField(QByteArrayView declaration);
/// A date as a number: days since 12/30/1899, the time of day being the fraction. Before that day the fraction still
/// counts forward from the day's start: -1.25 is six in the morning of 12/29/1899.
[[nodiscard]] double serialOf(const DateTime& date);
/// The date that such a number stands for, to the second; none outside the years 100 to 9999.
[[nodiscard]] std::optional<DateTime> dateOfSerial(double number);
/// The declared column type of a field.
[[nodiscard]] QByteArray declaration(const Field& field);

} // namespace orlo::store
