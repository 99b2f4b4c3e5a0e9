#include "reports/AwardSelection.h"

#include "platform/Conversion.h"

namespace orlo
{

namespace
{

// "( 2004, 06, 07)", or "" if the text isn't a date.
QString dateLiteral(const QString& text)
{
    const auto moment = platform::readDate(text);
    if (!moment)
        return {};
    const auto twoDigits = [](int number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
    return QStringLiteral("( %1, %2, %3)")
        .arg(QString::number(moment->date.year()), twoDigits(moment->date.month()), twoDigits(moment->date.day()));
}

void addCondition(AwardSelection& selection, const QString& condition)
{
    if (!selection.formula.isEmpty())
        selection.formula += QStringLiteral(" and ");
    selection.formula += condition;
}

void addDates(AwardSelection& selection, const AwardCriteria& criteria)
{
    const QString from = dateLiteral(criteria.from);
    const QString to = dateLiteral(criteria.to);
    const bool between = criteria.comparison == DateComparison::Between;
    if (from.isEmpty() || (between && to.isEmpty()))
        return;

    const bool narrowed = !selection.formula.isEmpty();
    const auto compare = [&](const QString& how) {
        const QString field = criteria.adults ? QStringLiteral("{Assigned_Awards_Adults.Date_Assigned}")
                                              : QStringLiteral("{Assigned_Awards_Scouts.Date_Assigned}");
        addCondition(selection, field + how + from);
    };
    switch (criteria.comparison) {
    case DateComparison::SingleDate:
        compare(QStringLiteral(" = Date "));
        selection.title += QStringLiteral(" for Date: ") + criteria.from;
        break;
    case DateComparison::Between:
        compare(QStringLiteral(" in Date "));
        selection.formula += QStringLiteral(" to Date ") + to;
        selection.title += QStringLiteral(" for Dates: ") + criteria.from + QStringLiteral(" to ") + criteria.to;
        break;
    case DateComparison::EqualOrGreater:
        compare(QStringLiteral(" >= Date "));
        selection.title += QStringLiteral(" for Date Equal to or Greater than ") + criteria.from;
        if (narrowed) // the second date is in the title, although it limits nothing
            selection.title += QStringLiteral(" to ") + criteria.to;
        break;
    case DateComparison::EqualOrLess:
        compare(QStringLiteral(" <= Date "));
        selection.title += QStringLiteral(" for Date Equal to or Less than ") + criteria.from;
        break;
    }
}

} // namespace

AwardSelection selectAwards(const AwardCriteria& criteria)
{
    const QString people = criteria.adults ? QStringLiteral("{Adults.") : QStringLiteral("{Scouts.");
    AwardSelection selection;
    if (criteria.person) {
        // The report on adults also knows their keys by the scouts' name.
        addCondition(selection, people + QStringLiteral("Scout_SID} = %1").arg(criteria.person->sid));
        selection.title = QStringLiteral("for ") + criteria.person->name;
    }
    if (criteria.den) {
        addCondition(selection, people + QStringLiteral("Assigned_Den_SID} = %1").arg(criteria.den->sid));
        selection.title += (criteria.person ? QStringLiteral(" in ") : QStringLiteral("for ")) + criteria.den->name;
    }
    addDates(selection, criteria);
    addCondition(selection, people + QStringLiteral("Active} = \"Y\""));
    return selection;
}

} // namespace orlo
