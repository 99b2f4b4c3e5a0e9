#include "store/engine/SqlTokens.h"

#include "platform/RuntimeError.h"

#include <QString>

#include <array>
#include <string_view>

namespace orlo::store
{

namespace
{

using enum Symbol;

struct Meaning {
    std::string_view text;
    Symbol symbol;
};

// By first letters.
constexpr Meaning Words[] = {
    {"all", All},
    {"and", And},
    {"as", As},
    {"asc", Asc},
    {"between", Between},
    {"by", By},
    {"case", Refused},
    {"cross", Refused},
    {"delete", Delete},
    {"desc", Desc},
    {"distinct", Distinct},
    {"distinctrow", Distinct},
    {"except", Refused},
    {"exists", Exists},
    {"false", False},
    {"from", From},
    {"full", Refused},
    {"group", Group},
    {"having", Having},
    {"in", In},
    {"indexed", Refused},
    {"inner", Inner},
    {"insert", Insert},
    {"intersect", Refused},
    {"into", Into},
    {"is", Is},
    {"join", Join},
    {"left", Left},
    {"like", Like},
    {"limit", Refused},
    {"natural", Refused},
    {"no", False},
    {"not", Not},
    {"null", Null},
    {"on", On},
    {"or", Or},
    {"order", Order},
    {"outer", Outer},
    {"returning", Refused},
    {"right", Right},
    {"select", Select},
    {"set", Set},
    {"true", True},
    {"union", Union},
    {"update", Update},
    {"using", Refused},
    {"values", Values},
    {"where", Where},
    {"window", Refused},
    {"with", Refused},
    {"yes", True},
};

// A longer sign before those that it begins with. Refused ones begin a comment or belong to another language.
constexpr Meaning Signs[] = {
    {",", Comma},   {"==", Refused}, {"=", Equal},        {".", Dot},      {"(", Open},     {")", Close},
    {"*", Star},    {"&", Amp},      {"<=", LessOrEqual}, {"<>", Unequal}, {"<", Less},     {">=", GreaterOrEqual},
    {">", Greater}, {"+", Plus},     {"--", Refused},     {"-", Minus},    {"/*", Refused}, {"/", Slash}};

// Where the words of each first letter begin.
constexpr auto WordStarts = [] {
    std::array<quint8, 27> starts{};
    std::size_t at = 0;
    for (std::size_t letter = 0; letter < 27; ++letter) {
        while (at < std::size(Words) && static_cast<std::size_t>(Words[at].text.front() - 'a') < letter)
            ++at;
        starts[letter] = static_cast<quint8>(at);
    }
    return starts;
}();

Symbol symbolOf(QStringView word)
{
    const unsigned letter = (word[0].unicode() | 0x20U) - 'a';
    if (letter < 26)
        for (std::size_t i = WordStarts[letter]; i < WordStarts[letter + 1]; ++i)
            if (Words[i].text.size() == std::size_t(word.size()) &&
                word.compare(QLatin1String(Words[i].text.data(), qsizetype(Words[i].text.size())),
                             Qt::CaseInsensitive) == 0)
                return Words[i].symbol;
    return Symbol::Word;
}

bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

bool isWordPart(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' || isDigit(c) ||
           (c >= 0x80 && (QChar(c).isLetter() || QChar(c).isMark() || QChar::isSurrogate(c)));
}

bool isBlank(char16_t c)
{
    return c == u' ' || (c >= u'\t' && c <= u'\r') || c == 0xA0;
}

// Goes over a statement up to the zero at its end, which stops every loop.
class Tokenizer
{
public:
    explicit Tokenizer(const QString& statement) : m_at(reinterpret_cast<const char16_t*>(statement.utf16())) {}

    Token next()
    {
        skip(isBlank);
        const char16_t* const start = m_at;
        if (isDigit(*m_at) || (*m_at == u'.' && isDigit(m_at[1])))
            return number();
        if (isWordPart(*m_at)) {
            skip(isWordPart);
            return {symbolOf({start, m_at}), {start, m_at}};
        }
        switch (*m_at) {
        case u'\0':
            return {Symbol::End, {}};
        case u'\'':
        case u'"':
            return delimited(Symbol::Text, *m_at);
        case u'[':
            return delimited(Symbol::Name, u']');
        case u'#':
            return delimited(Symbol::Date, u'#');
        case u';':
            ++m_at;
            skip(isBlank);
            return {*m_at == u'\0' ? Symbol::End : Symbol::Refused, {start, 1}};
        default:
            break;
        }
        const auto same = [start](char c, std::size_t i) { return QChar(start[i]) == QLatin1Char(c); };
        for (const Meaning& sign : Signs)
            if (same(sign.text[0], 0) && (sign.text.size() == 1 || same(sign.text[1], 1))) {
                m_at += sign.text.size();
                return {sign.symbol, {start, m_at}};
            }
        return {Symbol::Refused, {start, ++m_at}};
    }

    // Where the last token ended.
    [[nodiscard]] const char16_t* place() const { return m_at; }

private:
    template <typename Is>
    void skip(Is is)
    {
        while (is(*m_at))
            ++m_at;
    }

    Token number()
    {
        const char16_t* const start = m_at;
        skip(isDigit);
        if (*m_at == u'.') {
            ++m_at;
            skip(isDigit);
        }
        if ((*m_at | 0x20) == u'e') {
            const int sign = m_at[1] == u'+' || m_at[1] == u'-' ? 2 : 1;
            if (isDigit(m_at[sign])) {
                m_at += sign;
                skip(isDigit);
            }
        }
        return {Symbol::Number, {start, m_at}};
    }

    [[noreturn]] static void raiseUnclosed(Symbol symbol)
    {
        if (symbol == Symbol::Text)
            raiseSyntax(QStringLiteral("(A text isn't closed.)"));
        if (symbol == Symbol::Date)
            raiseSyntax(QStringLiteral("(A date isn't closed.)"));
        raiseSyntax(QStringLiteral("(A name isn't closed.)"));
    }

    // A text keeps its doubled delimiters.
    Token delimited(Symbol symbol, char16_t end)
    {
        const char16_t* const start = ++m_at;
        while (*m_at != u'\0' && (*m_at != end || (symbol == Symbol::Text && m_at[1] == end)))
            m_at += *m_at == end ? 2 : 1;
        if (*m_at == u'\0' || (m_at == start && symbol != Symbol::Text))
            raiseUnclosed(symbol);
        return {symbol, {start, m_at++}};
    }

    const char16_t* m_at;
};

} // namespace

void raiseSyntax(const QString& detail)
{
    throw platform::RuntimeError(platform::SyntaxError, QStringLiteral("Database"),
                                 platform::standardDescription(platform::SyntaxError) + u' ' + detail);
}

Tokens tokenize(const QString& statement)
{
    Tokenizer tokenizer(statement);
    Tokens tokens;
    do
        tokens.append(tokenizer.next());
    while (tokens.back().symbol != Symbol::End);
    if (tokenizer.place() != reinterpret_cast<const char16_t*>(statement.utf16()) + statement.size())
        tokens.back().symbol = Symbol::Refused; // a zero within
    return tokens;
}

} // namespace orlo::store
