#include "store/engine/SqlTokens.h"

#include "platform/Text.h"
#include "store/engine/SqlError.h"

#include <QString>

#include <algorithm>
#include <array>
#include <utility>

namespace orlo::store
{

namespace
{

using enum Symbol;

struct Meaning {
    QStringView text;
    Symbol symbol;
};

constexpr Meaning Words[] = {
    {u"all", All},
    {u"and", And},
    {u"as", As},
    {u"asc", Asc},
    {u"between", Between},
    {u"by", By},
    {u"case", Refused},
    {u"cross", Refused},
    {u"delete", Delete},
    {u"desc", Desc},
    {u"distinct", Distinct},
    {u"distinctrow", Distinct},
    {u"except", Refused},
    {u"exists", Exists},
    {u"false", False},
    {u"from", From},
    {u"full", Refused},
    {u"group", Group},
    {u"having", Having},
    {u"in", In},
    {u"indexed", Refused},
    {u"inner", Inner},
    {u"insert", Insert},
    {u"intersect", Refused},
    {u"into", Into},
    {u"is", Is},
    {u"join", Join},
    {u"left", Left},
    {u"like", Like},
    {u"limit", Refused},
    {u"natural", Refused},
    {u"no", False},
    {u"not", Not},
    {u"null", Null},
    {u"on", On},
    {u"or", Or},
    {u"order", Order},
    {u"outer", Outer},
    {u"returning", Refused},
    {u"right", Right},
    {u"select", Select},
    {u"set", Set},
    {u"true", True},
    {u"union", Union},
    {u"update", Update},
    {u"using", Refused},
    {u"values", Values},
    {u"where", Where},
    {u"window", Refused},
    {u"with", Refused},
    {u"yes", True},
};

static_assert(std::ranges::is_sorted(Words, {}, [](const Meaning& word) { return word.text.front().unicode(); }),
              "the words are found by their first letters");

// Longer signs come first. Refused ones start comments or belong to other dialects.
constexpr Meaning Signs[] = {{u",", Comma},        {u"==", Refused}, {u"=", Equal},    {u".", Dot},
                             {u"(", Open},         {u")", Close},    {u"*", Star},     {u"&", Amp},
                             {u"<=", LessOrEqual}, {u"<>", Unequal}, {u"<", Less},     {u">=", GreaterOrEqual},
                             {u">", Greater},      {u"+", Plus},     {u"--", Refused}, {u"-", Minus},
                             {u"/*", Refused},     {u"/", Slash}};

// The first word of each letter.
constexpr auto WordStarts = [] {
    std::array<quint8, 27> starts{};
    std::size_t at = 0;
    for (std::size_t letter = 0; letter < 27; ++letter) {
        while (at < std::size(Words) && Words[at].text.front().unicode() - std::size_t('a') < letter)
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
            if (platform::sameName(Words[i].text, word))
                return Words[i].symbol;
    return Symbol::Word;
}

bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

constexpr auto AsciiWordParts = [] {
    std::array<bool, 0x80> parts{};
    for (char16_t c = 0; c < 0x80; ++c)
        parts[c] = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' || (c >= u'0' && c <= u'9');
    return parts;
}();

bool isWordPart(char16_t c)
{
    return c < 0x80 ? AsciiWordParts[c] : QChar(c).isLetter() || QChar(c).isMark() || QChar::isSurrogate(c);
}

bool isBlank(char16_t c)
{
    return c == u' ' || (c >= u'\t' && c <= u'\r') || c == 0xA0;
}

// Reads up to the terminating zero, which ends every loop.
class Tokenizer
{
public:
    explicit Tokenizer(const QString& statement)
        : m_at(reinterpret_cast<const char16_t*>(statement.utf16())), m_statement(m_at, statement.size())
    {
    }

    Token next()
    {
        skip<isBlank>();
        const char16_t* const start = m_at;
        if (isDigit(*m_at) || (*m_at == u'.' && isDigit(m_at[1])))
            return number();
        if (isWordPart(*m_at)) {
            skip<isWordPart>();
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
            skip<isBlank>();
            return {*m_at == u'\0' ? Symbol::End : Symbol::Refused, {start, 1}};
        default:
            break;
        }
        for (const Meaning& sign : Signs)
            if (sign.text[0] == start[0] && (sign.text.size() == 1 || sign.text[1] == start[1])) {
                m_at += sign.text.size();
                return {sign.symbol, {start, m_at}};
            }
        return {Symbol::Refused, {start, ++m_at}};
    }

    // The end of the last token.
    [[nodiscard]] const char16_t* place() const { return m_at; }

private:
    template <auto Is>
    void skip()
    {
        while (Is(*m_at))
            ++m_at;
    }

    Token number()
    {
        const char16_t* const start = m_at;
        skip<isDigit>();
        if (*m_at == u'.') {
            ++m_at;
            skip<isDigit>();
        }
        if ((*m_at | 0x20) == u'e') {
            const int sign = m_at[1] == u'+' || m_at[1] == u'-' ? 2 : 1;
            if (isDigit(m_at[sign])) {
                m_at += sign;
                skip<isDigit>();
            }
        }
        return {Symbol::Number, {start, m_at}};
    }

    [[noreturn]] void raiseUnclosed(Symbol symbol, const char16_t* start) const
    {
        if (symbol == Symbol::Text)
            throw SqlError(QStringLiteral("(A text isn't closed.)"), m_statement, start);
        if (symbol == Symbol::Date)
            throw SqlError(QStringLiteral("(A date isn't closed.)"), m_statement, start);
        throw SqlError(QStringLiteral("(A name isn't closed.)"), m_statement, start);
    }

    // Doubled quotes stay doubled.
    Token delimited(Symbol symbol, char16_t end)
    {
        const char16_t* const start = ++m_at;
        while (*m_at != u'\0' && (*m_at != end || (symbol == Symbol::Text && m_at[1] == end)))
            m_at += *m_at == end ? 2 : 1;
        if (*m_at == u'\0' || (m_at == start && symbol != Symbol::Text))
            raiseUnclosed(symbol, start - 1);
        return {symbol, {start, m_at++}};
    }

    const char16_t* m_at;
    QStringView m_statement;
};

} // namespace

QString insteadOf(QStringView word)
{
    static constexpr std::pair<QStringView, QStringView> Habits[] = {
        {u"nz", u"IIf(IsNull(a), b, a)"},
        {u"datediff", u"a - b, in days"},
        {u"dateadd", u"a + n, in days"},
        {u"datevalue", u"#m/d/yyyy#"},
        {u"cstr", u"a & ''"},
        {u"str", u"a & ''"},
        {u"val", u"a + 0"},
        {u"cint", u"Round(a)"},
        {u"clng", u"Round(a)"},
        {u"first", u"Min(a)"},
        {u"last", u"Max(a)"},
        {u"top", u"Order By, and a look at the first records"},
    };
    for (const auto& [habit, instead] : Habits)
        if (platform::sameName(habit, word))
            return QStringLiteral(" Instead: %1.").arg(instead);
    return {};
}

Tokens tokenize(const QString& statement)
{
    Tokenizer tokenizer(statement);
    Tokens tokens;
    do
        tokens.append(tokenizer.next());
    while (tokens.back().symbol != Symbol::End);
    if (tokenizer.place() != reinterpret_cast<const char16_t*>(statement.utf16()) + statement.size())
        tokens.back().symbol = Symbol::Refused; // a zero byte within
    return tokens;
}

} // namespace orlo::store
