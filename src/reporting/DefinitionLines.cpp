#include "reporting/DefinitionLines.h"

#include <array>

namespace orlo::reporting
{

namespace
{

bool isWordPart(QChar c)
{
    return c.isLetterOrNumber() || c == u'-' || c == u'_';
}
bool isNumberPart(QChar c)
{
    return (c >= u'0' && c <= u'9') || c == u'.';
}

} // namespace

DefinitionLines::DefinitionLines(const QString& text, const QString* fileName)
    : m_lines(text.split(u'\n')), m_fileName(fileName)
{
    for (QString& line : m_lines)
        if (line.endsWith(u'\r'))
            line.chop(1);
}

bool DefinitionLines::next()
{
    while (m_line < m_lines.size()) {
        m_first = int(m_line) + 1;
        m_statement = m_lines[m_line++];
        while (m_statement.endsWith(u'\\') && m_line < m_lines.size()) {
            m_statement.chop(1);
            m_statement += u'\n' + m_lines[m_line++];
        }
        m_at = 0;
        skipBlanks();
        if (!atEnd() && !rest().startsWith(u'#') && !rest().startsWith(u"//"))
            return true;
    }
    m_first = int(m_lines.size());
    m_at = 0;
    return false;
}

bool DefinitionLines::nextInBlock()
{
    if (!next())
        fail(QStringLiteral("The block's closing brace is missing."));
    if (!closes())
        return true;
    close();
    return false;
}

bool DefinitionLines::closes() const
{
    return rest().trimmed() == u"}";
}

Place DefinitionLines::place() const
{
    const QStringView before = QStringView(m_statement).left(m_at);
    const qsizetype lineStart = before.lastIndexOf(u'\n') + 1;
    return {m_first + int(before.count(u'\n')), int(m_at - lineStart) + 1, m_fileName};
}

void DefinitionLines::fail(const QString& message) const
{
    throw ReportError(platform::SyntaxError, message, place());
}

void DefinitionLines::failAtWord(const QString& message)
{
    m_at = m_wordAt;
    fail(message);
}

QString DefinitionLines::missing(QLatin1StringView sign) const
{
    const QString here = rest().toString().section(u' ', 0, 0).trimmed();
    return here.isEmpty() ? QStringLiteral("\"%1\" is missing at the end.").arg(sign)
                          : QStringLiteral("\"%1\" is missing before \"%2\".").arg(sign, here);
}

void DefinitionLines::skipBlanks()
{
    while (m_at < m_statement.size() && m_statement[m_at].isSpace())
        ++m_at;
}

bool DefinitionLines::atEnd() const
{
    return m_at >= m_statement.size();
}
bool DefinitionLines::atOpening() const
{
    return rest().trimmed() == u"{";
}
bool DefinitionLines::atQuote() const
{
    return atSign(u'"');
}
bool DefinitionLines::atLength() const
{
    return !atEnd() && isNumberPart(m_statement[m_at]);
}
bool DefinitionLines::atSign(QChar sign) const
{
    return !atEnd() && m_statement[m_at] == sign;
}

QString DefinitionLines::word()
{
    const qsizetype start = m_wordAt = m_at;
    while (!atEnd() && isWordPart(m_statement[m_at]))
        ++m_at;
    QString word = m_statement.mid(start, m_at - start).toLower();
    if (word.isEmpty())
        fail(atEnd() ? QStringLiteral("The line breaks off here.") : QStringLiteral("A word is missing here."));
    skipBlanks();
    return word;
}

bool DefinitionLines::accept(const char* word)
{
    const qsizetype length = qsizetype(qstrlen(word));
    if (!rest().startsWith(QLatin1StringView(word), Qt::CaseInsensitive))
        return false;
    if (m_at + length < m_statement.size() && isWordPart(m_statement[m_at + length]))
        return false;
    m_wordAt = m_at;
    m_at += length;
    skipBlanks();
    return true;
}

void DefinitionLines::expect(const char* sign)
{
    if (!rest().startsWith(QLatin1StringView(sign)))
        fail(missing(QLatin1StringView(sign)));
    m_at += qsizetype(qstrlen(sign));
    skipBlanks();
}

QString DefinitionLines::quoted()
{
    if (!atQuote())
        fail(QStringLiteral("A text in quotes is missing here."));
    QString text;
    for (qsizetype i = m_at + 1; i < m_statement.size(); ++i) {
        if (m_statement[i] != u'"') {
            text += m_statement[i];
        } else if (i + 1 < m_statement.size() && m_statement[i + 1] == u'"') {
            text += m_statement[i++];
        } else {
            m_at = i + 1;
            skipBlanks();
            return text;
        }
    }
    fail(QStringLiteral("The text's closing quote is missing."));
}

QString DefinitionLines::fileName()
{
    const qsizetype start = m_at;
    QString name = quoted();
    if (name.isEmpty() || name.contains(u'/') || name.contains(u'\\') || name.contains(QChar(u'\0'))) {
        m_at = start;
        fail(QStringLiteral("The file lies in the report's folder: its name alone is wanted."));
    }
    return name;
}

QString DefinitionLines::fieldName()
{
    const qsizetype close = m_statement.indexOf(u'}', m_at);
    if (!atSign(u'{') || close < 0)
        fail(QStringLiteral("A name in braces is missing here."));
    QString name = m_statement.mid(m_at + 1, close - m_at - 1).trimmed();
    if (name.isEmpty())
        fail(QStringLiteral("The name is empty."));
    m_at = close + 1;
    skipBlanks();
    return name;
}

Length DefinitionLines::across()
{
    qsizetype end = m_at;
    while (end < m_statement.size() && isNumberPart(m_statement[end]))
        ++end;
    bool read = false;
    const double share = m_statement.mid(m_at, end - m_at).toDouble(&read);
    if (!read || end >= m_statement.size() || m_statement[end] != u'%')
        return {length(), 0};
    if (share > 100)
        fail(QStringLiteral("The length is too large."));
    m_at = end + 1;
    skipBlanks();
    return {0, share / 100};
}

double DefinitionLines::length()
{
    qsizetype end = m_at;
    while (end < m_statement.size() && isNumberPart(m_statement[end]))
        ++end;
    bool read = false;
    const double number = m_statement.mid(m_at, end - m_at).toDouble(&read);
    if (!read)
        fail(QStringLiteral("A length is missing here, as 4pt or 0.5in."));
    struct Unit {
        const char* name;
        double points;
    };
    static constexpr std::array Units{Unit{"pt", 1}, Unit{"in", 72}, Unit{"mm", 72 / 25.4}, Unit{"cm", 72 / 2.54}};
    const qsizetype start = std::exchange(m_at, end);
    for (const Unit& unit : Units)
        if (accept(unit.name)) {
            m_wordAt = start;
            if (const double points = number * unit.points; points <= 2000)
                return points;
            failAtWord(QStringLiteral("The length is too large."));
        }
    m_wordAt = start;
    if (number != 0)
        fail(QStringLiteral("The length's unit is missing: pt, in, mm or cm."));
    skipBlanks();
    return 0;
}

int DefinitionLines::number(int min, int max)
{
    const Place here = place();
    bool read = false;
    const int number = word().toInt(&read);
    if (!read || number < min || number > max)
        throw ReportError(platform::SyntaxError, QStringLiteral("A number from %1 to %2 is needed.").arg(min).arg(max),
                          here);
    return number;
}

int DefinitionLines::percent()
{
    const int value = number(0, 100);
    expect("%");
    return value;
}

Formula DefinitionLines::formula()
{
    Formula formula(rest(), place());
    m_at = m_statement.size();
    return formula;
}

Formula DefinitionLines::assigned()
{
    expect("=");
    return formula();
}

Formula DefinitionLines::formulaBeforeBrace()
{
    const qsizetype brace = m_statement.lastIndexOf(u'{');
    if (brace < m_at || !QStringView(m_statement).mid(brace + 1).trimmed().isEmpty())
        fail(QStringLiteral("A block must open at the end of this line."));
    Formula formula(rest().left(brace - m_at), place());
    m_at = brace;
    return formula;
}

Formula DefinitionLines::formulaInBrackets()
{
    int depth = 0;
    QChar until; // the closing character of a text or a field name
    for (qsizetype i = m_at; i < m_statement.size(); ++i) {
        const QChar c = m_statement[i];
        if (!until.isNull())
            until = c == until ? QChar() : until;
        else if (c == u'"' || c == u'\'' || c == u'{')
            until = c == u'{' ? u'}' : c;
        else if (c == u'(')
            ++depth;
        else if (c == u')' && --depth == 0) {
            Formula formula(rest().left(i + 1 - m_at), place());
            m_at = i + 1;
            skipBlanks();
            return formula;
        }
    }
    fail(QStringLiteral("The bracket isn't closed."));
}

QColor DefinitionLines::color()
{
    const qsizetype start = m_at;
    const QColor color = QColor::fromString(atQuote() ? quoted() : word());
    if (!color.isValid()) {
        m_at = start;
        fail(QStringLiteral("A colour is a name, as navy, or \"#1d3c6e\"."));
    }
    return color;
}

void DefinitionLines::open()
{
    if (!atOpening())
        fail(QStringLiteral("\"{\" is missing at the end of this line."));
    m_at = m_statement.size();
}

void DefinitionLines::end() const
{
    if (!atEnd())
        fail(QStringLiteral("The line should end before \"%1\".").arg(rest().toString().section(u' ', 0, 0)));
}

QString DefinitionLines::rawBlock(Place& first)
{
    first = {int(m_line) + 1, 1, m_fileName};
    QString block;
    while (m_line < m_lines.size()) {
        const QString& line = m_lines[m_line++];
        if (line.trimmed() == u"}")
            return block;
        block += line + u'\n';
    }
    m_first = int(m_lines.size());
    m_at = 0;
    fail(QStringLiteral("The block's closing brace is missing."));
}

} // namespace orlo::reporting
