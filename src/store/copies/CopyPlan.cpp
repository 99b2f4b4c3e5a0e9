#include "store/copies/CopyPlan.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

namespace orlo::store
{

namespace
{

constexpr qsizetype OfToday = 5;

struct Period {
    qsizetype count;                 // periods that keep a copy
    int (*number)(const QDate& day); // A number that the days of one period share
};

constexpr Period Periods[] = {
    {7, [](const QDate& day) { return static_cast<int>(day.toJulianDay()); }},
    {4, [](const QDate& day) { return static_cast<int>(day.toJulianDay() / 7); }}, // weeks begin on Monday
    {12, [](const QDate& day) { return day.year() * 12 + day.month(); }},
};

// Keeps the first copy of each of the latest periods. Names sort by age.
void keepFirsts(const QStringList& names, const Period& period, QSet<QString>& kept)
{
    QHash<int, QString> firsts;
    QList<int> last; // newest first
    for (auto name = names.crbegin(); name != names.crend(); ++name) {
        const int number = period.number(dayOfCopy(*name));
        if (last.isEmpty() || last.back() != number)
            last += number;
        firsts.insert(number, *name);
    }
    for (const int number : last.first(std::min(period.count, last.size())))
        kept.insert(firsts.value(number));
}

} // namespace

QDate dayOfCopy(const QString& name)
{
    static const QRegularExpression form(QStringLiteral(R"(^(\d{4}-\d\d-\d\d)( \d\d\.\d\d(\.\d\d)?)?$)"));
    const auto match = form.match(name);
    return match.hasMatch() ? QDate::fromString(match.captured(1), Qt::ISODate) : QDate();
}

QStringList keptOf(QStringList names, QDate today)
{
    names.sort();
    const auto future = std::ranges::find_if(names, [today](const QString& name) { return dayOfCopy(name) > today; });
    QSet<QString> kept;
    for (const QStringList& reckoned : {QStringList(names.begin(), future), QStringList(future, names.end())})
        for (const Period& period : Periods)
            keepFirsts(reckoned, period, kept);
    qsizetype left = OfToday;
    for (auto name = names.crbegin(); name != names.crend() && left > 0; ++name)
        if (dayOfCopy(*name) == today) { // the first one, which is kept anyway, comes last
            kept.insert(*name);
            --left;
        }
    names.removeIf([&kept](const QString& name) { return !kept.contains(name); });
    return names;
}

} // namespace orlo::store
