#include "store/engine/SqlTokens.h"

#include "platform/RuntimeError.h"

#include <QString>

namespace orlo::store
{

namespace
{

using Kind = TokenKind;

struct KeywordName {
    QLatin1String name;
    Keyword keyword;
};

constexpr KeywordName Keywords[] = {
    {QLatin1String("all"), Keyword::All},           {QLatin1String("as"), Keyword::As},
    {QLatin1String("avg"), Keyword::Sum},           {QLatin1String("count"), Keyword::Sum},
    {QLatin1String("cross"), Keyword::Join},        {QLatin1String("delete"), Keyword::Delete},
    {QLatin1String("distinct"), Keyword::Distinct}, {QLatin1String("distinctrow"), Keyword::DistinctRow},
    {QLatin1String("except"), Keyword::Union},      {QLatin1String("from"), Keyword::From},
    {QLatin1String("full"), Keyword::Join},         {QLatin1String("group"), Keyword::Union},
    {QLatin1String("group_concat"), Keyword::Sum},  {QLatin1String("having"), Keyword::Union},
    {QLatin1String("inner"), Keyword::Join},        {QLatin1String("insert"), Keyword::Insert},
    {QLatin1String("intersect"), Keyword::Union},   {QLatin1String("into"), Keyword::Into},
    {QLatin1String("isnull"), Keyword::IsNull},     {QLatin1String("join"), Keyword::Join},
    {QLatin1String("left"), Keyword::Left},         {QLatin1String("limit"), Keyword::Limit},
    {QLatin1String("max"), Keyword::Sum},           {QLatin1String("min"), Keyword::Sum},
    {QLatin1String("natural"), Keyword::Join},      {QLatin1String("null"), Keyword::Null},
    {QLatin1String("on"), Keyword::Join},           {QLatin1String("order"), Keyword::Order},
    {QLatin1String("over"), Keyword::Sum},          {QLatin1String("right"), Keyword::Right},
    {QLatin1String("select"), Keyword::Select},     {QLatin1String("set"), Keyword::Set},
    {QLatin1String("sum"), Keyword::Sum},           {QLatin1String("total"), Keyword::Sum},
    {QLatin1String("union"), Keyword::Union},       {QLatin1String("update"), Keyword::Update},
    {QLatin1String("where"), Keyword::Where},       {QLatin1String("window"), Keyword::Union},
};

// Where the keywords of each first letter begin in the sorted list.
constexpr auto KeywordStarts = [] {
    std::array<quint8, 27> starts{};
    std::size_t at = 0;
    for (std::size_t letter = 0; letter < 27; ++letter) {
        while (at < std::size(Keywords) && static_cast<std::size_t>(Keywords[at].name.data()[0] - 'a') < letter)
            ++at;
        starts[letter] = static_cast<quint8>(at);
    }
    return starts;
}();

Keyword keywordOf(QStringView word)
{
    const unsigned letter = (word[0].unicode() | 0x20U) - 'a';
    if (letter >= 26)
        return Keyword::None;
    for (std::size_t i = KeywordStarts[letter]; i < KeywordStarts[letter + 1]; ++i)
        if (Keywords[i].name.size() == word.size() && word.compare(Keywords[i].name, Qt::CaseInsensitive) == 0)
            return Keywords[i].keyword;
    return Keyword::None;
}

bool isWordStart(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' || (c >= 0x80 && QChar(c).isLetter()) ||
           QChar::isSurrogate(c);
}

bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

bool isWordPart(char16_t c)
{
    return isWordStart(c) || isDigit(c) || (c >= 0x80 && QChar(c).isMark());
}

bool isBlank(char16_t c)
{
    return c == u' ' || (c >= u'\t' && c <= u'\r') || c == 0xA0;
}

class Tokenizer
{
public:
    explicit Tokenizer(const QString& statement) : m_text(statement), m_size(statement.size()) {}

    Tokens run()
    {
        Tokens tokens;
        bool blank = false;
        while (m_at < m_size) {
            if (isBlank(at(m_at))) {
                blank = true;
                ++m_at;
                continue;
            }
            if (at(m_at) == u';') {
                expectEnd();
                break;
            }
            Token token = next();
            token.blankBefore = blank;
            blank = false;
            tokens.append(token);
        }
        tokens.append(Token{Kind::End, Keyword::None, false, m_size, 0});
        return tokens;
    }

private:
    char16_t at(qsizetype i) const { return m_text[i].unicode(); }
    char16_t peek() const { return m_at + 1 < m_size ? at(m_at + 1) : u'\0'; }

    void expectEnd()
    {
        for (++m_at; m_at < m_size; ++m_at)
            if (!isBlank(at(m_at)))
                raiseSyntax(QStringLiteral("(Text behind the end of the statement.)"));
    }

    Token next()
    {
        const qsizetype start = m_at;
        const char16_t c = at(m_at);
        if (isWordStart(c)) {
            while (m_at < m_size && isWordPart(at(m_at)))
                ++m_at;
            return {Kind::Word, keywordOf(QStringView(m_text).mid(start, m_at - start)), false, start, m_at - start};
        }
        if (isDigit(c) || (c == u'.' && isDigit(peek())))
            return number();
        switch (c) {
        case u'\'':
        case u'"':
            return text(c);
        case u'[':
            return delimited(Kind::Name, u']');
        case u'#':
            return delimited(Kind::Date, u'#');
        case u'(':
            return single(Kind::Open);
        case u')':
            return single(Kind::Close);
        case u',':
            return single(Kind::Comma);
        case u'&':
            return {Kind::Operator, Keyword::Amp, false, m_at++, 1};
        case u'-':
            if (peek() == u'-')
                break;
            return single(Kind::Operator);
        case u'/':
            if (peek() == u'*')
                break;
            return single(Kind::Operator);
        case u'<':
        case u'>':
        case u'=':
        case u'!':
            return comparison();
        case u'+':
        case u'*':
        case u'.':
        case u'%':
            return single(Kind::Operator);
        case u'|':
            if (peek() != u'|')
                break;
            m_at += 2;
            return {Kind::Operator, Keyword::None, false, start, 2};
        default:
            break;
        }
        raiseSyntax(QStringLiteral("(Near \"%1\".)").arg(QStringView(m_text).mid(start, 20)));
    }

    Token single(Kind kind) { return {kind, Keyword::None, false, m_at++, 1}; }

    Token comparison()
    {
        const qsizetype start = m_at++;
        if (m_at < m_size && (at(m_at) == u'=' || (at(start) == u'<' && at(m_at) == u'>')))
            ++m_at;
        return {Kind::Operator, Keyword::None, false, start, m_at - start};
    }

    Token number()
    {
        const qsizetype start = m_at;
        while (m_at < m_size && isDigit(at(m_at)))
            ++m_at;
        if (m_at < m_size && at(m_at) == u'.')
            for (++m_at; m_at < m_size && isDigit(at(m_at));)
                ++m_at;
        if (m_at < m_size && (at(m_at) | 0x20) == u'e') {
            const qsizetype sign = m_at + (peek() == u'+' || peek() == u'-' ? 2 : 1);
            if (sign < m_size && isDigit(at(sign)))
                for (m_at = sign; m_at < m_size && isDigit(at(m_at));)
                    ++m_at;
        }
        return {Kind::Number, Keyword::None, false, start, m_at - start};
    }

    // The content keeps its doubled delimiters.
    Token text(char16_t delimiter)
    {
        const qsizetype start = ++m_at;
        for (; m_at < m_size; ++m_at) {
            if (at(m_at) == u'\0')
                break;
            if (at(m_at) != delimiter)
                continue;
            if (peek() != delimiter || m_at + 1 >= m_size)
                return {Kind::Text, Keyword::None, false, start, m_at++ - start};
            ++m_at;
        }
        raiseSyntax(QStringLiteral("(A text isn't closed.)"));
    }

    Token delimited(Kind kind, char16_t end)
    {
        const qsizetype start = ++m_at;
        while (m_at < m_size && at(m_at) != end && at(m_at) != u'\0')
            ++m_at;
        if (m_at >= m_size || at(m_at) != end || m_at == start)
            raiseSyntax(kind == Kind::Date ? QStringLiteral("(A date isn't closed.)")
                                           : QStringLiteral("(A name isn't closed.)"));
        return {kind, Keyword::None, false, start, m_at++ - start};
    }

    const QString& m_text;
    qsizetype m_size;
    qsizetype m_at = 0;
};

} // namespace

void raiseSyntax(const QString& detail)
{
    throw platform::RuntimeError(platform::SyntaxError, QStringLiteral("Database"),
                                 platform::standardDescription(platform::SyntaxError) + u' ' + detail);
}

Tokens tokenize(const QString& statement)
{
    return Tokenizer(statement).run();
}

} // namespace orlo::store
