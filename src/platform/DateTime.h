#pragma once

#include <QDate>
#include <QTime>

#include <compare>
#include <utility>

namespace orlo::platform
{

/// A date with a time of day; most dates of the program have none.
struct DateTime {
    QDate date;
    QTime time = QTime(0, 0);

    friend bool operator==(const DateTime&, const DateTime&) = default;
    friend auto operator<=>(const DateTime& a, const DateTime& b)
    {
        return std::pair(a.date.toJulianDay(), a.time.msecsSinceStartOfDay()) <=>
               std::pair(b.date.toJulianDay(), b.time.msecsSinceStartOfDay());
    }
};

} // namespace orlo::platform
