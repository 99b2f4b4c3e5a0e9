#pragma once

#include <QString>

namespace orlo
{

/// Which people a form lists, and in which order, as SQL.
struct PeopleFilter {
    enum class View { Active, Inactive, All };

    View view = View::Active;
    QString denCriterion; ///< selects a den's people; empty for any den
    bool lastNameFirst = true;

    /// "Where ..." for view and den, after the criteria in `start`; "" for everybody.
    [[nodiscard]] QString BuildViewCriteria(const QString& start) const;
    /// " Order by ..." for the order.
    [[nodiscard]] QString BuildOrderClause() const;
};

/// The names to find, complete or partial; empty ones don't count.
struct NameCriteria {
    QString mFindFirst;
    QString mFindLast;
    QString mFindMI;

    /// The criteria joined by " and "; "" if there are none.
    [[nodiscard]] QString text() const;
};

} // namespace orlo
