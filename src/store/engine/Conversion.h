#pragma once

#include "platform/DateTime.h"
#include "store/engine/Field.h"

#include <QByteArray>

#include <optional>

namespace orlo::store
{

using platform::DateTime;

/// Converts as assignment to the field does; Null stays Null. Raises 3421, 6 or 3163.
[[nodiscard]] Value converted(const Value& value, const Field& field);
/// The type and size of a declared column type.
[[nodiscard]] Field declaredField(QByteArrayView declaration);
/// The date as days since 12/30/1899, with the time of day as the fraction. The fraction counts forward even before
/// that day: -1.25 is 6 a.m. on 12/29/1899.
[[nodiscard]] double serialOf(const DateTime& date);
/// The date of such a number, to the second; none outside the years 100 to 9999.
[[nodiscard]] std::optional<DateTime> dateOfSerial(double number);
[[nodiscard]] QByteArray declaration(const Field& field);

} // namespace orlo::store
