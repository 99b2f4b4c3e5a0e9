// What a Select is grouped and sorted by.

#include "store/engine/SqlTranslator.h"
#include "store/engine/Text.h"

#include <algorithm>
#include <utility>

namespace orlo::store
{

// True for whatever makes one row of several.
bool SqlTranslator::group(Query& query)
{
    const qsizetype written = m_out.sql.size();
    if (take(Symbol::Group)) {
        expect(Symbol::By);
        QLatin1String before(" GROUP BY ");
        const qsizetype fields = m_scope->fields.size();
        do {
            m_out.sql += before;
            before = QLatin1String(", ");
            const qsizetype start = m_at;
            sorted();
            query.groups.append({start, m_at});
            // A result's name stands for its expression.
            for (qsizetype i = 0; i < query.places.size(); ++i)
                if (m_at == start + 1 && sameName(query.fields[i].name, m_tokens[start].text) &&
                    !find({}, m_tokens[start].text))
                    query.groups.append(query.places[i]);
        } while (take(Symbol::Comma));
        m_scope->fields.resize(fields);
    }
    if (take(Symbol::Having)) {
        m_out.sql += QLatin1String(" HAVING ");
        condition();
    }
    return m_out.sql.size() > written;
}

// What one row stands for several of has no single value beside what they have in common.
void SqlTranslator::requireGrouped(const Query& query)
{
    for (const qsizetype field : std::as_const(m_scope->fields))
        if (query.grouped && !isGrouped(query, field)) {
            m_at = field;
            raise(QStringLiteral("(\"%1\" is neither summed up nor grouped by.)").arg(token().text), token().text);
        }
    m_scope->fields.clear();
}

// How tightly the operator binds that a token is; None for anything else.
SqlTranslator::Level SqlTranslator::bindingOf(qsizetype at) const
{
    const Symbol sign = m_tokens[at].symbol;
    const Symbol before = at > 0 ? m_tokens[at - 1].symbol : Symbol::End;
    if (sign == Symbol::Not) {
        const Level next = levelOf(m_tokens[at + 1].symbol);
        return before == Symbol::Is || next == Level::Comparison ? Level::Comparison : Level::Not;
    }
    const bool afterValue = before == Symbol::Close || before == Symbol::True || before == Symbol::False ||
                            before == Symbol::Null || (before >= Symbol::Word && before <= Symbol::Date);
    return (sign == Symbol::Minus || sign == Symbol::Plus) && !afterValue ? Level::Sign : levelOf(sign);
}

// Where the tokens from one on end if they say the same as an expression, -1 otherwise: a name may stand with its
// source's or without.
qsizetype SqlTranslator::endOfSame(qsizetype at, const std::pair<qsizetype, qsizetype>& expression) const
{
    const auto isName = [this](qsizetype one) {
        return m_tokens[one].symbol == Symbol::Word || m_tokens[one].symbol == Symbol::Name;
    };
    const auto last = [this](qsizetype one) { return m_tokens[one + 1].symbol == Symbol::Dot ? one + 2 : one; };
    for (qsizetype own = expression.first; own < expression.second; ++own, ++at) {
        const Token& one = m_tokens[at];
        const Token& other = m_tokens[own];
        if (isName(at) && isName(own)) {
            const bool bothSourced = last(at) > at && last(own) > own;
            if (bothSourced && !sameName(one.text, other.text))
                return -1;
            at = last(at);
            own = last(own);
            if (!sameName(m_tokens[at].text, m_tokens[own].text))
                return -1;
        } else if (one.symbol != other.symbol ||
                   (one.symbol == Symbol::Text ? one.text != other.text : !sameName(one.text, other.text)))
            return -1;
    }
    return at;
}

// A field is grouped by, or stands in an expression that is.
bool SqlTranslator::isGrouped(const Query& query, qsizetype field) const
{
    const QStringView name = m_tokens[field].text;
    if (m_tokens[field + 1].symbol != Symbol::Dot && !find({}, name) &&
        std::ranges::any_of(query.fields, [&](const KnownField& result) { return sameName(result.name, name); }))
        return true; // a result
    return std::ranges::any_of(query.groups, [&](auto group) {
        // Its operators outside of brackets: what binds more tightly beside them takes their operands away.
        Level loosest = Level::Sign;
        bool bracketed = true;
        while (bracketed) {
            loosest = Level::Sign;
            bracketed = m_tokens[group.first].symbol == Symbol::Open;
            int depth = 0;
            bool between = false;
            for (qsizetype at = group.first; at < group.second; ++at) {
                const Symbol sign = m_tokens[at].symbol;
                depth += sign == Symbol::Open ? 1 : 0;
                depth -= sign == Symbol::Close ? 1 : 0;
                bracketed = bracketed && (depth > 0 || at + 1 == group.second);
                if (depth > 0)
                    continue;
                const Level level = sign == Symbol::And && std::exchange(between, false) ? Level::None : bindingOf(at);
                between = between || sign == Symbol::Between;
                if (level != Level::None)
                    loosest = std::min(loosest, level);
            }
            if (bracketed)
                group = {group.first + 1, group.second - 1};
        }
        const bool simple = loosest == Level::Sign && bindingOf(group.first) != Level::Sign;
        const qsizetype longest = 3 * (group.second - group.first); // with the sources' names
        for (qsizetype start = std::max<qsizetype>(field - longest, 1); start <= field; ++start) {
            const qsizetype end = m_tokens[start - 1].symbol == Symbol::Dot ? -1 : endOfSame(start, group);
            if (end > field && (simple || (bindingOf(start - 1) < loosest && bindingOf(end) <= loosest)))
                return true;
        }
        return false;
    });
}

// An expression to sort or group by: SQLite takes a constant number for a column's.
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
        const qsizetype column = place ? token().text.toLongLong() - 1 : -1;
        const Expression value = place ? expression() : sorted();
        const bool truth = place && column >= 0 && column < query.fields.size()
                               ? query.fields[column].kind == ValueKind::Truth
                               : value.kind == ValueKind::Truth;
        const bool descending = take(Symbol::Desc);
        if (!descending)
            take(Symbol::Asc);
        if (truth) // true is -1, and stands in the file as 1
            m_out.sql += QLatin1String(descending ? " ASC NULLS LAST" : " DESC NULLS FIRST");
        else if (descending)
            m_out.sql += QLatin1String(" DESC");
    } while (take(Symbol::Comma));
    requireGrouped(query);
    m_scope->results = nullptr;
}

} // namespace orlo::store
