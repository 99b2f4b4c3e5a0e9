#include "LinkTexts.h"

#include "CsvTable.h"
#include "RowNames.h"
#include "store/engine/Value.h"

#include <algorithm>

using namespace orlo;

namespace
{

constexpr qsizetype MostNamed = 12;

QString folded(const QString& text)
{
    return text.simplified().toCaseFolded();
}

QString text(const PackRows& rows, const PackRows::Row& row, QStringView field)
{
    return rows.value(row, field).textOrEmpty().simplified();
}

QStringList shortTexts(const QString& table, const PackRows& rows, const PackRows::Row& row)
{
    if (table == QLatin1String("Dens")) {
        const QString number = text(rows, row, u"Den_Number");
        return {text(rows, row, u"Den_Type") + u' ' + number, number, text(rows, row, u"Den_Name")};
    }
    if (table == QLatin1String("Insignias"))
        return {text(rows, row, u"Insignia_Name")};
    const QString first = text(rows, row, u"First_Name");
    const QString last = text(rows, row, u"Last_Name");
    return {last + QStringLiteral(", ") + first, first + u' ' + last};
}

QString wholeText(const QString& table, const PackRows& rows, const PackRows::Row& row)
{
    if (table == QLatin1String("Dens"))
        return text(rows, row, u"Den_Type") + QStringLiteral(" Den ") + text(rows, row, u"Den_Number");
    if (table == QLatin1String("Insignias"))
        return text(rows, row, u"Insignia_Name") + u' ' + text(rows, row, u"Insignia_Type");
    return personName(rows, row);
}

} // namespace

const LinkTexts::Targets& LinkTexts::targets(const QString& table)
{
    const auto known = m_tables.constFind(table);
    if (known != m_tables.constEnd())
        return *known;
    const PackRows rows(m_database, table);
    Targets& made = m_tables[table];
    for (const PackRows::Row& row : rows.rows) {
        const store::Value key = rows.value(row, RowNames::keyOf(table));
        if (key.isNull())
            continue;
        const QString whole = wholeText(table, rows, row);
        const Target target = {whole, key.toInt32()};
        made.names.insert(target.key, whole);
        made.whole.insert(folded(whole), target);
        QStringList others = shortTexts(table, rows, row);
        others.removeDuplicates();
        for (const QString& other : std::as_const(others))
            made.part.insert(folded(other), target);
    }
    return made;
}

int LinkTexts::keyOf(const QString& table, const QString& text, bool onScreen)
{
    const Targets& all = targets(table);
    bool isNumber = false;
    const int number = text.trimmed().toInt(&isNumber);
    if (isNumber && !onScreen) {
        if (!all.names.contains(number))
            throw LoadError(QStringLiteral("%1 has no row of this key").arg(table));
        return number;
    }
    QList<Target> fitting = all.whole.values(folded(text));
    if (fitting.isEmpty())
        fitting = all.part.values(folded(text));
    if (fitting.size() == 1)
        return fitting.front().key;
    QStringList names;
    for (const Target& one : std::as_const(fitting))
        names += QStringLiteral("%1 (%2)").arg(one.name).arg(one.key);
    std::ranges::sort(names);
    if (names.isEmpty() && all.names.size() <= MostNamed) {
        names = all.names.values();
        std::ranges::sort(names);
        throw LoadError(names.isEmpty()
                            ? QStringLiteral("nothing in %1 is called so, which is empty").arg(table)
                            : QStringLiteral("nothing in %1 is called so; there are %2").arg(table, names.join(u"; ")));
    }
    if (names.isEmpty())
        throw LoadError(QStringLiteral("nothing in %1 is called so").arg(table));
    throw LoadError(QStringLiteral("fits several, by their keys: %1").arg(names.join(u"; ")));
}
