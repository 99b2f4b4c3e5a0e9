#include "store/engine/Sql.h"

#include "store/engine/SqlTranslator.h"

#include <QStringBuilder>

#include <algorithm>

namespace orlo::store
{

SqlTranslator::SqlTranslator(const QString& statement, const FieldsOf& fieldsOf)
    : m_text(statement), m_fieldsOf(fieldsOf), m_tokens(tokenize(statement)), m_end(m_tokens.size() - 1)
{
}

Translated SqlTranslator::run()
{
    if (at(Keyword::Select))
        select();
    else if (take(Keyword::Insert))
        insert();
    else if (take(Keyword::Update))
        update();
    else if (take(Keyword::Delete))
        remove();
    else
        raiseSyntax(QStringLiteral("(Select, Insert, Update or Delete expected.)"));
    expect(TokenKind::End);
    return std::move(m_result);
}

void SqlTranslator::select()
{
    m_result.kind = Translated::Kind::Select;
    Query read = query(nullptr, nullptr);
    m_result.sql = read.sql();
    if (!read.order.isEmpty())
        m_result.orderStart = m_result.sql.size() - read.order.size();
    if (read.known)
        m_result.fields = std::make_shared<const KnownFields>(std::move(read.fields));
    m_result.ordersByPlace = read.ordersByPlace;
    m_result.singleSource = read.source.toString();
    m_result.singleAlias = read.alias.toString();
    m_result.columns = std::move(read.columns);
    m_result.tail = read.tail + read.order;
}

// A row that the file refuses is passed over, not a failure.
void SqlTranslator::insert()
{
    m_result.kind = Translated::Kind::Insert;
    m_result.sql = QStringLiteral("INSERT OR IGNORE INTO ");
    expect(Keyword::Into);
    Scope none(m_scope, nullptr);
    const QStringView table = target(m_result.sql);
    const auto known = m_fieldsOf(table);
    KnownFields targets = known ? *known : KnownFields();
    if (take(TokenKind::Open)) {
        const KnownFields all = std::move(targets);
        targets.clear();
        do {
            const QStringView field = name();
            const auto found = std::ranges::find_if(
                all, [field](const KnownField& one) { return field.compare(one.name, Qt::CaseInsensitive) == 0; });
            m_result.sql += (targets.empty() ? QLatin1String(" (") : QLatin1String(", ")) + quotedName(field);
            targets.push_back(found == all.end() ? KnownField{field.toString()} : *found);
        } while (take(TokenKind::Comma));
        expect(TokenKind::Close);
        m_result.sql += u')';
    }
    none.sources.clear(); // a row has no other to take values from
    if (!take(Keyword::Values)) {
        m_result.sql += u' ' + query(nullptr, &targets).sql();
        return;
    }
    expect(TokenKind::Open);
    std::size_t place = 0;
    do {
        Expression value = expression();
        m_result.sql += place == 0 ? QLatin1String(" VALUES (") : QLatin1String(", ");
        m_result.sql += place < targets.size() ? given(std::move(value), targets[place]).sql : value.sql;
        ++place;
    } while (take(TokenKind::Comma));
    expect(TokenKind::Close);
    m_result.sql += u')';
}

void SqlTranslator::update()
{
    m_result.kind = Translated::Kind::Update;
    m_result.sql = QStringLiteral("UPDATE OR IGNORE ");
    Scope scope(m_scope, nullptr);
    target(m_result.sql);
    expect(Keyword::Set);
    QLatin1String before(" SET ");
    do {
        const Expression field = fieldNamed();
        const QStringView named = view(m_tokens[m_at - 1]);
        expect(Keyword::Equal);
        m_result.sql += before + quotedName(named) + QLatin1String(" = ") +
                        given(expression(), KnownField{{}, field.kind, field.whole}).sql;
        before = QLatin1String(", ");
    } while (take(TokenKind::Comma));
    m_result.sql += where();
}

void SqlTranslator::remove()
{
    m_result.kind = Translated::Kind::Delete;
    m_result.sql = QStringLiteral("DELETE FROM ");
    take(Keyword::Star);
    expect(Keyword::From);
    Scope scope(m_scope, nullptr);
    target(m_result.sql);
    m_result.sql += where();
}

// The table that a statement changes; its fields may be named from here on.
QStringView SqlTranslator::target(QString& sql)
{
    if (at(TokenKind::Open))
        refuse();
    sql += source();
    return m_scope->sources.back().table;
}

QString SqlTranslator::Query::sql() const
{
    return QLatin1String(distinct ? "SELECT DISTINCT" : "SELECT") % columns % from % tail % order;
}

SqlTranslator::Query SqlTranslator::query(Scope* outer, const KnownFields* targets)
{
    const Nesting nesting(*this);
    Scope scope(m_scope, outer);
    Query read = simpleQuery(targets);
    while (take(Keyword::Union))
        readUnion(read, targets);
    if (take(Keyword::Order))
        readOrder(read);
    return read;
}

void SqlTranslator::readUnion(Query& query, const KnownFields* targets)
{
    query.tail += take(Keyword::All) ? QLatin1String(" UNION ALL ") : QLatin1String(" UNION ");
    query.source = {};
    Scope scope(m_scope, m_scope->outer);
    const Query next = simpleQuery(targets);
    query.tail += next.sql();
    query.known = query.known && next.known && query.fields.size() == next.fields.size();
    for (std::size_t i = 0; i < std::min(query.fields.size(), next.fields.size()); ++i)
        if (query.fields[i].kind != next.fields[i].kind)
            query.fields[i].kind = ValueKind::Unknown;
}

SqlTranslator::Query SqlTranslator::simpleQuery(const KnownFields* targets)
{
    Query query;
    expect(Keyword::Select);
    query.distinct = take(Keyword::Distinct) || take(Keyword::DistinctRow);
    if (!query.distinct)
        take(Keyword::All);
    // What the results mean is known once the sources are.
    const qsizetype results = m_at;
    const qsizetype from = placeOfFrom();
    m_at = from;
    if (take(Keyword::From))
        query.from = QLatin1String(" FROM ") + sources();
    const qsizetype behind = m_at;
    m_at = results;
    readResults(query, targets);
    if (m_at != from)
        refuse();
    m_at = behind;

    query.tail = where();
    const QString grouping = group();
    query.tail += grouping;
    const auto& all = m_scope->sources;
    if (all.size() == 1 && !query.distinct && grouping.isEmpty() && !m_scope->sums) {
        query.source = all[0].table;
        query.alias = all[0].name.data() == all[0].table.data() ? QStringView() : all[0].name;
    }
    return query;
}

qsizetype SqlTranslator::placeOfFrom() const
{
    int open = 0;
    for (qsizetype i = m_at; i < m_end; ++i) {
        const Token& token = m_tokens[i];
        if (open == 0 &&
            (token.keyword == Keyword::From || token.keyword == Keyword::Union || token.kind == TokenKind::Close))
            return i;
        open += token.kind == TokenKind::Open ? 1 : token.kind == TokenKind::Close ? -1 : 0;
    }
    return m_end;
}

void SqlTranslator::readResults(Query& query, const KnownFields* targets)
{
    do {
        query.columns += query.columns.isEmpty() ? QLatin1String(" ") : QLatin1String(", ");
        if (take(Keyword::Star)) {
            query.columns += u'*';
            for (const Source& source : m_scope->sources)
                addFields(query, source);
        } else if (atName() && at(Keyword::Dot, 1) && at(Keyword::Star, 2)) {
            const QStringView named = name();
            m_at += 2;
            query.columns += quotedName(named) + QLatin1String(".*");
            for (const Source& source : m_scope->sources)
                if (source.name.compare(named, Qt::CaseInsensitive) == 0)
                    addFields(query, source);
        } else
            readResult(query, query.known ? targets : nullptr);
    } while (take(TokenKind::Comma));
}

void SqlTranslator::readResult(Query& query, const KnownFields* targets)
{
    const std::size_t place = query.fields.size();
    Expression value = expression();
    if (targets && place < targets->size())
        value = given(std::move(value), (*targets)[place]);
    const bool field = value.form == Expression::Form::Field;
    const bool named = take(Keyword::As);
    KnownField result{value.name.toString(), value.kind, value.whole};
    if (named)
        result.name = name().toString();
    else if (!field)
        result.name = QStringLiteral("Expr%1").arg(1000 + place);
    query.columns += field ? value.sql : ordered(value);
    if (named || !field)
        query.columns += QLatin1String(" AS ") + quotedName(result.name);
    query.fields.push_back(std::move(result));
}

void SqlTranslator::addFields(Query& query, const Source& source)
{
    query.known = query.known && source.fields;
    if (source.fields)
        query.fields.insert(query.fields.end(), source.fields->begin(), source.fields->end());
}

QString SqlTranslator::sources()
{
    QString sql = joinedSources();
    while (take(TokenKind::Comma))
        sql += QLatin1String(", ") + joinedSources();
    return sql;
}

QString SqlTranslator::joinedSources()
{
    QString sql = source();
    while (true) {
        QLatin1String join(" JOIN ");
        if (take(Keyword::Left))
            join = QLatin1String(" LEFT JOIN ");
        else if (take(Keyword::Right))
            join = QLatin1String(" RIGHT JOIN ");
        else if (!take(Keyword::Inner))
            return sql;
        if (join.size() > 6)
            take(Keyword::Outer);
        expect(Keyword::Join);
        sql += join + source();
        expect(Keyword::On);
        sql += QLatin1String(" ON ") + condition(expression()).sql;
    }
}

QString SqlTranslator::source()
{
    const Nesting nesting(*this);
    if (take(TokenKind::Open)) {
        if (!at(Keyword::Select)) {
            const QString sql = joinedSources();
            expect(TokenKind::Close);
            return u'(' + sql + u')';
        }
        Query inner = query(nullptr, nullptr);
        expect(TokenKind::Close);
        Source source;
        QString sql = u'(' + inner.sql() + u')' + alias(source.name);
        if (inner.known)
            source.fields = std::make_shared<const KnownFields>(std::move(inner.fields));
        m_scope->sources.append(std::move(source));
        return sql;
    }
    const QStringView table = name();
    Source source{table, table, m_fieldsOf(table)};
    QString sql = quotedName(table) + alias(source.name);
    m_scope->sources.append(std::move(source));
    return sql;
}

QString SqlTranslator::alias(QStringView& called)
{
    if (!take(Keyword::As) && !atName())
        return {};
    called = name();
    return QLatin1String(" AS ") + quotedName(called);
}

QString SqlTranslator::where()
{
    return take(Keyword::Where) ? QLatin1String(" WHERE ") + condition(expression()).sql : QString();
}

QString SqlTranslator::group()
{
    QString sql;
    if (take(Keyword::Group)) {
        expect(Keyword::By);
        do
            sql += (sql.isEmpty() ? QLatin1String(" GROUP BY ") : QLatin1String(", ")) + ordered(expression());
        while (take(TokenKind::Comma));
    }
    if (take(Keyword::Having))
        sql += QLatin1String(" HAVING ") + condition(expression()).sql;
    return sql;
}

void SqlTranslator::readOrder(Query& query)
{
    expect(Keyword::By);
    m_scope->results = &query.fields;
    do {
        query.ordersByPlace = query.ordersByPlace || at(TokenKind::Number);
        query.order += (query.order.isEmpty() ? QLatin1String(" ORDER BY ") : QLatin1String(", "));
        query.order += ordered(expression());
        if (take(Keyword::Desc))
            query.order += QLatin1String(" DESC");
        else
            take(Keyword::Asc);
    } while (take(TokenKind::Comma));
    m_scope->results = nullptr;
}

Translated translate(const QString& statement, const FieldsOf& fieldsOf)
{
    return SqlTranslator(statement, fieldsOf).run();
}

} // namespace orlo::store
