#include "shell/forms/PeopleFilter.h"

#include <utility>

namespace orlo
{

QString PeopleFilter::BuildViewCriteria(const QString& start) const
{
    const bool fresh = start.isEmpty();
    QString criteria = fresh ? QStringLiteral("Where ") : start + QStringLiteral(" and ");
    if (view == View::Active)
        criteria += QStringLiteral(" Active = 'Y' ");
    else if (view == View::Inactive)
        criteria += QStringLiteral(" Active = 'N' ");
    else if (fresh)
        criteria.clear();
    if (!denCriterion.isEmpty()) {
        criteria += criteria.isEmpty() ? QStringLiteral("Where ") : QStringLiteral(" And ");
        criteria += denCriterion;
    }
    return criteria;
}

QString PeopleFilter::BuildOrderClause() const
{
    return lastNameFirst ? QStringLiteral(" Order by Last_Name, First_Name ")
                         : QStringLiteral(" Order by First_Name, MI, Last_Name ");
}

QString NameCriteria::text() const
{
    QString criteria;
    for (const auto& [field, value] :
         {std::pair(u"First_Name", mFindFirst), std::pair(u"Last_Name", mFindLast), std::pair(u"MI", mFindMI)})
        if (!value.isEmpty())
            criteria += (criteria.isEmpty() ? QStringLiteral(" ") : QStringLiteral(" and ")) +
                        QString::fromUtf16(field) + QStringLiteral(" Like '") + value.trimmed() + QStringLiteral("*'");
    return criteria;
}

} // namespace orlo
