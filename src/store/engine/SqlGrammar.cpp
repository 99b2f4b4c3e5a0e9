// The expressions of the dialect, and the tokens that they are read from.

#include "platform/Conversion.h"
#include "store/engine/Rows.h"
#include "store/engine/SqlTranslator.h"

#include <algorithm>

namespace orlo::store
{

namespace
{

using Kind = ValueKind;

// What a function takes: a letter for each argument, t for a text, n for a number, d for a date; those that may be left
// out are counted.
struct DialectFunction {
    QLatin1String name;
    QLatin1String sql;
    const char* arguments;
    std::size_t optional;
    Kind result;
};

constexpr DialectFunction DialectFunctions[] = {
    {QLatin1String("abs"), QLatin1String("abs"), "n", 0, Kind::Number},
    {QLatin1String("date"), QLatin1String("date"), "", 0, Kind::Date},
    {QLatin1String("day"), QLatin1String("day"), "d", 0, Kind::Number},
    {QLatin1String("instr"), QLatin1String("find_text"), "tt", 0, Kind::Number},
    {QLatin1String("lcase"), QLatin1String("lcase"), "t", 0, Kind::Text},
    {QLatin1String("left"), QLatin1String("\"left\""), "tn", 0, Kind::Text},
    {QLatin1String("len"), QLatin1String("len"), "t", 0, Kind::Number},
    {QLatin1String("ltrim"), QLatin1String("ltrim"), "t", 0, Kind::Text},
    {QLatin1String("mid"), QLatin1String("mid"), "tnn", 1, Kind::Text},
    {QLatin1String("month"), QLatin1String("month"), "d", 0, Kind::Number},
    {QLatin1String("now"), QLatin1String("now"), "", 0, Kind::Date},
    {QLatin1String("replace"), QLatin1String("replace"), "ttt", 0, Kind::Text},
    {QLatin1String("right"), QLatin1String("\"right\""), "tn", 0, Kind::Text},
    {QLatin1String("round"), QLatin1String("round_even"), "nn", 1, Kind::Number},
    {QLatin1String("rtrim"), QLatin1String("rtrim"), "t", 0, Kind::Text},
    {QLatin1String("trim"), QLatin1String("trim"), "t", 0, Kind::Text},
    {QLatin1String("ucase"), QLatin1String("ucase"), "t", 0, Kind::Text},
    {QLatin1String("year"), QLatin1String("year"), "d", 0, Kind::Number},
};

bool sameWord(QStringView word, QLatin1String name)
{
    return word.size() == name.size() && word.compare(name, Qt::CaseInsensitive) == 0;
}

QString quotedText(QStringView content, QChar delimiter)
{
    QString text = content.toString();
    if (delimiter == u'"')
        text.replace(QLatin1String("\"\""), QLatin1String("\"")).replace(u'\'', QLatin1String("''"));
    return u'\'' + text + u'\'';
}

QString dateLiteral(QStringView text)
{
    const auto date = platform::readDate(text);
    if (!date)
        raiseSyntax(QStringLiteral("(\"%1\" is no date.)").arg(text));
    return u'\'' + QString::fromLatin1(isoText(*date)) + u'\'';
}

Expression literalOf(QString sql, Kind kind, bool whole = false)
{
    return {std::move(sql), kind, Binding::Operand, Expression::Form::Computed, whole, true};
}

} // namespace

Expression SqlTranslator::expression()
{
    const Nesting nesting(*this);
    Expression left = conjunction();
    while (take(Keyword::Or))
        left = connected(std::move(left), Binding::Or, conjunction());
    return left;
}

Expression SqlTranslator::conjunction()
{
    Expression left = negation();
    while (take(Keyword::And))
        left = connected(std::move(left), Binding::And, negation());
    return left;
}

Expression SqlTranslator::negation()
{
    if (!take(Keyword::Not))
        return comparison();
    const Nesting nesting(*this);
    return negated(negation());
}

Expression SqlTranslator::comparison()
{
    Expression left = joining();
    while (compare(left))
        ;
    return left;
}

// Reads on behind an expression that is compared with something; false for one that isn't.
bool SqlTranslator::compare(Expression& left)
{
    const bool negative = at(Keyword::Not);
    const Keyword sign = token(negative ? 1 : 0).keyword;
    switch (sign) {
    case Keyword::Like:
    case Keyword::Between:
    case Keyword::In:
        m_at += negative ? 2 : 1;
        break;
    case Keyword::Equal:
    case Keyword::Unequal:
    case Keyword::Less:
    case Keyword::LessOrEqual:
    case Keyword::Greater:
    case Keyword::GreaterOrEqual:
    case Keyword::Is:
        if (negative)
            return false;
        ++m_at;
        break;
    default:
        return false;
    }
    if (sign == Keyword::Like)
        left = like(std::move(left), negative, joining());
    else if (sign == Keyword::In)
        left = inList(std::move(left), negative);
    else if (sign == Keyword::Is) {
        const bool null = !take(Keyword::Not);
        expect(Keyword::Null);
        left = nullTest(std::move(left), null);
    } else if (sign == Keyword::Between) {
        Expression from = joining();
        expect(Keyword::And);
        left = between(std::move(left), negative, std::move(from), joining());
    } else
        left = compared(std::move(left), sign, joining());
    return true;
}

Expression SqlTranslator::inList(Expression value, bool negative)
{
    if (at(TokenKind::Open) && at(Keyword::Select, 1))
        return inRows(std::move(value), negative, bracketed());
    std::vector<Expression> list = arguments();
    if (list.empty())
        refuse();
    list.insert(list.begin(), std::move(value));
    return oneOf(list, negative);
}

Expression SqlTranslator::joining()
{
    Expression left = sum();
    while (take(Keyword::Amp))
        left = joined(std::move(left), sum());
    return left;
}

Expression SqlTranslator::sum()
{
    Expression left = product();
    while (at(Keyword::Plus) || at(Keyword::Minus)) {
        const Keyword sign = m_tokens[m_at++].keyword;
        left = calculated(std::move(left), sign, product());
    }
    return left;
}

Expression SqlTranslator::product()
{
    Expression left = sign();
    while (at(Keyword::Star) || at(Keyword::Slash)) {
        const Keyword by = m_tokens[m_at++].keyword;
        left = calculated(std::move(left), by, sign());
    }
    return left;
}

Expression SqlTranslator::sign()
{
    const bool minus = at(Keyword::Minus);
    if (!minus && !at(Keyword::Plus))
        return operand();
    const Nesting nesting(*this);
    ++m_at;
    return minus ? oppositeOf(sign()) : sign();
}

Expression SqlTranslator::operand()
{
    const Token& first = token();
    const QStringView text = view(first);
    switch (first.kind) {
    case TokenKind::Number:
        ++m_at;
        return literalOf(text.toString(), Kind::Number, std::ranges::all_of(text, [](QChar c) { return c.isDigit(); }));
    case TokenKind::Text:
        ++m_at;
        return literalOf(quotedText(text, m_text[first.start - 1]), Kind::Text);
    case TokenKind::Date:
        ++m_at;
        return literalOf(dateLiteral(text), Kind::Date);
    case TokenKind::Open:
        return bracketed();
    case TokenKind::Word:
        break;
    default:
        return fieldNamed();
    }
    if (at(TokenKind::Open, 1) && (atName() || at(Keyword::Left) || at(Keyword::Right)))
        return function();
    if (take(Keyword::Null))
        return {QStringLiteral("NULL"), Kind::Unknown, Binding::Operand, Expression::Form::Null};
    if (at(Keyword::True) || at(Keyword::False))
        return literalOf(m_tokens[m_at++].keyword == Keyword::True ? QStringLiteral("1") : QStringLiteral("0"),
                         Kind::Truth);
    if (!take(Keyword::Exists))
        return fieldNamed();
    if (!at(TokenKind::Open) || !at(Keyword::Select, 1))
        refuse();
    return {QLatin1String("EXISTS ") + bracketed().sql, Kind::Truth};
}

// An expression in brackets, or the Select that gives its value.
Expression SqlTranslator::bracketed()
{
    expect(TokenKind::Open);
    Expression inner;
    if (at(Keyword::Select)) {
        const Query rows = query(m_scope, nullptr);
        inner.sql = u'(' + rows.sql() + u')';
        if (!rows.fields.empty())
            inner.kind = rows.fields.front().kind;
    } else
        inner = expression();
    expect(TokenKind::Close);
    return inner;
}

Expression SqlTranslator::fieldNamed()
{
    QStringView source;
    QStringView field = name();
    QString sql = quotedName(field);
    if (take(Keyword::Dot)) {
        source = field;
        field = name();
        sql += u'.' + quotedName(field);
    }
    Expression value{std::move(sql), Kind::Unknown, Binding::Operand, Expression::Form::Field};
    const KnownField* known = find(source, field);
    value.name = known ? QStringView(known->name) : field;
    if (known) {
        value.kind = known->kind;
        value.whole = known->whole;
    }
    return value;
}

const KnownField* SqlTranslator::find(QStringView source, QStringView name) const
{
    const auto among = [name](const KnownFields& fields) -> const KnownField* {
        for (const KnownField& field : fields)
            if (field.name.size() == name.size() && name.compare(field.name, Qt::CaseInsensitive) == 0)
                return &field;
        return nullptr;
    };
    for (const Scope* scope = m_scope; scope; scope = scope->outer) {
        if (scope->results && source.isNull())
            if (const KnownField* found = among(*scope->results))
                return found;
        for (const Source& one : scope->sources)
            if (one.fields && (source.isNull() || source.compare(one.name, Qt::CaseInsensitive) == 0))
                if (const KnownField* found = among(*one.fields))
                    return found;
    }
    return nullptr;
}

std::vector<Expression> SqlTranslator::arguments()
{
    std::vector<Expression> list;
    expect(TokenKind::Open);
    if (take(TokenKind::Close))
        return list;
    do
        list.push_back(expression());
    while (take(TokenKind::Comma));
    expect(TokenKind::Close);
    return list;
}

Expression SqlTranslator::function()
{
    const Token& word = m_tokens[m_at++];
    const QStringView called = view(word);
    for (const auto sum : {"avg", "count", "max", "min", "sum"})
        if (sameWord(called, QLatin1String(sum)))
            return aggregate(called);
    std::vector<Expression> given = arguments();
    if (sameWord(called, QLatin1String("iif")) && given.size() == 3)
        return choice(std::move(given[0]), std::move(given[1]), std::move(given[2]));
    if (sameWord(called, QLatin1String("isnull")) && given.size() == 1)
        return nullTest(std::move(given[0]), true);
    for (const DialectFunction& function : DialectFunctions) {
        const std::size_t most = qstrlen(function.arguments);
        if (!sameWord(called, function.name) || given.size() > most || given.size() + function.optional < most)
            continue;
        for (std::size_t i = 0; i < given.size(); ++i) {
            const char kind = function.arguments[i];
            given[i] = as(kind == 't' ? Kind::Text : kind == 'n' ? Kind::Number : Kind::Date, std::move(given[i]));
        }
        return call(function.sql, given, function.result);
    }
    raiseSyntax(QStringLiteral("(There is no function \"%1\" of so many values.)").arg(called));
}

Expression SqlTranslator::aggregate(QStringView called)
{
    m_scope->sums = true;
    if (sameWord(called, QLatin1String("count")) && at(Keyword::Star, 1) && at(TokenKind::Close, 2)) {
        m_at += 3;
        return {QStringLiteral("count(*)"), Kind::Number, Binding::Operand, Expression::Form::Computed, true};
    }
    std::vector<Expression> given = arguments();
    if (given.size() != 1)
        raiseSyntax(QStringLiteral("(\"%1\" takes one value.)").arg(called));
    Expression& value = given.front();
    const bool ends = sameWord(called, QLatin1String("max")) || sameWord(called, QLatin1String("min"));
    Kind kind = ends ? value.kind : Kind::Number;
    if (kind == Kind::Truth)
        kind = Kind::Number;
    if (!sameWord(called, QLatin1String("count")))
        value = as(kind, std::move(value));
    return {called.toString().toLower() + u'(' + (ends ? ordered(value) : value.sql) + u')', kind};
}

bool SqlTranslator::atName() const
{
    return token().kind == TokenKind::Name || (token().kind == TokenKind::Word && token().keyword == Keyword::None);
}

QStringView SqlTranslator::view(const Token& token) const
{
    return QStringView(m_text).mid(token.start, token.length);
}

QStringView SqlTranslator::name()
{
    if (!atName())
        refuse();
    return view(m_tokens[m_at++]);
}

void SqlTranslator::refuse() const
{
    raiseSyntax(at(TokenKind::End) ? QStringLiteral("(The statement breaks off.)")
                                   : QStringLiteral("(Near \"%1\".)").arg(view(token())));
}

} // namespace orlo::store
