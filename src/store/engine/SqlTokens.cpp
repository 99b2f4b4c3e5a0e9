#include "store/engine/SqlTokens.h"

#include "platform/RuntimeError.h"

#include <QString>

#include <array>

namespace orlo::store
{

namespace
{

struct KeywordName {
    QLatin1String name;
    Keyword keyword;
};

constexpr KeywordName Keywords[] = {
    {QLatin1String("all"), Keyword::All},
    {QLatin1String("and"), Keyword::And},
    {QLatin1String("as"), Keyword::As},
    {QLatin1String("asc"), Keyword::Asc},
    {QLatin1String("between"), Keyword::Between},
    {QLatin1String("by"), Keyword::By},
    {QLatin1String("case"), Keyword::Refused},
    {QLatin1String("cross"), Keyword::Refused},
    {QLatin1String("delete"), Keyword::Delete},
    {QLatin1String("desc"), Keyword::Desc},
    {QLatin1String("distinct"), Keyword::Distinct},
    {QLatin1String("distinctrow"), Keyword::DistinctRow},
    {QLatin1String("except"), Keyword::Refused},
    {QLatin1String("exists"), Keyword::Exists},
    {QLatin1String("false"), Keyword::False},
    {QLatin1String("from"), Keyword::From},
    {QLatin1String("full"), Keyword::Refused},
    {QLatin1String("group"), Keyword::Group},
    {QLatin1String("having"), Keyword::Having},
    {QLatin1String("in"), Keyword::In},
    {QLatin1String("indexed"), Keyword::Refused},
    {QLatin1String("inner"), Keyword::Inner},
    {QLatin1String("insert"), Keyword::Insert},
    {QLatin1String("intersect"), Keyword::Refused},
    {QLatin1String("into"), Keyword::Into},
    {QLatin1String("is"), Keyword::Is},
    {QLatin1String("join"), Keyword::Join},
    {QLatin1String("left"), Keyword::Left},
    {QLatin1String("like"), Keyword::Like},
    {QLatin1String("limit"), Keyword::Refused},
    {QLatin1String("natural"), Keyword::Refused},
    {QLatin1String("no"), Keyword::False},
    {QLatin1String("not"), Keyword::Not},
    {QLatin1String("null"), Keyword::Null},
    {QLatin1String("on"), Keyword::On},
    {QLatin1String("or"), Keyword::Or},
    {QLatin1String("order"), Keyword::Order},
    {QLatin1String("outer"), Keyword::Outer},
    {QLatin1String("returning"), Keyword::Refused},
    {QLatin1String("right"), Keyword::Right},
    {QLatin1String("select"), Keyword::Select},
    {QLatin1String("set"), Keyword::Set},
    {QLatin1String("true"), Keyword::True},
    {QLatin1String("union"), Keyword::Union},
    {QLatin1String("update"), Keyword::Update},
    {QLatin1String("using"), Keyword::Refused},
    {QLatin1String("values"), Keyword::Values},
    {QLatin1String("where"), Keyword::Where},
    {QLatin1String("window"), Keyword::Refused},
    {QLatin1String("with"), Keyword::Refused},
    {QLatin1String("yes"), Keyword::True},
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
        while (m_at < m_size) {
            if (isBlank(at(m_at))) {
                ++m_at;
                continue;
            }
            if (at(m_at) == u';') {
                expectEnd();
                break;
            }
            tokens.append(next());
        }
        tokens.append(Token{TokenKind::End, Keyword::None, m_size, 0});
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
            return {TokenKind::Word, keywordOf(QStringView(m_text).mid(start, m_at - start)), start, m_at - start};
        }
        if (isDigit(c) || (c == u'.' && isDigit(peek())))
            return number();
        switch (c) {
        case u'\'':
        case u'"':
            return text(c);
        case u'[':
            return delimited(TokenKind::Name, u']');
        case u'#':
            return delimited(TokenKind::Date, u'#');
        case u'(':
            return single(TokenKind::Open);
        case u')':
            return single(TokenKind::Close);
        case u',':
            return single(TokenKind::Comma);
        case u'&':
            return sign(Keyword::Amp);
        case u'-':
            if (peek() == u'-')
                break; // a comment
            return sign(Keyword::Minus);
        case u'/':
            if (peek() == u'*')
                break;
            return sign(Keyword::Slash);
        case u'=':
            if (peek() == u'=')
                break;
            return sign(Keyword::Equal);
        case u'<':
            return peek() == u'='   ? sign(Keyword::LessOrEqual, 2)
                   : peek() == u'>' ? sign(Keyword::Unequal, 2)
                                    : sign(Keyword::Less);
        case u'>':
            return peek() == u'=' ? sign(Keyword::GreaterOrEqual, 2) : sign(Keyword::Greater);
        case u'+':
            return sign(Keyword::Plus);
        case u'*':
            return sign(Keyword::Star);
        case u'.':
            return sign(Keyword::Dot);
        default:
            break;
        }
        raiseSyntax(QStringLiteral("(Near \"%1\".)").arg(QStringView(m_text).mid(start, 20)));
    }

    Token single(TokenKind kind) { return {kind, Keyword::None, m_at++, 1}; }

    Token sign(Keyword keyword, qsizetype length = 1)
    {
        m_at += length;
        return {TokenKind::Sign, keyword, m_at - length, length};
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
        return {TokenKind::Number, Keyword::None, start, m_at - start};
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
                return {TokenKind::Text, Keyword::None, start, m_at++ - start};
            ++m_at;
        }
        raiseSyntax(QStringLiteral("(A text isn't closed.)"));
    }

    Token delimited(TokenKind kind, char16_t end)
    {
        const qsizetype start = ++m_at;
        while (m_at < m_size && at(m_at) != end && at(m_at) != u'\0')
            ++m_at;
        if (m_at >= m_size || at(m_at) != end || m_at == start)
            raiseSyntax(kind == TokenKind::Date ? QStringLiteral("(A date isn't closed.)")
                                                : QStringLiteral("(A name isn't closed.)"));
        return {kind, Keyword::None, start, m_at++ - start};
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
