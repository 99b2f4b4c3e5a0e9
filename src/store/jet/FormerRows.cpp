#include "store/jet/FormerRows.h"

#include "store/engine/Conversion.h"
#include "store/engine/Rows.h"
#include "store/jet/Definitions.h"
#include "store/jet/HelperStream.h"

#include <QLocale>

#include <cmath>

namespace orlo::store::jet
{

namespace
{

constexpr qsizetype MaxTextLength = 33'000'000; // characters, of up to three bytes each in the new file

SourceValue day(double serial)
{
    if (const auto date = dateOfSerial(serial))
        return {*date, {}, {}};
    return {{}, QStringLiteral("no date"), QString::number(serial, 'g', 17)};
}

// Unpaired surrogates can't be stored in UTF-8; the kept text shows their codes.
SourceValue textValue(const QString& text)
{
    if (text.size() > MaxTextLength)
        throw damaged(QStringLiteral("A text is too long for the new file."));
    if (text.isValidUtf16())
        return {text, {}, {}};
    QString shown;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool whole = c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (c.isSurrogate() && !whole)
            shown += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16);
        else
            shown += whole ? text.mid(i++, 2) : QString(c);
    }
    return {QString::fromUtf8(text.toUtf8()), QStringLiteral("half a letter"), shown};
}

SourceValue readCell(HelperStream& stream)
{
    switch (stream.number<Cell>()) {
    case Cell::Null:
        return {};
    case Cell::No:
        return {false, {}, {}};
    case Cell::Yes:
        return {true, {}, {}};
    case Cell::Whole:
        return {qint64(stream.number<std::int32_t>()), {}, {}};
    case Cell::Real: {
        const auto number = stream.number<double>();
        if (std::isfinite(number))
            return {number, {}, {}};
        return {{}, QStringLiteral("no number"), QString::number(number)};
    }
    case Cell::Day:
        return day(stream.number<double>());
    case Cell::Text:
        return textValue(stream.text());
    }
    throw damaged(QStringLiteral("A value is of no known kind."));
}

} // namespace

QString textOf(const SourceValue& source)
{
    if (!source.problem.isEmpty())
        return source.text;
    if (source.value.isBool())
        return QString::number(source.value.toBool() ? 1 : 0);
    if (source.value.isDate())
        return QString::fromLatin1(isoText(source.value.toDate()));
    if (source.value.isNumber())
        return QString::number(source.value.toDouble(), 'g', QLocale::FloatingPointShortest);
    return source.value.textOrEmpty();
}

FormerRows::FormerRows(HelperStream& stream, const FormerTable& table)
    : m_stream(stream), m_row(table.fields.size()), m_count{table.name, 0, table.rows, 0, 0}
{
}

bool FormerRows::next()
{
    switch (m_stream.number<std::uint8_t>()) {
    case RowFollows:
        for (SourceValue& source : m_row) {
            source = readCell(m_stream);
            m_count.values += !source.value.isNull() || !source.problem.isEmpty();
        }
        ++m_count.rows;
        return true;
    case TableEnds:
        finish();
        return false;
    default:
        throw damaged(QStringLiteral("%1 breaks off.").arg(m_count.table));
    }
}

void FormerRows::finish()
{
    m_count.older = m_stream.number<std::uint32_t>();
    const auto values = static_cast<qint64>(m_stream.number<std::uint64_t>());
    const auto& [table, rows, stated, older, found] = m_count;
    if (rows < stated)
        throw damaged(QStringLiteral("%1 broke off after %2 of %3 rows.").arg(table).arg(rows).arg(stated));
    if (found != values)
        throw damaged(QStringLiteral("%1 has lost values: %2 of %3 came.").arg(table).arg(found).arg(values));
}

void readTables(HelperStream& stream, const std::vector<FormerTable>& tables,
                const std::function<void(const FormerTable&, FormerRows&)>& take)
{
    for (const FormerTable& table : tables) {
        FormerRows rows(stream, table);
        take(table, rows);
    }
    if (stream.number<std::uint32_t>() != End)
        throw damaged(QStringLiteral("It could not be read to its end."));
    stream.finish();
}

} // namespace orlo::store::jet
