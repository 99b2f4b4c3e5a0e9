#include "store/engine/Sql.h"

#include "platform/Conversion.h"
#include "store/engine/SqlTokens.h"

namespace orlo::store
{

namespace
{

using Kind = TokenKind;

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

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
        } else if (!isDigit(c) || ++digits[part] > 4)
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
    explicit Translator(const QString& statement) : m_text(statement), m_tokens(tokenize(statement))
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

    // Writes the statement's verb; the place of the first token behind it.
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
            case Keyword::Limit: // the rows stand as they were cut off; nothing can follow
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
        if (behind.kind != Kind::End && behind.keyword != Keyword::Where && behind.keyword != Keyword::Order)
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
        case Keyword::Order:
        case Keyword::Limit:
            if (m_parens.isEmpty())
                m_result.orderStart = token.keyword == Keyword::Order ? m_out.size() : -1;
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
