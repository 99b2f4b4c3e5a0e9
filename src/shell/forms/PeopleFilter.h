#pragma once

#include <QString>

namespace orlo
{

/// Which people a form lists, and in what order, as SQL.
struct PeopleFilter {
    enum class View { Active, Inactive, All };

    View view = View::Active;
    QString denCriterion; ///< leaves a den's people; empty for those of any den
    bool lastNameFirst = true;

    /// "Where ..." of view and den, after the criteria that `start` begins with; "" for everybody.
    [[nodiscard]] QString BuildViewCriteria(const QString& start) const;
    /// " Order by ... " of the order.
    [[nodiscard]] QString BuildOrderClause() const;
};

/// The names that a person is looked for by, typed in whole or in part; an empty one doesn't count.
struct NameCriteria {
    QString mFindFirst;
    QString mFindLast;
    QString mFindMI;

    /// What the names add up to, each part after the first joined by " and "; "" without any.
    [[nodiscard]] QString text() const;
};

} // namespace orlo
