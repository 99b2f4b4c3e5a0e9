#include "RowNames.h"

#include "store/engine/Value.h"

using namespace orlo;
using store::Value;

namespace
{

struct Pointer {
    QStringView field;
    QStringView table;
    QLatin1String word;
};

constexpr QStringView Dens = u"Dens";
constexpr QStringView Scouts = u"Scouts";
constexpr QStringView Adults = u"Adults";
constexpr QStringView Insignias = u"Insignias";

// The first one of a table is its own key.
constexpr Pointer Pointers[] = {
    {u"Den_SID", Dens, QLatin1String("den")},
    {u"Scout_SID", Scouts, QLatin1String("scout")},
    {u"Adult_SID", Adults, QLatin1String("adult")},
    {u"Insignia_SID", Insignias, QLatin1String("award")},
    {u"Assigned_Den_SID", Dens, QLatin1String("den")},
    {u"Leader_SID", Adults, QLatin1String("adult")},
    {u"Parent1_Den_Leader_SID", Adults, QLatin1String("adult")},
    {u"Parent2_Den_Leader_SID", Adults, QLatin1String("adult")},
};

const Pointer* pointer(QStringView field)
{
    const auto* found =
        std::ranges::find_if(Pointers, [field](const Pointer& one) { return sameText(one.field, field); });
    return found == std::end(Pointers) ? nullptr : found;
}

QString plain(const Value& value)
{
    return value.isText() ? value.textOrEmpty().simplified() : shown(value);
}

} // namespace

QString personName(const PackRows& rows, const PackRows::Row& row)
{
    const auto text = [&](QStringView field) { return rows.value(row, field).textOrEmpty().simplified(); };
    const QString initial = text(u"MI");
    return text(u"Last_Name") + QStringLiteral(", ") + text(u"First_Name") +
           (initial.isEmpty() ? QString() : QStringLiteral(" %1.").arg(initial));
}

RowNames::RowNames(store::Database& database)
{
    for (const QStringView named : {Dens, Scouts, Adults, Insignias}) {
        const QString table = named.toString();
        const PackRows rows(database, table);
        auto& names = m_names[table];
        for (const PackRows::Row& row : rows.rows)
            names.insert(shown(rows.value(row, keyOf(table))), of(table, rows, row));
    }
}

QString RowNames::keyOf(const QString& table)
{
    for (const Pointer& one : Pointers)
        if (table == one.table)
            return one.field.toString();
    return {};
}

QString RowNames::targetTable(QStringView field)
{
    const Pointer* found = pointer(field);
    return found ? found->table.toString() : QString();
}

QString RowNames::target(QStringView field, const Value& key) const
{
    return m_names.value(targetTable(field)).value(shown(key));
}

QString RowNames::pointedTo(QStringView field, const Value& key) const
{
    const QString name = target(field, key);
    return name.isEmpty() ? QStringLiteral("%1 %2, gone").arg(pointer(field)->word, shown(key)) : name;
}

QString RowNames::of(const QString& table, const PackRows& rows, const PackRows::Row& row) const
{
    const auto text = [&](QStringView field) { return plain(rows.value(row, field)); };
    const auto who = [&](QStringView field) { return pointedTo(field, rows.value(row, field)); };
    const auto award = [&](QStringView person) {
        return who(person) + QStringLiteral(": ") + who(u"Insignia_SID") + QStringLiteral(", ") +
               text(u"Date_Assigned");
    };
    if (sameText(table, Scouts) || sameText(table, Adults))
        return personName(rows, row);
    if (sameText(table, Dens))
        return text(u"Den_Type") + QStringLiteral(" Den ") + text(u"Den_Number");
    if (sameText(table, Insignias))
        return text(u"Insignia_Name") + u' ' + text(u"Insignia_Type");
    if (sameText(table, u"Assigned_Awards_Scouts"))
        return award(u"Scout_SID");
    if (sameText(table, u"Assigned_Awards_Adults"))
        return award(u"Adult_SID");
    if (sameText(table, u"Leader_Den_Assignments"))
        return who(u"Adult_SID") + QStringLiteral(": ") + who(u"Den_SID");
    if (sameText(table, u"Leader_Pack_Assn"))
        return who(u"Leader_SID") + QStringLiteral(": ") + text(u"Position_Title");
    if (sameText(table, u"PackInfo"))
        return QStringLiteral("Pack ") + text(u"Pack Number");
    QStringList first;
    for (const Value& value : row)
        if (first.size() < 2)
            first += plain(value);
    return first.join(QStringLiteral(", "));
}
