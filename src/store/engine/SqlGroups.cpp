// Group By, Having and Order By.

#include "platform/Text.h"
#include "store/engine/SqlTranslator.h"

#include <algorithm>
#include <utility>

namespace orlo::store
{

// Returns true if it groups.
bool SqlTranslator::group(Query& query)
{
    const qsizetype written = m_out.sql.size();
    if (take(Symbol::Group)) {
        expect(Symbol::By);
        QLatin1String before(" GROUP BY ");
        do {
            m_out.sql += before;
            before = QLatin1String(", ");
            const qsizetype start = m_at;
            sorted();
            query.groups.append({start, m_at});
            // A result's alias stands for its expression.
            for (qsizetype i = 0; i < query.places.size(); ++i)
                if (m_at == start + 1 && platform::sameName(query.fields[i].name, m_tokens[start].text) &&
                    !find({}, m_tokens[start].text))
                    query.groups.append(query.places[i]);
        } while (take(Symbol::Comma));
    }
    if (take(Symbol::Having)) {
        m_out.sql += QLatin1String(" HAVING ");
        condition();
    }
    return m_out.sql.size() > written;
}

// A field beside aggregates must be grouped by: it has no single value otherwise.
void SqlTranslator::requireGrouped(const Query& query)
{
    for (const qsizetype field : std::as_const(m_scope->fields))
        if (query.grouped && !isGrouped(query, field)) {
            m_at = field;
            raise(QStringLiteral("(\"%1\" is neither summed up nor grouped by.)").arg(token().text), token().text);
        }
}

// Names are equal with and without their source.
bool SqlTranslator::saysTheSame(Part one, Part other) const
{
    const auto isName = [](const Token& token) { return token.symbol == Symbol::Word || token.symbol == Symbol::Name; };
    const auto hasSource = [this](qsizetype at) { return m_tokens[at + 1].symbol == Symbol::Dot; };
    for (; one.first < one.second && other.first < other.second; ++one.first, ++other.first) {
        if (hasSource(one.first) != hasSource(other.first))
            (hasSource(one.first) ? one : other).first += 2;
        const Token& a = m_tokens[one.first];
        const Token& b = m_tokens[other.first];
        const bool alike = a.symbol == b.symbol || (isName(a) && isName(b));
        if (!alike || (a.symbol == Symbol::Text ? a.text != b.text : !platform::sameName(a.text, b.text)))
            return false;
    }
    return one.first == one.second && other.first == other.second;
}

// The field, or an expression around it, is grouped by.
bool SqlTranslator::isGrouped(const Query& query, qsizetype field) const
{
    const QStringView name = m_tokens[field].text;
    if (m_tokens[field + 1].symbol != Symbol::Dot && !find({}, name) &&
        std::ranges::any_of(query.fields,
                            [&](const KnownField& result) { return platform::sameName(result.name, name); }))
        return true; // a result
    return std::ranges::any_of(query.groups, [&](Part group) {
        const auto inner = [&group] { return Part(group.first + 1, group.second - 1); };
        while (m_parts.contains(inner())) // skip brackets
            group = inner();
        return std::ranges::any_of(m_parts, [&](const Part& part) {
            return part.first <= field && field < part.second && saysTheSame(part, group);
        });
    });
}

// SQLite would take a constant number for a column's position.
Expression SqlTranslator::sorted()
{
    const qsizetype before = m_varying;
    Expression value = expression();
    if (before == m_varying && (value.kind == ValueKind::Number || value.kind == ValueKind::Truth))
        m_out.as(ValueKind::Text, value);
    m_out.order(value);
    return value;
}

void SqlTranslator::readOrder(Query& query)
{
    expect(Symbol::By);
    query.orderStart = m_out.sql.size();
    m_scope->results = &query.fields;
    QLatin1String before(" ORDER BY ");
    do {
        m_out.sql += before;
        before = QLatin1String(", ");
        const Symbol next = token(1).symbol;
        const bool place = at(Symbol::Number) && (next == Symbol::Comma || next == Symbol::Asc ||
                                                  next == Symbol::Desc || next == Symbol::Close || next == Symbol::End);
        query.ordersByPlace = query.ordersByPlace || place;
        const QStringView number = token().text;
        const qsizetype column = place ? number.toLongLong() - 1 : -1;
        // SQLite would count the row's key, which a set adds.
        if (place && query.known && (column < 0 || column >= query.fields.size()))
            raise(QStringLiteral("(There is no column %1.)").arg(number), number);
        const Expression value = place ? expression() : sorted();
        const bool truth = place && column >= 0 && column < query.fields.size()
                               ? query.fields[column].kind == ValueKind::Truth
                               : value.kind == ValueKind::Truth;
        const bool descending = take(Symbol::Desc);
        if (!descending)
            take(Symbol::Asc);
        if (truth) // true is -1 but stored as 1
            m_out.sql += QLatin1String(descending ? " ASC NULLS LAST" : " DESC NULLS FIRST");
        else if (descending)
            m_out.sql += QLatin1String(" DESC");
    } while (take(Symbol::Comma));
    requireGrouped(query);
}

} // namespace orlo::store
