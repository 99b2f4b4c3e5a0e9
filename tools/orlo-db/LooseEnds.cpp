#include "LooseEnds.h"

#include "RowNames.h"
#include "store/engine/Value.h"

#include <QMap>

using namespace orlo;
using store::Database;
using store::Value;

namespace
{

struct Link {
    QStringView table;
    QStringView field;
    QLatin1String words; // describes a row whose key leads nowhere
    bool counted;        // reported once for all rows with the same key
};

constexpr Link Links[] = {
    {u"Scouts", u"Assigned_Den_SID", QLatin1String("is in den %1, which is gone"), false},
    {u"Scouts", u"Parent1_Den_Leader_SID", QLatin1String("has adult %1 as a parent, who is gone"), false},
    {u"Scouts", u"Parent2_Den_Leader_SID", QLatin1String("has adult %1 as a parent, who is gone"), false},
    {u"Adults", u"Assigned_Den_SID", QLatin1String("is in den %1, which is gone"), false},
    {u"Assigned_Awards_Scouts", u"Scout_SID", QLatin1String("awards of scout %1, who is gone"), true},
    {u"Assigned_Awards_Scouts", u"Insignia_SID", QLatin1String("times the award %1, which isn't in the catalogue"),
     true},
    {u"Assigned_Awards_Adults", u"Adult_SID", QLatin1String("awards of adult %1, who is gone"), true},
    {u"Assigned_Awards_Adults", u"Insignia_SID", QLatin1String("times the award %1, which isn't in the catalogue"),
     true},
    {u"Leader_Den_Assignments", u"Adult_SID", QLatin1String("positions of adult %1, who is gone"), true},
    {u"Leader_Den_Assignments", u"Den_SID", QLatin1String("positions in den %1, which is gone"), true},
    {u"Leader_Pack_Assn", u"Leader_SID", QLatin1String("positions of adult %1, who is gone"), true},
};

// The fields that identify a row; for people names and birth date, although these aren't a key of the file.
struct Unique {
    QStringView table;
    QStringList fields;
    bool person = false;
};

QList<Unique> uniques()
{
    const QStringList names = {QStringLiteral("Last_Name"), QStringLiteral("First_Name"), QStringLiteral("MI"),
                               QStringLiteral("Birth_Date")};
    return {{u"Dens", {QStringLiteral("Den_SID")}},
            {u"Scouts", {QStringLiteral("Scout_SID")}},
            {u"Scouts", names, true},
            {u"Adults", {QStringLiteral("Adult_SID")}},
            {u"Adults", names, true},
            {u"Insignias", {QStringLiteral("Insignia_SID")}},
            {u"Assigned_Awards_Scouts", {QStringLiteral("Assigned_SID")}},
            {u"Leader_Den_Assignments", {QStringLiteral("Adult_SID"), QStringLiteral("Den_SID")}},
            {u"Leader_Pack_Assn", {QStringLiteral("Leader_Pack_Assn")}}};
}

bool isMissingDate(const Value& value)
{
    return value.isNull() || (value.isDate() && value.toDate().date == MissingDate);
}

class LooseEnds
{
public:
    explicit LooseEnds(Database& database) : m_database(database), m_names(database) {}

    QStringList found()
    {
        for (const QString& table : m_database.tableNames()) {
            const PackRows rows(m_database, table);
            for (const Link& link : Links)
                if (sameText(link.table, table))
                    lookAlong(link, rows);
            for (const Unique& unique : m_uniques)
                if (sameText(unique.table, table))
                    lookForTwice(unique, rows);
            lookForMarks(table, rows);
        }
        return m_lines;
    }

private:
    void tell(QStringView table, const QString& words) { m_lines += QStringLiteral("%1: %2").arg(table, words); }

    void lookAlong(const Link& link, const PackRows& rows)
    {
        QMap<qint64, int> counts;
        for (const PackRows::Row& row : rows.rows) {
            const Value key = rows.value(row, link.field);
            if (key.isNull() || !m_names.target(link.field, key).isNull())
                continue;
            if (link.counted)
                ++counts[key.toInt32()];
            else
                tell(link.table, personName(rows, row) + u' ' + QString(link.words).arg(shown(key)));
        }
        for (auto one = counts.cbegin(); one != counts.cend(); ++one)
            tell(link.table, QStringLiteral("%1 %2").arg(one.value()).arg(QString(link.words).arg(one.key())));
    }

    void lookForTwice(const Unique& unique, const PackRows& rows)
    {
        if (std::ranges::any_of(unique.fields, [&rows](const QString& field) { return rows.column(field) < 0; }))
            return;
        QMap<QString, QList<const PackRows::Row*>> same;
        for (const PackRows::Row& row : rows.rows)
            same[unique.person ? personText(rows, row) : keyText(unique, rows, row)] += &row;
        for (const auto& group : std::as_const(same)) {
            if (group.size() < 2)
                continue;
            const PackRows::Row& row = *group.front();
            if (unique.person)
                tell(unique.table, QStringLiteral("%1%2 is entered %3 times")
                                       .arg(personName(rows, row), born(rows, row))
                                       .arg(group.size()));
            else
                tell(unique.table,
                     QStringLiteral("%1 is used %2 times").arg(keyText(unique, rows, row)).arg(group.size()));
        }
    }

    static QString keyText(const Unique& unique, const PackRows& rows, const PackRows::Row& row)
    {
        QStringList parts;
        for (const QString& field : unique.fields)
            parts += QStringLiteral("%1 %2").arg(field, shown(rows.value(row, field)));
        return parts.join(QStringLiteral(" with "));
    }
    static QString born(const PackRows& rows, const PackRows::Row& row)
    {
        const Value date = rows.value(row, u"Birth_Date");
        return isMissingDate(date) ? QString() : QStringLiteral(", born %1,").arg(shown(date));
    }
    static QString personText(const PackRows& rows, const PackRows::Row& row)
    {
        return personName(rows, row).toCaseFolded() + born(rows, row);
    }

    // The mark means a missing date of birth; any other date field would be Null.
    void lookForMarks(const QString& table, const PackRows& rows)
    {
        for (const QString& field : rows.fields)
            for (const PackRows::Row& row : rows.rows)
                if (const Value value = rows.value(row, field);
                    !sameText(field, u"Birth_Date") && value.isDate() && isMissingDate(value))
                    tell(table, QStringLiteral("%1 has the mark of a missing birth date, %2, in %3")
                                    .arg(m_names.of(table, rows, row), shown(value), field));
    }

    Database& m_database;
    RowNames m_names;
    QList<Unique> m_uniques = uniques();
    QStringList m_lines;
};

} // namespace

QStringList looseEnds(Database& database)
{
    return LooseEnds(database).found();
}
