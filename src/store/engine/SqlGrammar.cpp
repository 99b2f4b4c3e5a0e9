// The dialect's expressions.

#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "platform/Text.h"
#include "store/engine/Functions.h"
#include "store/engine/Rows.h"
#include "store/engine/SqlTranslator.h"

#include <QStringBuilder>

#include <algorithm>
#include <array>
#include <utility>

namespace orlo::store
{

namespace
{

using Kind = ValueKind;

Kind argumentKind(char letter)
{
    if (letter == 't')
        return Kind::Text;
    return letter == 'n' ? Kind::Number : Kind::Date;
}

constexpr QStringView Aggregates[] = {u"avg", u"count", u"max", u"min", u"sum"};

} // namespace

SqlTranslator::Level SqlTranslator::levelOf(Symbol sign)
{
    if (sign >= Symbol::Equal && sign <= Symbol::GreaterOrEqual)
        return Level::Comparison;
    switch (sign) {
    case Symbol::Or:
        return Level::Or;
    case Symbol::And:
        return Level::And;
    case Symbol::Like:
    case Symbol::Between:
    case Symbol::In:
    case Symbol::Is:
        return Level::Comparison;
    case Symbol::Amp:
        return Level::Join;
    case Symbol::Plus:
    case Symbol::Minus:
        return Level::Sum;
    case Symbol::Star:
    case Symbol::Slash:
        return Level::Product;
    default:
        return Level::None;
    }
}

void SqlTranslator::condition()
{
    Expression value = expression();
    m_out.condition(value);
}

// Reads operators of at least this precedence.
Expression SqlTranslator::expression(Level least)
{
    const qsizetype start = m_at;
    const qsizetype varying = m_varying;
    Expression left = prefixed(least);
    while (true) {
        if (m_varying > varying)
            m_parts.append({start, m_at});
        const bool negative = at(Symbol::Not);
        const Symbol sign = token(negative ? 1 : 0).symbol;
        const bool negatable = sign == Symbol::Like || sign == Symbol::Between || sign == Symbol::In;
        if (levelOf(sign) < least || (negative && !negatable))
            return left;
        m_at += negative ? 2 : 1;
        left = applied(left, sign, negative);
    }
}

Expression SqlTranslator::prefixed(Level least)
{
    if (at(Symbol::Not) && least <= Level::Not) {
        const QScopedValueRollback nesting(m_depth, deeper());
        ++m_at;
        return m_out.negated(expression(Level::Not));
    }
    if (!at(Symbol::Minus) && !at(Symbol::Plus))
        return operand();
    const QScopedValueRollback nesting(m_depth, deeper());
    const bool minus = m_tokens[m_at++].symbol == Symbol::Minus;
    const Expression number = expression(Level::Sign);
    return minus ? m_out.oppositeOf(number) : number;
}

// Reads an operator's right side.
Expression SqlTranslator::applied(Expression left, Symbol sign, bool negative)
{
    const Level level = levelOf(sign);
    if (sign == Symbol::In)
        return inList(left, negative);
    if (sign == Symbol::Is) {
        const bool null = !take(Symbol::Not);
        expect(Symbol::Null);
        return m_out.nullTest(left, null);
    }
    const Expression right = expression(Level(int(level) + 1));
    if (sign == Symbol::Like)
        return m_out.like(left, negative, right);
    if (sign == Symbol::Between) {
        expect(Symbol::And);
        std::array values{left, right, expression(Level::Join)};
        return m_out.between(values, negative);
    }
    switch (level) {
    case Level::Or:
        return m_out.connected(left, Binding::Or, right);
    case Level::And:
        return m_out.connected(left, Binding::And, right);
    case Level::Comparison:
        return m_out.compared(left, sign, right);
    case Level::Join:
        return m_out.joined(left, right);
    default:
        return m_out.calculated(left, sign, right);
    }
}

Expression SqlTranslator::inList(Expression value, bool negative)
{
    if (at(Symbol::Open) && at(Symbol::Select, 1))
        return m_out.inRows(value, negative, bracketed());
    std::vector<Expression> values{value};
    expect(Symbol::Open);
    do
        values.push_back(expression());
    while (take(Symbol::Comma));
    expect(Symbol::Close);
    return m_out.oneOf(values, negative);
}

Expression SqlTranslator::literal(Kind kind, QStringView sql)
{
    const qsizetype start = m_out.sql.size();
    m_out.sql += sql;
    ++m_at;
    Expression value = m_out.written(start, kind);
    value.neverNull = true;
    return value;
}

Expression SqlTranslator::text(QStringView content)
{
    const bool single = content.data()[-1] == u'\'';
    QString text;
    if (!single)
        text =
            u'\'' +
            content.toString().replace(QLatin1String("\"\""), QLatin1String("\"")).replace(u'\'', QLatin1String("''")) +
            u'\'';
    Expression value = literal(Kind::Text, single ? QStringView(content.begin() - 1, content.end() + 1) : text);
    value.literal = content;
    return value;
}

Expression SqlTranslator::date(QStringView content)
{
    const auto date = platform::readDate(content);
    if (!date)
        raise(QStringLiteral("(\"%1\" is no date.)").arg(content), content);
    return literal(Kind::Date, QString(u'\'' % QLatin1String(isoText(*date)) % u'\''));
}

Expression SqlTranslator::operand()
{
    const QStringView content = token().text;
    const qsizetype start = m_out.sql.size();
    switch (token().symbol) {
    case Symbol::Number: {
        Expression number = literal(Kind::Number, content);
        number.whole = std::ranges::all_of(content, [](QChar c) { return c.isDigit(); });
        return number;
    }
    case Symbol::Text:
        return text(content);
    case Symbol::Date:
        return date(content);
    case Symbol::True:
        return literal(Kind::Truth, u"1");
    case Symbol::False:
        return literal(Kind::Truth, u"0");
    case Symbol::Null: {
        Expression null = literal(Kind::Unknown, u"NULL");
        null.form = Expression::Form::Null;
        null.neverNull = false;
        return null;
    }
    case Symbol::Open:
        return bracketed();
    case Symbol::Exists:
        if (!at(Symbol::Open, 1) || !at(Symbol::Select, 2))
            refuse();
        ++m_at;
        m_out.sql += QLatin1String("EXISTS ");
        bracketed();
        return m_out.written(start, Kind::Truth);
    case Symbol::Word:
    case Symbol::Left:
    case Symbol::Right:
        if (at(Symbol::Open, 1))
            return function();
        break;
    default:
        break;
    }
    const qsizetype at = m_at;
    ++m_varying;
    const FieldName field = fieldName();
    if (!field.source.isNull()) {
        m_out.name(field.source);
        m_out.sql += u'.';
    }
    m_out.name(field.name);
    Expression value = m_out.written(start, field.known ? field.known->kind : Kind::Unknown);
    value.form = Expression::Form::Field;
    value.whole = field.known && field.known->whole;
    value.name = field.name;
    value.known = field.known;
    if (field.scope && !field.scope->inSum) {
        field.scope->fields.append(at);
        field.scope->named.append(field.known);
    }
    return value;
}

// An expression in brackets, or a Select for its value.
Expression SqlTranslator::bracketed()
{
    const QScopedValueRollback nesting(m_depth, deeper());
    expect(Symbol::Open);
    Expression inner;
    if (at(Symbol::Select)) {
        const qsizetype start = m_out.sql.size();
        m_out.sql += u'(';
        const Query rows = query(m_scope, nullptr);
        m_out.sql += u')';
        inner = m_out.written(start, rows.fields.empty() ? Kind::Unknown : rows.fields.front().kind);
    } else
        inner = expression();
    expect(Symbol::Close);
    return inner;
}

SqlTranslator::FieldName SqlTranslator::fieldName()
{
    QStringView source;
    QStringView field = name();
    if (take(Symbol::Dot)) {
        source = field;
        field = name();
    }
    Scope* scope = m_scope;
    const KnownField* const known = find(source, field, &scope);
    return {source, field, known, scope};
}

// SQLite has the row number under these names, too, but only the engine may set it.
void SqlTranslator::refuseRowNumber(QStringView name)
{
    for (const QStringView number : {u"rowid", u"_rowid_", u"oid"})
        if (platform::sameName(name, number))
            throw platform::RuntimeError(platform::UnknownName, QStringLiteral("Database"),
                                         platform::standardDescription(platform::UnknownName) +
                                             QStringLiteral(" (%1)").arg(name));
}

// `has` gets the Select that the field belongs to, or null for a result.
const KnownField* SqlTranslator::find(QStringView source, QStringView name, Scope** has) const
{
    Scope* other = nullptr;
    Scope*& where = has ? *has : other;
    const auto among = [name](const KnownFields& fields) -> const KnownField* {
        for (const KnownField& field : fields)
            if (platform::sameName(field.name, name))
                return &field;
        return nullptr;
    };
    for (Scope* scope = m_scope; scope; scope = scope->outer) {
        if (scope->results && source.isNull())
            if (const KnownField* found = among(*scope->results))
                return where = nullptr, found;
        for (const Source& one : scope->sources)
            if (one.fields && (source.isNull() || source.compare(one.name, Qt::CaseInsensitive) == 0))
                if (const KnownField* found = among(*one.fields))
                    return where = scope, found;
    }
    return nullptr;
}

Expression SqlTranslator::function()
{
    const QScopedValueRollback nesting(m_depth, deeper());
    const QStringView called = m_tokens[m_at++].text;
    if (std::ranges::any_of(Aggregates, [called](QStringView name) { return platform::sameName(called, name); }))
        return aggregate(called);
    const auto known = std::ranges::find_if(dialectFunctions(), [called](const DialectFunction& function) {
        return platform::sameName(called, function.name);
    });
    const bool ours = known != dialectFunctions().end();
    const qsizetype start = m_out.sql.size();
    if (ours)
        m_out.sql += known->sql % u'(';
    std::vector<Expression> given;
    expect(Symbol::Open);
    if (!at(Symbol::Close))
        do {
            if (ours && !given.empty())
                m_out.sql += u',';
            given.push_back(expression());
            if (ours && given.size() <= known->arguments.size()) {
                m_out.as(argumentKind(known->arguments[given.size() - 1]), given.back());
            }
        } while (take(Symbol::Comma));
    expect(Symbol::Close);
    if (platform::sameName(called, u"iif") && given.size() == 3)
        return m_out.choice(given[0], given[1], given[2]);
    if (platform::sameName(called, u"isnull") && given.size() == 1)
        return m_out.nullTest(given[0], true);
    const bool special = platform::sameName(called, u"iif") || platform::sameName(called, u"isnull");
    if (!ours && !special)
        raise(QStringLiteral("(There is no function \"%1\".%2)").arg(called, insteadOf(called)), called);
    if (special || given.size() > known->arguments.size() || given.size() + known->optional < known->arguments.size())
        raise(QStringLiteral("(\"%1\" takes another number of values.)").arg(called), called);
    m_out.sql += u')';
    return m_out.written(start, known->result);
}

Expression SqlTranslator::aggregate(QStringView called)
{
    ++m_varying;
    const bool count = platform::sameName(called, u"count");
    const bool ends = platform::sameName(called, u"max") || platform::sameName(called, u"min");
    const qsizetype start = m_out.sql.size();
    m_out.sql += called.toString().toLower() + u'(';
    expect(Symbol::Open);
    Kind kind = Kind::Number;
    const bool rows = count && take(Symbol::Star);
    const KnownField* field = nullptr;
    if (rows)
        m_out.sql += u'*';
    else {
        const bool within = std::exchange(m_scope->inSum, true);
        Expression value = expression();
        m_scope->inSum = within;
        field = value.form == Expression::Form::Field ? value.known : nullptr;
        if (ends && value.kind != Kind::Truth)
            kind = value.kind;
        if (!count)
            m_out.as(kind, value);
        if (ends)
            m_out.order(value);
    }
    m_scope->summed.append({called, field});
    expect(Symbol::Close);
    m_out.sql += u')';
    Expression sum = m_out.written(start, kind);
    sum.whole = rows;
    return sum;
}

QStringView SqlTranslator::name()
{
    if (!atName())
        refuse();
    return m_tokens[m_at++].text;
}

// Limits the nesting, because each level uses stack.
int SqlTranslator::deeper() const
{
    constexpr int Most = 60;
    if (m_depth == Most)
        raise(QStringLiteral("(Too many brackets within each other.)"), token().text);
    return m_depth + 1;
}

void SqlTranslator::refuse() const
{
    raise(at(Symbol::End) ? QStringLiteral("(The statement breaks off.)")
                          : QStringLiteral("(Near \"%1\".%2)").arg(token().text, insteadOf(token().text)),
          token().text);
}

void SqlTranslator::raise(const QString& detail, QStringView at) const
{
    const QStringView whole = m_statement.trimmed();
    throw SqlError(detail, m_statement, at.isNull() ? whole.utf16() + whole.size() : at.utf16());
}

} // namespace orlo::store
