#include "CsvReader.h"

#include <QStringDecoder>

#include <algorithm>

CsvError::CsvError(CsvPlace place, const QString& problem)
    : std::runtime_error(problem.toStdString()), m_place(place), m_problem(problem)
{
}

namespace
{

QByteArray asUtf8(QByteArray data)
{
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
        const bool little = encoding == QStringConverter::Utf16LE;
        if (!data.startsWith(little ? "\xFF\xFE" : "\xFE\xFF"))
            continue;
        QStringDecoder decoder(encoding);
        const QString text = decoder(data);
        if (data.size() % 2 != 0 || !text.isValidUtf16()) // the decoder passes both over
            throw CsvError({}, QStringLiteral("text that isn't UTF-16, as its beginning says"));
        return text.toUtf8();
    }
    return data;
}

// The separator used in the first line, which contains names.
char separatorOf(QByteArrayView data)
{
    const qsizetype end = data.indexOf('\n');
    const auto line = data.first(end < 0 ? data.size() : end);
    const auto count = [line](char separator) { return std::ranges::count(line, separator); };
    return std::max({',', ';', '\t'}, [&count](char a, char b) { return count(a) < count(b); });
}

} // namespace

CsvReader::CsvReader(QByteArray data) : m_data(asUtf8(std::move(data))), m_separator(separatorOf(m_data))
{
    if (m_data.startsWith("\xEF\xBB\xBF"))
        m_position = m_countedTo = 3;
}

bool CsvReader::readRow(std::vector<CsvCell>& row)
{
    while (m_position < m_data.size() && atLineEnd())
        skipLineEnd();
    if (m_position >= m_data.size())
        return false;
    std::size_t cells = 0;
    for (bool more = true; more; ++cells) {
        if (cells == row.size())
            row.emplace_back();
        readCell(row[cells]);
        more = m_position < m_data.size() && at() == m_separator;
        if (more)
            ++m_position;
    }
    row.resize(cells);
    if (m_position < m_data.size())
        skipLineEnd();
    return true;
}

// Leaves the position at the separator or line end after the cell, or at the end of the data.
void CsvReader::readCell(CsvCell& cell)
{
    cell.place = place();
    cell.quoted = at() == '"';
    if (cell.quoted) {
        readQuoted(cell);
        return;
    }
    const qsizetype start = m_position;
    while (m_position < m_data.size() && at() != m_separator && !atLineEnd()) {
        if (at() == '"')
            throw CsvError(place(), QStringLiteral("a quote inside a value that doesn't begin with one"));
        if (at() == '\r')
            throw CsvError(place(), QStringLiteral("a carriage return without a line feed after it"));
        ++m_position;
    }
    setText(cell, QByteArrayView(m_data).sliced(start, m_position - start));
}

void CsvReader::readQuoted(CsvCell& cell)
{
    const qsizetype start = ++m_position;
    bool doubled = false;
    for (; m_position < m_data.size(); ++m_position) {
        if (at() == '\n')
            startLine(m_position + 1);
        else if (at() == '"') {
            if (at(1) != '"')
                break;
            doubled = true;
            ++m_position;
        }
    }
    if (m_position >= m_data.size())
        throw CsvError(cell.place, QStringLiteral("a quote that is never closed"));
    setText(cell, QByteArrayView(m_data).sliced(start, m_position - start));
    if (doubled)
        cell.text.replace(QLatin1String("\"\""), QLatin1String("\""));
    ++m_position;
    if (m_position < m_data.size() && at() != m_separator && !atLineEnd())
        throw CsvError(place(), QStringLiteral("text after a closing quote"));
}

bool CsvReader::atLineEnd() const
{
    return at() == '\n' || (at() == '\r' && at(1) == '\n');
}

void CsvReader::skipLineEnd()
{
    m_position += at() == '\r' ? 2 : 1;
    startLine(m_position);
}

void CsvReader::startLine(qsizetype position)
{
    m_counted = {m_counted.line + 1, 1};
    m_countedTo = position;
}

void CsvReader::setText(CsvCell& cell, QByteArrayView bytes) const
{
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    cell.text = decoder(bytes);
    if (decoder.hasError())
        throw CsvError(cell.place, QStringLiteral("text that isn't UTF-8; save the file as \"CSV UTF-8\""));
    if (cell.text.contains(QChar(u'\0')))
        throw CsvError(cell.place, QStringLiteral("a zero byte"));
}

char CsvReader::at(qsizetype ahead) const
{
    return m_position + ahead < m_data.size() ? m_data[m_position + ahead] : '\0';
}

CsvPlace CsvReader::place()
{
    const auto passed = QByteArrayView(m_data).sliced(m_countedTo, m_position - m_countedTo);
    const auto characters = std::ranges::count_if(passed, [](char byte) { return (byte & 0xC0) != 0x80; });
    m_counted.column += static_cast<int>(characters);
    m_countedTo = m_position;
    return m_counted;
}
