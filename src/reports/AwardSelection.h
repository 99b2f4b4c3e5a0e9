#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace orlo
{

/// How an award's date is compared; the values are the rows of the list of choices.
enum class DateComparison : int { SingleDate, Between, EqualOrGreater, EqualOrLess };

/// The criteria for the report of assigned awards.
struct AwardCriteria {
    /// A person or a den: its key, and its name for the title.
    struct Entry {
        std::int16_t sid = 0;
        QString name;
    };
    bool adults = false; ///< the adults' awards instead of the scouts'
    std::optional<Entry> person;
    std::optional<Entry> den;
    DateComparison comparison = DateComparison::SingleDate;
    QString from; ///< as typed; ignored if it isn't a date
    QString to;
};

/// The criteria in the language of the report engine, and in words.
struct AwardSelection {
    QString formula; ///< never empty: only active people are reported
    QString title;   ///< empty without criteria
};

/// Builds the selection. Never fails: a text that isn't a date drops the date condition.
[[nodiscard]] AwardSelection selectAwards(const AwardCriteria& criteria);

} // namespace orlo
