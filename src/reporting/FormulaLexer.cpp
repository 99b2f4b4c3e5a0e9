#include "reporting/FormulaLexer.h"

#include "platform/Conversion.h"

#include <array>

namespace orlo::reporting
{

namespace
{

using TokenKind = FormulaToken::Kind;

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

class Lexer
{
public:
    Lexer(QStringView text, Place origin) : m_text(text), m_place(origin) {}

    std::vector<FormulaToken> run()
    {
        std::vector<FormulaToken> tokens;
        do
            tokens.push_back(next());
        while (tokens.back().kind != TokenKind::End);
        return tokens;
    }

private:
    [[nodiscard]] bool atEnd() const { return m_at >= m_text.size(); }
    [[nodiscard]] QChar peek(qsizetype ahead = 0) const
    {
        return m_at + ahead < m_text.size() ? m_text[m_at + ahead] : QChar();
    }
    QChar take()
    {
        const QChar c = m_text[m_at++];
        if (c == u'\n') {
            ++m_place.line;
            m_place.column = 1;
        } else {
            ++m_place.column;
        }
        return c;
    }

    FormulaToken next()
    {
        skipBlanks();
        const qsizetype start = m_at;
        FormulaToken token = nextAfterBlanks();
        token.written = m_text.mid(start, m_at - start).toString();
        return token;
    }

    // Skips blanks, and comments from "//" to the end of the line.
    void skipBlanks()
    {
        while (peek().isSpace() || m_text.mid(m_at).startsWith(u"//"))
            if (peek().isSpace())
                take();
            else
                while (!atEnd() && peek() != u'\n')
                    take();
    }

    FormulaToken nextAfterBlanks()
    {
        FormulaToken token;
        token.place = m_place;
        if (atEnd())
            return token;
        const QChar c = peek();
        if (c == u'"' || c == u'\'') {
            token.kind = TokenKind::Text;
            token.value = quoted();
        } else if (c == u'{') {
            token.kind = TokenKind::Field;
            take();
            token.text = until(u'}', QStringLiteral("The field's closing brace is missing.")).trimmed();
            if (token.text.isEmpty())
                throw ReportError(platform::SyntaxError, QStringLiteral("A field's name is missing."), token.place);
        } else if (c == u'#') {
            token.kind = TokenKind::Date;
            take();
            const QString written = until(u'#', QStringLiteral("The date's closing # is missing."));
            const auto date = platform::readDate(written);
            if (!date)
                throw ReportError(platform::TypeMismatch, QStringLiteral("\"%1\" is no date.").arg(written),
                                  token.place);
            token.value = Value(*date);
        } else if (isDigit(c) || (c == u'.' && isDigit(peek(1)))) {
            token.kind = TokenKind::Number;
            token.value = number(token.place);
        } else if (c.isLetter() || c == u'_') {
            token.kind = TokenKind::Name;
            while (!atEnd() && (peek().isLetterOrNumber() || peek() == u'_'))
                token.text += take();
        } else {
            token.kind = TokenKind::Sign;
            token.text = sign(token.place);
        }
        return token;
    }

    QString quoted()
    {
        const Place start = m_place;
        const QChar quote = take();
        QString text;
        while (!atEnd()) {
            const QChar c = take();
            if (c != quote)
                text += c;
            else if (peek() == quote)
                text += take();
            else
                return text;
        }
        throw ReportError(platform::SyntaxError, QStringLiteral("The text's closing quote is missing."), start);
    }

    QString until(QChar end, const QString& message)
    {
        const Place start{m_place.line, m_place.column - 1, m_place.file};
        QString text;
        while (!atEnd() && peek() != u'\n') {
            const QChar c = take();
            if (c == end)
                return text;
            text += c;
        }
        throw ReportError(platform::SyntaxError, message, start);
    }

    Value number(Place start)
    {
        QString digits;
        bool whole = true;
        while (!atEnd() && (isDigit(peek()) || (peek() == u'.' && whole))) {
            whole = whole && peek() != u'.';
            digits += take();
        }
        bool read = false;
        if (whole)
            if (const qint64 value = digits.toLongLong(&read); read)
                return Value(value);
        const double value = digits.toDouble(&read);
        if (!read)
            throw ReportError(platform::Overflow, QStringLiteral("The number is too large."), start);
        return Value(value);
    }

    QString sign(Place start)
    {
        static constexpr std::array Pairs{u"<=", u">=", u"<>"};
        for (const char16_t* pair : Pairs)
            if (m_text.mid(m_at, 2) == QStringView(pair)) {
                take();
                take();
                return QString::fromUtf16(pair);
            }
        const QChar c = take();
        if (!QStringView(u"=<>+-*/\\^&(),[]").contains(c))
            throw ReportError(platform::SyntaxError, QStringLiteral("\"%1\" has no meaning here.").arg(c), start);
        return QString(c);
    }

    QStringView m_text;
    Place m_place;
    qsizetype m_at = 0;
};

} // namespace

std::vector<FormulaToken> formulaTokens(QStringView text, Place origin)
{
    return Lexer(text, origin).run();
}

} // namespace orlo::reporting
