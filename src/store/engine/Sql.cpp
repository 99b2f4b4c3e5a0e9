#include "store/engine/Sql.h"

#include "platform/Conversion.h"
#include "platform/RuntimeError.h"

#include <QVarLengthArray>

namespace orlo::store
{

namespace
{

enum class Kind : quint8 { Word, Number, Text, Date, Name, Open, Close, Comma, Operator, End };

enum class Keyword : quint8 {
    None,
    All,
    Amp,
    As,
    Delete,
    Distinct,
    DistinctRow,
    From,
    FirstOfTail,
    Insert,
    Into,
    IsNull,
    Join,
    Left,
    Null,
    Order,
    Right,
    Select,
    Set,
    Sum,
    Union,
    Update,
    Where
};

struct Token {
    Kind kind;
    Keyword keyword;
    bool blankBefore;
    qsizetype start;
    qsizetype length; // of the content, without delimiters
};

[[noreturn]] void raiseSyntax(const QString& detail)
{
    throw platform::RuntimeError(platform::SyntaxError, QStringLiteral("Database"),
                                 platform::standardDescription(platform::SyntaxError) + u' ' + detail);
}

struct KeywordName {
    QLatin1String name;
    Keyword keyword;
};

// FirstOfTail: what ends the single source of a Select without joining another to it.
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
    {QLatin1String("left"), Keyword::Left},         {QLatin1String("limit"), Keyword::FirstOfTail},
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

using Tokens = QVarLengthArray<Token, 128>;

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

// The usual form m/d/yyyy without the general reader's cost.
std::optional<QDate> plainDate(QStringView text)
{
    int parts[3] = {0, 0, 0};
    int digits[3] = {0, 0, 0};
    int part = 0;
    for (const QChar c : text) {
        if (c == u'/') {
            if (++part > 2)
                return std::nullopt;
        } else if (!isDigit(c.unicode()) || ++digits[part] > 4)
            return std::nullopt;
        else
            parts[part] = parts[part] * 10 + c.digitValue();
    }
    if (part != 2 || digits[0] == 0 || digits[0] > 2 || digits[1] == 0 || digits[1] > 2 || digits[2] != 4)
        return std::nullopt;
    const QDate date(parts[2], parts[0], parts[1]);
    return date.isValid() && parts[2] >= 100 ? std::optional(date) : std::nullopt;
}

class Translator
{
public:
    explicit Translator(const QString& statement) : m_text(statement), m_tokens(Tokenizer(statement).run())
    {
        m_out.reserve(statement.size() + statement.size() / 4 + 32);
    }

    Translated run()
    {
        qsizetype i = verb();
        if (m_result.kind == Translated::Kind::Select)
            findSingleSource();
        for (; m_tokens[i].kind != Kind::End; i = emitToken(i)) {
            if (i == m_from)
                m_columnsEnd = m_out.size();
            if (i == m_tail)
                m_tailStart = m_out.size();
        }
        if (!m_parens.isEmpty())
            raiseSyntax(QStringLiteral("(A bracket isn't closed.)"));
        if (!m_result.singleSource.isEmpty()) {
            m_result.columns = m_out.mid(m_columnsStart, m_columnsEnd - m_columnsStart);
            if (m_tailStart >= 0)
                m_result.tail = m_out.mid(m_tailStart);
        }
        m_result.sql = std::move(m_out);
        return std::move(m_result);
    }

private:
    struct Paren {
        qsizetype start;
        bool isNull;
    };

    QStringView view(const Token& token) const { return QStringView(m_text).mid(token.start, token.length); }
    bool is(const Token& token, const char* op) const
    {
        return token.kind == Kind::Operator && view(token) == QLatin1String(op);
    }

    // The leading words, up to where the general rules begin.
    qsizetype verb()
    {
        const Keyword first = m_tokens[0].keyword;
        const Token& second = m_tokens[m_tokens[0].kind == Kind::End ? 0 : 1];
        switch (first) {
        case Keyword::Select:
            m_result.kind = Translated::Kind::Select;
            m_out += QLatin1String("SELECT");
            return 1;
        case Keyword::Insert:
            // A row that the file refuses is passed over, not a failure.
            if (second.keyword != Keyword::Into)
                break;
            m_result.kind = Translated::Kind::Insert;
            m_out += QLatin1String("INSERT OR IGNORE");
            return 1;
        case Keyword::Update:
            if (second.kind != Kind::Name &&
                (second.kind != Kind::Word || view(second).compare(u"or", Qt::CaseInsensitive) == 0))
                break;
            m_result.kind = Translated::Kind::Update;
            m_out += QLatin1String("UPDATE OR IGNORE");
            return 1;
        case Keyword::Delete:
            m_result.kind = Translated::Kind::Delete;
            m_out += QLatin1String("DELETE");
            return is(second, "*") ? 2 : 1;
        default:
            break;
        }
        raiseSyntax(QStringLiteral("(Select, Insert, Update or Delete expected.)"));
    }

    QString nameOf(const Token& token) const { return view(token).toString(); }
    static bool isName(const Token& token)
    {
        return token.kind == Kind::Name || (token.kind == Kind::Word && token.keyword == Keyword::None);
    }

    // Looks ahead whether the Select reads one source and gives one record a row of it.
    void findSingleSource()
    {
        int depth = 0;
        qsizetype from = -1;
        for (qsizetype i = 1; i < m_tokens.size(); ++i) {
            const Token& token = m_tokens[i];
            depth += token.kind == Kind::Open ? 1 : token.kind == Kind::Close ? -1 : 0;
            switch (token.keyword) {
            case Keyword::Distinct:
            case Keyword::DistinctRow:
            case Keyword::Union:
            case Keyword::Join:
                if (depth == 0)
                    return;
                break;
            case Keyword::Sum:
                if (m_tokens[i + 1].kind == Kind::Open && from < 0)
                    return;
                break;
            case Keyword::From:
                if (depth == 0 && from < 0)
                    from = i;
                break;
            default:
                break;
            }
        }
        if (from < 0 || !isName(m_tokens[from + 1]))
            return;
        qsizetype after = from + 2;
        QString alias;
        if (m_tokens[after].keyword == Keyword::As)
            ++after;
        if (isName(m_tokens[after]))
            alias = nameOf(m_tokens[after++]);
        const Token& behind = m_tokens[after];
        if (behind.kind != Kind::End && behind.keyword != Keyword::Where && behind.keyword != Keyword::Order &&
            behind.keyword != Keyword::FirstOfTail)
            return;
        m_from = from;
        m_columnsStart = m_out.size();
        m_tail = behind.kind == Kind::End ? -1 : after;
        m_result.singleSource = nameOf(m_tokens[from + 1]);
        m_result.singleAlias = alias;
    }

    static bool isWordlike(Kind kind)
    {
        return kind == Kind::Word || kind == Kind::Number || kind == Kind::Text || kind == Kind::Date ||
               kind == Kind::Name;
    }

    void blankBefore(qsizetype i)
    {
        const Kind before = m_tokens[i - 1].kind;
        if (m_tokens[i].blankBefore || i == 1 ||
            (isWordlike(m_tokens[i].kind) && (isWordlike(before) || before == Kind::Close)))
            m_out += u' ';
    }

    // Writes one token, or the few that belong together, and gives the place of the next.
    qsizetype emitToken(qsizetype i)
    {
        const Token& token = m_tokens[i];
        blankBefore(i);
        if (isWordlike(token.kind) && !is(m_tokens[i - 1], "."))
            m_primary = m_out.size();
        switch (token.kind) {
        case Kind::Word:
            return emitWord(i);
        case Kind::Text:
            emitText(token);
            if (m_tokens[i - 1].keyword != Keyword::As)
                m_out += QLatin1String(" COLLATE NOCASE");
            break;
        case Kind::Date:
            emitDate(token);
            break;
        case Kind::Name:
            emitName(view(token));
            break;
        case Kind::Open: {
            const bool call = m_tokens[i - 1].kind == Kind::Word || m_tokens[i - 1].kind == Kind::Name;
            m_parens.append({call && !token.blankBefore ? m_primary : m_out.size(), false});
            m_out += u'(';
            break;
        }
        case Kind::Close:
            if (m_parens.isEmpty())
                raiseSyntax(QStringLiteral("(A bracket too many.)"));
            m_primary = m_parens.back().start;
            m_out += m_parens.back().isNull ? QLatin1String(") IS NULL)") : QLatin1String(")");
            m_parens.removeLast();
            break;
        case Kind::Operator:
            return emitOperator(i);
        case Kind::Comma:
            m_assigning = m_assigning || (m_inSet && m_parens.isEmpty());
            m_out += u',';
            break;
        case Kind::Number:
            m_out += view(token);
            break;
        case Kind::End:
            break;
        }
        return i + 1;
    }

    qsizetype emitWord(qsizetype i)
    {
        const Token& token = m_tokens[i];
        const bool call = m_tokens[i + 1].kind == Kind::Open;
        switch (token.keyword) {
        case Keyword::DistinctRow:
            m_out += QLatin1String("DISTINCT");
            return i + 1;
        case Keyword::IsNull:
            if (!call)
                break;
            m_parens.append({m_out.size(), true});
            m_out += QLatin1String("((");
            return i + 2;
        case Keyword::Left:
        case Keyword::Right:
            // The bare word would open a join.
            if (!call)
                break;
            emitName(view(token));
            return i + 1;
        case Keyword::Set:
            if (m_result.kind == Translated::Kind::Update && m_parens.isEmpty())
                m_inSet = m_assigning = true;
            break;
        case Keyword::Where:
            if (m_parens.isEmpty())
                m_inSet = m_assigning = false;
            break;
        default:
            break;
        }
        m_out += view(token);
        return i + 1;
    }

    qsizetype emitOperator(qsizetype i)
    {
        const Token& token = m_tokens[i];
        if (token.keyword == Keyword::Amp)
            return emitConcatenation(i);
        const bool assignment = is(token, "=") && m_assigning && m_parens.isEmpty();
        if (assignment)
            m_assigning = false;
        else if (m_tokens[i + 1].keyword == Keyword::Null) {
            const bool equal = is(token, "=");
            if (equal || is(token, "<>") || is(token, "!=")) {
                m_out += equal ? QLatin1String(" IS NULL") : QLatin1String(" IS NOT NULL");
                return i + 2;
            }
        }
        m_out += view(token);
        return i + 1;
    }

    // Both sides of `&` become texts with "" for Null.
    qsizetype emitConcatenation(qsizetype i)
    {
        qsizetype end = i + 1;
        while (is(m_tokens[end], "-") || is(m_tokens[end], "+"))
            ++end;
        if (!isWordlike(m_tokens[end].kind) && m_tokens[end].kind != Kind::Open)
            raiseSyntax(QStringLiteral("(Near \"&\".)"));
        while (isWordlike(m_tokens[end].kind) && is(m_tokens[end + 1], ".") && isWordlike(m_tokens[end + 2].kind))
            end += 2;
        if (m_tokens[end].kind == Kind::Open ||
            (m_tokens[end].kind == Kind::Word && m_tokens[end + 1].kind == Kind::Open)) {
            int depth = 0;
            for (; m_tokens[end].kind != Kind::End; ++end) {
                depth += m_tokens[end].kind == Kind::Open ? 1 : m_tokens[end].kind == Kind::Close ? -1 : 0;
                if (m_tokens[end].kind == Kind::Close && depth == 0)
                    break;
            }
        }
        if (m_tokens[end].kind != Kind::End)
            ++end;

        const qsizetype start = m_primary;
        m_out.insert(start, QLatin1String("ifnull("));
        m_out += QLatin1String(",'')||ifnull(");
        for (qsizetype at = i + 1; at < end;)
            at = emitToken(at);
        m_out += QLatin1String(",'')");
        m_primary = start;
        return end;
    }

    void emitText(const Token& token)
    {
        const QStringView content = view(token);
        const QChar delimiter = m_text[token.start - 1];
        m_out += u'\'';
        if (delimiter == u'\'')
            m_out += content;
        else
            for (qsizetype i = 0; i < content.size(); ++i) {
                m_out += content[i];
                if (content[i] == u'\'')
                    m_out += u'\'';
                else if (content[i] == delimiter)
                    ++i; // doubled within the text
            }
        m_out += u'\'';
    }

    void emitName(QStringView name)
    {
        m_out += u'"';
        for (const QChar c : name) {
            m_out += c;
            if (c == u'"')
                m_out += c;
        }
        m_out += u'"';
    }

    void emitNumber(int number, int width)
    {
        char16_t digits[4] = {};
        for (int i = width; i-- > 0; number /= 10)
            digits[i] = static_cast<char16_t>(u'0' + number % 10);
        m_out += QStringView(digits, width);
    }

    void emitDate(const Token& token)
    {
        platform::DateTime date;
        if (const auto plain = plainDate(view(token)))
            date.date = *plain;
        else if (const auto read = platform::readDate(view(token)))
            date = *read;
        else
            raiseSyntax(QStringLiteral("(\"%1\" is no date.)").arg(view(token)));
        m_out += u'\'';
        emitNumber(date.date.year(), 4);
        m_out += u'-';
        emitNumber(date.date.month(), 2);
        m_out += u'-';
        emitNumber(date.date.day(), 2);
        if (date.time != QTime(0, 0))
            m_out += date.time.toString(QStringLiteral(" HH:mm:ss"));
        m_out += u'\'';
    }

    const QString& m_text;
    Tokens m_tokens;
    QString m_out;
    Translated m_result;
    QVarLengthArray<Paren, 16> m_parens;
    qsizetype m_primary = 0; // where the operand written last begins
    qsizetype m_from = -1;
    qsizetype m_tail = -1;
    qsizetype m_columnsStart = -1;
    qsizetype m_columnsEnd = -1;
    qsizetype m_tailStart = -1;
    bool m_inSet = false;
    bool m_assigning = false;
};

} // namespace

Translated translate(const QString& statement)
{
    return Translator(statement).run();
}

} // namespace orlo::store
