#include "store/engine/Rows.h"

#include <sqlite3.h>

namespace orlo::store
{

namespace
{

// The number that the digits at a place are; -1 where one is none.
int digits(QByteArrayView text, qsizetype at, int count)
{
    int number = 0;
    for (qsizetype i = at; i < at + count; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return -1;
        number = number * 10 + (text[i] - '0');
    }
    return number;
}

void putDigits(char* to, int number, int count)
{
    for (int i = count; i-- > 0; number /= 10)
        to[i] = static_cast<char>('0' + number % 10);
}

} // namespace

QByteArray isoText(const DateTime& date)
{
    char text[] = "0000-00-00 00:00:00";
    putDigits(text, date.date.year(), 4);
    putDigits(text + 5, date.date.month(), 2);
    putDigits(text + 8, date.date.day(), 2);
    putDigits(text + 11, date.time.hour(), 2);
    putDigits(text + 14, date.time.minute(), 2);
    putDigits(text + 17, date.time.second(), 2);
    return {text, date.time == QTime(0, 0) ? 10 : 19};
}

std::optional<DateTime> readIso(QByteArrayView text)
{
    if ((text.size() != 10 && text.size() != 19) || text[4] != '-' || text[7] != '-')
        return std::nullopt;
    DateTime result{QDate(digits(text, 0, 4), digits(text, 5, 2), digits(text, 8, 2))};
    if (text.size() == 19)
        result.time = QTime(digits(text, 11, 2), digits(text, 14, 2), digits(text, 17, 2));
    return result.date.isValid() && result.time.isValid() ? std::optional(result) : std::nullopt;
}

void Rows::append(sqlite3_stmt* statement)
{
    const int given = sqlite3_column_count(statement);
    for (int column = 0; column < m_columns; ++column) {
        Cell cell{};
        cell.kind = Kind::Null;
        switch (column < given ? sqlite3_column_type(statement, column) : SQLITE_NULL) {
        case SQLITE_INTEGER:
            cell.kind = Kind::Whole;
            cell.whole = sqlite3_column_int64(statement, column);
            break;
        case SQLITE_FLOAT:
            cell.kind = Kind::Number;
            cell.number = sqlite3_column_double(statement, column);
            break;
        case SQLITE_TEXT:
        case SQLITE_BLOB: {
            cell.kind = Kind::Text;
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
            cell.length = static_cast<quint32>(sqlite3_column_bytes(statement, column));
            cell.start = static_cast<qint64>(m_bytes.size());
            m_bytes.append(text ? text : "", text ? cell.length : 0);
            break;
        }
        default:
            break;
        }
        m_cells.push_back(cell);
    }
    ++m_size;
}

void Rows::appendMissing()
{
    Cell cell{};
    cell.kind = Kind::Missing;
    m_cells.insert(m_cells.end(), static_cast<std::size_t>(m_columns), cell);
    ++m_size;
}

void Rows::clear()
{
    m_cells.clear();
    m_bytes.clear();
    m_size = 0;
}

bool Rows::missing(qsizetype row) const
{
    return m_cells[static_cast<std::size_t>(row * m_columns)].kind == Kind::Missing;
}

Value Rows::value(qsizetype row, int column, FieldType type) const
{
    const Cell& cell = m_cells[static_cast<std::size_t>(row * m_columns + column)];
    switch (cell.kind) {
    case Kind::Whole:
        return type == FieldType::Boolean ? Value(cell.whole != 0) : Value(cell.whole);
    case Kind::Number:
        return {cell.number};
    case Kind::Text: {
        const QByteArrayView text(m_bytes.data() + cell.start, static_cast<qsizetype>(cell.length));
        if (type == FieldType::Date)
            if (const auto date = readIso(text))
                return {*date};
        return {QString::fromUtf8(text)};
    }
    case Kind::Null:
    case Kind::Missing:
        break;
    }
    return {};
}

FieldType Rows::typeOf(int column) const
{
    for (qsizetype row = 0; row < m_size; ++row)
        switch (m_cells[static_cast<std::size_t>(row * m_columns + column)].kind) {
        case Kind::Whole:
            return FieldType::Long;
        case Kind::Number:
            return FieldType::Double;
        case Kind::Text:
            return FieldType::Text;
        default:
            break;
        }
    return FieldType::Text;
}

} // namespace orlo::store
