#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace orlo
{

/// How the date of an award is compared; the values are the rows of the list in which it is chosen.
enum class DateComparison : int { SingleDate, Between, EqualOrGreater, EqualOrLess };

/// What the report of assigned awards is narrowed to.
struct AwardCriteria {
    /// A person or a den: the key, and the name that the title tells.
    struct Entry {
        std::int16_t sid = 0;
        QString name;
    };
    bool adults = false; ///< the awards of adults, not those of scouts
    std::optional<Entry> person;
    std::optional<Entry> den;
    DateComparison comparison = DateComparison::SingleDate;
    QString from; ///< as typed; a text that is no date is no criterion
    QString to;
};

/// The criteria in the language of the report engine, and in words.
struct AwardSelection {
    QString formula; ///< never empty: only active people are reported
    QString title;   ///< empty without a criterion
};

/// Puts the criteria together. Never fails: what can't be read as a date drops the date condition.
[[nodiscard]] AwardSelection selectAwards(const AwardCriteria& criteria);

} // namespace orlo
