#include "store/engine/Sql.h"

#include "platform/Text.h"
#include "store/engine/SqlTranslator.h"

#include <algorithm>
#include <utility>

namespace orlo::store
{

namespace
{
constexpr qsizetype MaxCharacters = 500'000; // nested stored queries can grow exponentially
} // namespace

SqlTranslator::SqlTranslator(const QString& statement, const SourceOf& sourceOf)
    : m_statement(statement.utf16(), statement.size()), m_sourceOf(sourceOf), m_tokens(tokenize(statement)),
      m_end(m_tokens.size() - 1)
{
    m_out.sql.reserve(std::max<qsizetype>(statement.size() * 2, 500));
}

Translated SqlTranslator::run()
{
    if (at(Symbol::Select))
        select();
    else if (take(Symbol::Insert))
        insert();
    else if (take(Symbol::Update))
        update();
    else if (take(Symbol::Delete))
        remove();
    else
        raise(QStringLiteral("(Near \"%1\": Select, Insert, Update or Delete expected.)").arg(token().text),
              token().text);
    expect(Symbol::End);
    m_result.sql = std::move(m_out.sql);
    return std::move(m_result);
}

void SqlTranslator::select()
{
    Query read = query(nullptr, nullptr);
    if (read.known)
        m_result.fields = std::make_shared<const KnownFields>(std::move(read.fields));
    static_cast<SelectParts&>(m_result) = std::move(read);
}

// Rows that the file refuses are skipped.
void SqlTranslator::insert()
{
    m_result.kind = Translated::Kind::Insert;
    m_out.sql += QLatin1String("INSERT OR IGNORE INTO ");
    expect(Symbol::Into);
    Scope none(m_scope, nullptr);
    const auto known = m_sourceOf(target()).fields;
    KnownFields targets = known ? *known : KnownFields();
    if (take(Symbol::Open)) {
        targets.clear();
        do {
            m_out.sql += QLatin1String(targets.empty() ? " (" : ", ");
            const QStringView field = name();
            m_out.name(field);
            const KnownField* found = find({}, field);
            if (!found)
                refuseRowNumber(field);
            targets.push_back(found ? *found : KnownField());
        } while (take(Symbol::Comma));
        expect(Symbol::Close);
        m_out.sql += u')';
    }
    none.sources.clear(); // values can't refer to fields
    if (!take(Symbol::Values)) {
        m_out.sql += u' ';
        query(nullptr, &targets);
        return;
    }
    expect(Symbol::Open);
    qsizetype place = 0;
    do {
        m_out.sql += QLatin1String(place == 0 ? " VALUES (" : ", ");
        Expression value = expression();
        if (place < targets.size())
            m_out.give(value, targets.at(place));
        ++place;
    } while (take(Symbol::Comma));
    expect(Symbol::Close);
    m_out.sql += u')';
}

void SqlTranslator::update()
{
    m_result.kind = Translated::Kind::Update;
    m_out.sql += QLatin1String("UPDATE OR IGNORE ");
    Scope scope(m_scope, nullptr);
    target();
    expect(Symbol::Set);
    QLatin1String before(" SET ");
    do {
        m_out.sql += before;
        before = QLatin1String(", ");
        const FieldName field = fieldName();
        if (!field.known)
            refuseRowNumber(field.name);
        m_out.name(field.name);
        expect(Symbol::Equal);
        m_out.sql += QLatin1String(" = ");
        Expression value = expression();
        if (field.known)
            m_out.give(value, *field.known);
    } while (take(Symbol::Comma));
    where();
}

void SqlTranslator::remove()
{
    m_result.kind = Translated::Kind::Delete;
    m_out.sql += QLatin1String("DELETE FROM ");
    take(Symbol::Star);
    expect(Symbol::From);
    Scope scope(m_scope, nullptr);
    m_result.removesFrom = target().toString();
    if (at(Symbol::Where))
        where();
    else
        m_out.sql += QLatin1String(" WHERE 1"); // otherwise SQLite skips the update hook
}

// Reads the table to change; its fields can be named from here on.
QStringView SqlTranslator::target()
{
    if (at(Symbol::Open))
        refuse();
    source();
    return m_scope->sources.back().table;
}

SqlTranslator::Query SqlTranslator::query(Scope* outer, const KnownFields* targets)
{
    const QScopedValueRollback nesting(m_depth, deeper());
    Scope scope(m_scope, outer);
    Query read = simpleQuery(targets);
    const bool united = at(Symbol::Union);
    while (take(Symbol::Union))
        readUnion(read, targets);
    scope.fields.clear();
    if (take(Symbol::Order))
        readOrder(read);
    if (!united && !outer)
        sumBelowJoins(read);
    return read;
}

void SqlTranslator::readUnion(Query& query, const KnownFields* targets)
{
    const bool all = take(Symbol::All);
    m_out.sql += QLatin1String(all ? " UNION ALL " : " UNION ");
    query.singleSource.clear();
    Scope scope(m_scope, m_scope->outer);
    const Query next = simpleQuery(targets);
    query.known = query.known && next.known && query.fields.size() == next.fields.size();
    for (qsizetype i = 0; i < std::min(query.fields.size(), next.fields.size()); ++i) {
        KnownField& field = query.fields[i];
        if (field.kind != next.fields[i].kind)
            field.kind = ValueKind::Unknown;
        field.whole = field.whole && next.fields[i].whole;
        field.caseless = field.caseless && next.fields[i].caseless;
    }
    unite(query.joins, all ? next.joins : KeyedJoins());
}

SqlTranslator::Query SqlTranslator::simpleQuery(const KnownFields* targets)
{
    Query query;
    expect(Symbol::Select);
    m_out.sql += QLatin1String("SELECT");
    const bool distinct = take(Symbol::Distinct);
    if (distinct)
        m_out.sql += QLatin1String(" DISTINCT");
    else
        take(Symbol::All);
    if (atName() && platform::sameName(token().text, u"top") && at(Symbol::Number, 1))
        refuse();
    // The results are read after the sources, which give their fields a meaning.
    const qsizetype results = std::exchange(m_at, placeOfFrom());
    const qsizetype from = m_at;
    const qsizetype written = m_out.sql.size();
    if (take(Symbol::From))
        sources();
    m_scope->fields.clear();
    const QString sourcesSql = m_out.sql.sliced(written);
    m_out.sql.truncate(written);
    const qsizetype after = std::exchange(m_at, results);
    readResults(query, targets);
    if (m_at != from)
        refuse();
    m_at = after;
    query.fromStart = m_out.sql.size();
    m_out.sql += sourcesSql;
    query.tailStart = m_out.sql.size();
    const qsizetype fields = m_scope->fields.size();
    const qsizetype named = m_scope->named.size();
    where();
    m_scope->fields.resize(fields); // Where applies before grouping
    m_scope->conditions.append(m_scope->named.constData() + named, m_scope->named.size() - named);
    m_scope->named.resize(named);
    query.groupStart = m_out.sql.size();
    const bool grouped = group(query);
    query.grouped = grouped || !m_scope->summed.isEmpty();
    if (query.grouped && !query.stars.isEmpty())
        raise(QStringLiteral("(\"*\" beside sums or groups.)"), token().text);
    requireGrouped(query);
    const auto& all = m_scope->sources;
    if (!distinct && !query.grouped && query.groupStart == query.tailStart)
        query.joins = joinsOf(query);
    if (all.size() == 1 && !distinct && !query.grouped) {
        query.singleSource = all[0].table.toString();
        query.singleAlias = all[0].name.toString();
    }
    return query;
}

qsizetype SqlTranslator::placeOfFrom() const
{
    int open = 0;
    for (qsizetype i = m_at; i < m_end; ++i) {
        const Symbol symbol = m_tokens[i].symbol;
        if (open == 0 && (symbol == Symbol::From || symbol == Symbol::Union || symbol == Symbol::Close))
            return i;
        open += int(symbol == Symbol::Open) - int(symbol == Symbol::Close);
    }
    return m_end;
}

void SqlTranslator::readResults(Query& query, const KnownFields* targets)
{
    QLatin1String before(" ");
    do {
        m_out.sql += before;
        before = QLatin1String(", ");
        QStringView named;
        const bool some = atName() && at(Symbol::Dot, 1) && at(Symbol::Star, 2);
        if (some) {
            named = name();
            ++m_at;
            m_out.name(named);
            m_out.sql += u'.';
        }
        if (!take(Symbol::Star)) {
            readResult(query, query.known ? targets : nullptr);
            continue;
        }
        query.stars.append(m_out.sql.size());
        m_out.sql += u'*';
        for (const Source& source : m_scope->sources)
            if (!some || source.name.compare(named, Qt::CaseInsensitive) == 0) {
                query.known = query.known && source.fields;
                if (source.fields && query.fields.isEmpty())
                    query.fields = *source.fields; // shared
                else if (source.fields)
                    query.fields += *source.fields;
            }
    } while (take(Symbol::Comma));
}

void SqlTranslator::readResult(Query& query, const KnownFields* targets)
{
    const qsizetype place = query.fields.size();
    const qsizetype start = m_at;
    const qsizetype named = m_scope->named.size();
    Expression value = expression();
    query.places.append({start, m_at});
    if (targets && place < targets->size())
        m_out.give(value, targets->at(place));
    const bool isField = value.form == Expression::Form::Field;
    if (!isField)
        m_out.order(value);
    KnownField result{{}, value.kind, value.whole, value.known && value.known->caseless};
    const bool called = take(Symbol::As);
    if (called)
        result.name = name().toString();
    else if (value.known)
        result.name = value.known->name;
    else
        result.name = isField ? value.name.toString() : QStringLiteral("Expr%1").arg(1000 + place);
    if (m_scope->join)
        noteColumn(result.name, m_out.sql.sliced(value.start, value.end - value.start), named);
    if (called || !isField) {
        m_out.sql += QLatin1String(" AS ");
        m_out.name(result.name);
    }
    query.fields.push_back(std::move(result));
}

void SqlTranslator::sources()
{
    QLatin1String before(" FROM ");
    do {
        m_out.sql += before;
        before = QLatin1String(", ");
        joinedSources();
    } while (take(Symbol::Comma));
}

void SqlTranslator::joinedSources()
{
    source();
    while (at(Symbol::Inner) || at(Symbol::Left) || at(Symbol::Right)) {
        const Symbol side = m_tokens[m_at++].symbol;
        if (side == Symbol::Inner) {
            m_out.sql += QLatin1String(" JOIN ");
        } else {
            m_out.sql += QLatin1String(side == Symbol::Left ? " LEFT JOIN " : " RIGHT JOIN ");
            take(Symbol::Outer);
        }
        expect(Symbol::Join);
        source();
        expect(Symbol::On);
        m_out.sql += QLatin1String(" ON ");
        const qsizetype on = m_at;
        condition();
        noteJoin(side, on);
    }
}

void SqlTranslator::source()
{
    const QScopedValueRollback nesting(m_depth, deeper());
    Source source;
    bool inBrackets = false;
    if (!take(Symbol::Open)) {
        source.table = name();
        const KnownSource known = m_sourceOf(source.table);
        source.fields = known.fields;
        source.joins = known.joins;
        source.rowKey = QString::fromLatin1(known.rowKey);
        inBrackets = !known.query.isEmpty();
        if (inBrackets)
            m_out.sql.append(u'(').append(known.query).append(u')');
        else
            m_out.name(source.table);
        if (m_out.sql.size() > MaxCharacters)
            raise(QStringLiteral("(Too many stored queries within each other.)"), source.table);
    } else {
        m_out.sql += u'(';
        const bool joined = !at(Symbol::Select);
        if (joined)
            joinedSources();
        else if (Query inner = query(nullptr, nullptr); inner.known)
            source.fields = std::make_shared<const KnownFields>(std::move(inner.fields));
        expect(Symbol::Close);
        m_out.sql += u')';
        if (joined)
            return;
    }
    source.name = source.table;
    const bool called = take(Symbol::As) || atName();
    if (called)
        source.name = name();
    if (called || inBrackets) {
        m_out.sql += QLatin1String(" AS ");
        m_out.name(source.name);
    }
    m_scope->sources.append(std::move(source));
}

void SqlTranslator::where()
{
    if (!take(Symbol::Where))
        return;
    m_out.sql += QLatin1String(" WHERE ");
    condition();
}

Translated translate(const QString& statement, const SourceOf& sourceOf)
{
    return SqlTranslator(statement, sourceOf).run();
}

} // namespace orlo::store
