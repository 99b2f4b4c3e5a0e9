#include "Compare.h"

#include "RowNames.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"

#include <deque>

using namespace orlo;
using store::Database;
using store::Value;

namespace
{

// The fields that identify a row if its table has no key, or a different one in an earlier version.
const QList<std::pair<QString, QStringList>>& identities()
{
    static const QList<std::pair<QString, QStringList>> Known = {
        {QStringLiteral("Dens"), {QStringLiteral("Den_SID")}},
        {QStringLiteral("Scouts"), {QStringLiteral("Scout_SID")}},
        {QStringLiteral("Adults"), {QStringLiteral("Adult_SID")}},
        {QStringLiteral("Insignias"), {QStringLiteral("Insignia_SID")}},
        {QStringLiteral("Assigned_Awards_Scouts"), {QStringLiteral("Assigned_SID")}},
        {QStringLiteral("Assigned_Awards_Scouts"),
         {QStringLiteral("Scout_SID"), QStringLiteral("Insignia_SID"), QStringLiteral("Date_Assigned")}},
        {QStringLiteral("Assigned_Awards_Adults"),
         {QStringLiteral("Adult_SID"), QStringLiteral("Insignia_SID"), QStringLiteral("Date_Assigned")}},
        {QStringLiteral("Leader_Den_Assignments"), {QStringLiteral("Adult_SID"), QStringLiteral("Den_SID")}},
        {QStringLiteral("Leader_Pack_Assn"), {QStringLiteral("Leader_Pack_Assn")}},
        {QStringLiteral("Purchase_List"), {QStringLiteral("Award_Name")}},
        {QStringLiteral("Other_Purchase_List"), {QStringLiteral("Item_Name")}},
        {QStringLiteral("PackInfo"), {}},
    };
    return Known;
}

QStringList keyOf(Database& database, const QString& table, const QStringList& fields)
{
    const auto has = [&fields](const QString& field) { return fields.contains(field, Qt::CaseInsensitive); };
    for (const auto& [name, key] : identities())
        if (sameText(name, table) && std::ranges::all_of(key, has))
            return key;
    const store::TableDef definition = database.tableDef(table);
    for (const store::Index& index : definition.indexes())
        if (index.primary && std::ranges::all_of(index.fields, has))
            return index.fields;
    return fields;
}

// One side of a comparison: a table's rows and their names.
struct Side {
    Side(Database& database, const RowNames& called, const QString& name)
        : names(called), table(name), rows(database, name)
    {
    }
    [[nodiscard]] QString nameOf(const PackRows::Row& row) const { return names.of(table, rows, row); }
    // A value, with the name of the row it points to.
    [[nodiscard]] QString told(const QString& field, const PackRows::Row& row) const
    {
        const Value value = rows.value(row, field);
        const QString target = names.target(field, value);
        return target.isEmpty() ? shown(value) : QStringLiteral("%1 (%2)").arg(shown(value), target);
    }

    const RowNames& names;
    const QString& table;
    PackRows rows;
};

using Group = std::deque<const PackRows::Row*>;

class TableComparison
{
public:
    TableComparison(const Side& from, const Side& to, const QStringList& fields, const QStringList& key)
        : m_from(from), m_to(to), m_fields(fields)
    {
        QHash<QString, Group> other;
        for (const PackRows::Row& row : to.rows.rows)
            other[textOf(to, row, key)].push_back(&row);
        QHash<QString, Group> left; // rows by key without an equal on the other side
        for (const PackRows::Row& row : from.rows.rows) {
            const QString text = textOf(from, row, key);
            Group& same = other[text];
            const auto equal = std::ranges::find_if(same, [&](const auto* one) { return isSame(row, *one); });
            if (equal != same.end())
                same.erase(equal);
            else
                left[text].push_back(&row);
        }
        for (const PackRows::Row& row : from.rows.rows)
            tellOf(row, left[textOf(from, row, key)], other[textOf(from, row, key)]);
        for (const PackRows::Row& row : to.rows.rows) {
            Group& rest = other[textOf(to, row, key)];
            if (!rest.empty() && rest.front() == &row) {
                rest.pop_front();
                tell(m_added, "added", to.nameOf(row));
            }
        }
    }

    [[nodiscard]] QString counts() const
    {
        return QStringLiteral("%1: %2 added, %3 gone, %4 changed")
            .arg(m_from.table)
            .arg(m_added)
            .arg(m_gone)
            .arg(m_changed);
    }
    [[nodiscard]] bool isEmpty() const { return m_lines.isEmpty(); }
    [[nodiscard]] const QStringList& lines() const { return m_lines; }

private:
    // Ignores case, as keys in the file do.
    static QString textOf(const Side& side, const PackRows::Row& row, const QStringList& fields)
    {
        QStringList texts;
        for (const QString& field : fields)
            texts += shown(side.rows.value(row, field));
        return texts.join(u',').toCaseFolded();
    }
    [[nodiscard]] bool isSame(const PackRows::Row& from, const PackRows::Row& to) const
    {
        return std::ranges::all_of(m_fields, [&](const QString& field) {
            return shown(m_from.rows.value(from, field)) == shown(m_to.rows.value(to, field));
        });
    }
    void tell(int& count, const char* what, const QString& name)
    {
        ++count;
        m_lines += QStringLiteral("  %1 %2").arg(QLatin1String(what), -8).arg(name);
    }
    void tellOf(const PackRows::Row& row, Group& left, Group& other)
    {
        if (left.empty() || left.front() != &row)
            return;
        left.pop_front();
        if (other.empty())
            return tell(m_gone, "gone", m_from.nameOf(row));
        const PackRows::Row& now = *other.front();
        other.pop_front();
        tell(m_changed, "changed", m_to.nameOf(now));
        for (const QString& field : m_fields)
            if (shown(m_from.rows.value(row, field)) != shown(m_to.rows.value(now, field)))
                m_lines += QStringLiteral("           %1: %2 -> %3")
                               .arg(field, m_from.told(field, row), m_to.told(field, now));
    }

    const Side& m_from;
    const Side& m_to;
    const QStringList& m_fields;
    QStringList m_lines;
    int m_added = 0;
    int m_gone = 0;
    int m_changed = 0;
};

QStringList common(const QStringList& one, const QStringList& other)
{
    QStringList both;
    for (const QString& name : one)
        if (other.contains(name, Qt::CaseInsensitive))
            both += name;
    return both;
}

// The names that only one side has, in one line.
QStringList onlyIn(const char* side, const QString& what, const QStringList& names, const QStringList& others)
{
    QStringList only;
    for (const QString& name : names)
        if (!others.contains(name, Qt::CaseInsensitive))
            only += name;
    if (only.isEmpty())
        return {};
    return {QStringLiteral("Only the %1 file has the %2: %3")
                .arg(QLatin1String(side), what, only.join(QStringLiteral(", ")))};
}

} // namespace

QStringList differences(const QString& from, const QString& to, bool countsOnly)
{
    PackFile first(from);
    PackFile second(to);
    const RowNames firstNames(first.database());
    const RowNames secondNames(second.database());
    const QStringList tables = first.database().tableNames();
    const QStringList otherTables = second.database().tableNames();
    QStringList lines;
    for (const QString& table : tables) {
        if (!otherTables.contains(table, Qt::CaseInsensitive))
            continue;
        const Side one(first.database(), firstNames, table);
        const Side other(second.database(), secondNames, table);
        const QStringList fields = common(one.rows.fields, other.rows.fields);
        const TableComparison rows(one, other, fields, keyOf(first.database(), table, fields));
        if (!rows.isEmpty()) {
            lines += rows.counts();
            if (!countsOnly)
                lines += rows.lines();
        }
        const QString field = QStringLiteral("fields of %1").arg(table);
        lines += onlyIn("first", field, one.rows.fields, other.rows.fields);
        lines += onlyIn("second", field, other.rows.fields, one.rows.fields);
    }
    lines += onlyIn("first", QStringLiteral("tables"), tables, otherTables);
    lines += onlyIn("second", QStringLiteral("tables"), otherTables, tables);
    return lines.isEmpty() ? QStringList(QStringLiteral("Nothing differs.")) : lines;
}
