// A Sum over a LEFT JOIN by primary key is made below the join, once per key. The few joined rows are then grouped
// again as the statement says.

#include "platform/Text.h"
#include "store/engine/SqlTranslator.h"

#include <QStringBuilder>

#include <algorithm>
#include <span>

namespace orlo::store
{

namespace
{

QString inQuotes(QStringView name)
{
    SqlWriter writer;
    writer.name(name);
    return writer.sql;
}

const KeyedJoin::Column* columnOf(const KeyedJoin& join, QStringView name)
{
    const auto same = [name](const KeyedJoin::Column& column) { return platform::sameName(column.name, name); };
    const auto found = std::ranges::find_if(join.columns, same);
    return found == join.columns.end() || found->sql.isEmpty() ? nullptr : &*found;
}

// The first table's rows with their columns under the names that the Select gives them. Written once for a stored
// query, not for each statement on it.
QString rowsOf(const KeyedJoin& join)
{
    QString rows = u"SELECT " % join.key % u" AS \"~key\", " % join.rowKey % u" AS \"~row\"";
    for (const KeyedJoin::Column& column : join.columns)
        if (column.ofRow)
            rows += u", " % column.sql % u" AS " % column.quoted;
    return rows % u" FROM " % join.table;
}

// A field in use.
struct Used {
    const KnownField* field;
    bool summed;
};
using UsedFields = QVarLengthArray<Used, 8>;

UsedFields::iterator useOf(UsedFields& fields, const KnownField* field)
{
    return std::ranges::find(fields, field, &Used::field);
}

// Appends the rows of one join, summed by key, in the order of the row numbers of each key's first row: a group of
// texts that differ in case shows the first one. (Where SQLite would scan by an index, that can be another spelling
// than without this.)
void appendSummed(QString& sql, const KeyedJoin& join, const UsedFields& fields, const QString& source,
                  QStringView condition)
{
    QString sums;
    QString groups;
    int number = 0;
    QStringView before = u"SELECT ";
    for (const auto& [field, summed] : fields) {
        const KeyedJoin::Column& column = *columnOf(join, field->name);
        const QString passing = u"\"~" % QString::number(number++) % u'"';
        sql += before % (column.ofRow ? passing : column.sql) % u" AS " % column.quoted;
        before = u", ";
        if (!column.ofRow)
            continue;
        sums += (summed ? u", sum(" : u", (") % column.quoted % u") AS " % passing;
        if (!summed)
            groups += u", " % column.quoted;
    }
    sql += u" FROM (SELECT \"~key\", \"~row\"" % sums % u" FROM (" % join.rows % u") AS " % source % condition %
           u" GROUP BY \"~key\"" % groups % u" ORDER BY \"~row\") LEFT JOIN " % join.other % u" ON \"~key\" = " %
           join.otherKey;
}

} // namespace

// The index of a field's source, -1 for an unknown field.
qsizetype SqlTranslator::placeOfSource(const KnownField* field) const
{
    const auto has = [field](const Source& source) {
        return source.fields && std::ranges::any_of(*source.fields, [field](auto& one) { return &one == field; });
    };
    const auto found = std::ranges::find_if(m_scope->sources, has);
    return found == m_scope->sources.end() ? -1 : found - m_scope->sources.begin();
}

// Called after each join. Its condition must be `a = b`, where b is the second table's key.
void SqlTranslator::noteJoin(Symbol side, qsizetype condition)
{
    const auto& sources = m_scope->sources;
    const auto& named = m_scope->named;
    const auto isPart = [](const Token& token) {
        return token.symbol == Symbol::Word || token.symbol == Symbol::Name || token.symbol == Symbol::Dot ||
               token.symbol == Symbol::Equal;
    };
    if (side != Symbol::Left || sources.size() != 2 || named.size() != 2 || sources[0].rowKey.isEmpty() ||
        sources[1].rowKey.isEmpty() || !std::all_of(&m_tokens[condition], &m_tokens[m_at], isPart))
        return;
    const bool turned = placeOfSource(named[0]) == 1;
    const KnownField* const from = named[turned ? 1 : 0];
    const KnownField* const key = named[turned ? 0 : 1];
    if (placeOfSource(from) != 0 || placeOfSource(key) != 1 || !from->whole || !key->whole || !key->isKey)
        return;
    const auto table = [](const Source& one) { return QString(inQuotes(one.table) % u" AS " % inQuotes(one.name)); };
    const auto field = [](const Source& one, const QString& name) { return QString(inQuotes(one.name) % u'.' % name); };
    m_scope->join =
        KeyedJoin{table(sources[0]), field(sources[0], sources[0].rowKey), field(sources[0], inQuotes(from->name)),
                  table(sources[1]), field(sources[1], inQuotes(key->name))};
}

// Called for each result of a Select over such a join; its fields start at `first`.
void SqlTranslator::noteColumn(const QString& name, const QString& sql, qsizetype first)
{
    bool ofRow = true;
    bool ofKey = true;
    for (const KnownField* field : std::span(m_scope->named).subspan(static_cast<std::size_t>(first))) {
        ofRow = ofRow && placeOfSource(field) == 0;
        ofKey = ofKey && placeOfSource(field) == 1;
    }
    m_scope->join->columns.append({name, inQuotes(name), ofRow || ofKey ? sql : QString(), ofRow});
}

// The joins that make up a Select without conditions and groups.
KeyedJoins SqlTranslator::joinsOf(const Query& query) const
{
    const auto& sources = m_scope->sources;
    if (m_scope->join && sources.size() == 2 && query.stars.isEmpty()) {
        KeyedJoin join = *m_scope->join;
        join.rows = rowsOf(join);
        return {join};
    }
    const bool whole = sources.size() == 1 && query.stars.size() == 1 && query.places.isEmpty();
    return whole ? sources[0].joins : KeyedJoins();
}

// Appends the joins of a Union All, with the column names of its first part.
void SqlTranslator::unite(KeyedJoins& joins, KeyedJoins more)
{
    if (joins.isEmpty() || more.isEmpty() || joins[0].columns.size() != more[0].columns.size())
        return joins.clear();
    for (KeyedJoin& join : more) {
        for (qsizetype i = 0; i < join.columns.size(); ++i) {
            join.columns[i].name = joins[0].columns[i].name;
            join.columns[i].quoted = joins[0].columns[i].quoted;
        }
        join.rows = rowsOf(join);
    }
    joins += more;
}

// Called after a grouped Select. Replaces its source and condition; the rest of it stays.
void SqlTranslator::sumBelowJoins(Query& query)
{
    if (m_scope->sources.size() != 1 || m_scope->sources[0].joins.isEmpty() || query.groups.isEmpty())
        return;
    const Source& source = m_scope->sources[0];
    const auto isInAll = [&source](const KnownField* field, bool ofRow) {
        return field && std::ranges::all_of(source.joins, [&](const KeyedJoin& join) {
                   const KeyedJoin::Column* const column = columnOf(join, field->name);
                   return column && (column->ofRow || !ofRow);
               });
    };
    UsedFields fields;
    for (const KnownField* field : m_scope->named) {
        if (!isInAll(field, false))
            return;
        if (useOf(fields, field) == fields.end())
            fields.append({field, false});
    }
    for (const auto& [function, field] : m_scope->summed) {
        // Min and Max would change which spelling is shown, and fractions depend on the order of addition.
        const bool exact = platform::sameName(function, u"sum") && field && field->whole;
        const auto found = useOf(fields, field);
        if (!exact || !isInAll(field, true) || (found != fields.end() && !found->summed))
            return;
        if (found == fields.end())
            fields.append({field, true});
    }
    const auto ofRow = [&isInAll](const KnownField* field) { return isInAll(field, true); };
    if (fields.isEmpty() || !std::ranges::all_of(m_scope->conditions, ofRow))
        return;
    const qsizetype before = query.groupStart - query.fromStart;
    const QStringView condition = QStringView(m_out.sql).sliced(query.tailStart, query.groupStart - query.tailStart);
    const QString called = inQuotes(source.name);
    QString from;
    from.reserve(m_out.sql.size() * 2);
    from += u" FROM (";
    for (const KeyedJoin& join : source.joins) {
        from += &join == &source.joins.first() ? u"" : u" UNION ALL ";
        appendSummed(from, join, fields, called, condition);
    }
    from += u") AS " % called;
    m_out.sql.replace(query.fromStart, before, from);
    query.orderStart += query.orderStart < 0 ? 0 : from.size() - before;
}

} // namespace orlo::store
