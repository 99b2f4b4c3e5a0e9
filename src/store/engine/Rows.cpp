#include "store/engine/Rows.h"

#include "store/engine/Field.h"
#include "store/engine/Value.h"

#include <sqlite3.h>

namespace orlo::store
{

namespace
{

// -1 if one isn't a digit.
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
    int year = 0;
    int month = 0;
    int day = 0;
    date.date.getDate(&year, &month, &day);
    char text[] = "0000-00-00 00:00:00";
    putDigits(text, year, 4);
    putDigits(text + 5, month, 2);
    putDigits(text + 8, day, 2);
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
    m_there.push_back(statement != nullptr);
    const std::size_t start = m_cells.size();
    m_cells.resize(start + m_columns); // Null
    for (std::size_t column = 0; statement && column < m_columns; ++column) {
        sqlite3_value* const value = sqlite3_column_value(statement, static_cast<int>(column));
        Cell& cell = m_cells[start + column];
        switch (sqlite3_value_type(value)) {
        case SQLITE_INTEGER:
            cell.kind = Kind::Whole;
            cell.whole = sqlite3_value_int64(value);
            break;
        case SQLITE_FLOAT:
            cell.kind = Kind::Number;
            cell.number = sqlite3_value_double(value);
            break;
        case SQLITE_TEXT:
        case SQLITE_BLOB: {
            cell.kind = Kind::Text;
            const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
            cell.length = static_cast<quint32>(sqlite3_value_bytes(value));
            cell.start = static_cast<qint64>(m_bytes.size());
            m_bytes.append(text ? text : "", text ? cell.length : 0);
            break;
        }
        default:
            break;
        }
    }
}

const Rows::Cell& Rows::cell(qsizetype row, int column) const
{
    return m_cells[static_cast<std::size_t>(row) * m_columns + static_cast<std::size_t>(column)];
}

std::string_view Rows::bytes(const Cell& cell) const
{
    return std::string_view(m_bytes).substr(static_cast<std::size_t>(cell.start), cell.length);
}

bool Rows::same(qsizetype row, const Rows& others, qsizetype othersRow, const std::vector<QByteArray>& columns) const
{
    if (isGone(row) || others.isGone(othersRow))
        return false;
    for (int column = 0; column < static_cast<int>(m_columns); ++column) {
        const Cell& a = cell(row, column);
        const Cell& b = others.cell(othersRow, column);
        if (columns[static_cast<std::size_t>(column)].isEmpty())
            continue;
        if (a.kind != b.kind || (a.kind == Kind::Whole && a.whole != b.whole) ||
            (a.kind == Kind::Number && a.number != b.number) || (a.kind == Kind::Text && bytes(a) != others.bytes(b)))
            return false;
    }
    return true;
}

Value Rows::value(qsizetype row, int column, FieldType type) const
{
    const Cell& found = cell(row, column);
    switch (found.kind) {
    case Kind::Whole:
        return type == FieldType::Boolean ? Value(found.whole != 0) : Value(found.whole);
    case Kind::Number:
        return {found.number};
    case Kind::Text: {
        const QByteArrayView text(bytes(found).data(), static_cast<qsizetype>(found.length));
        if (type == FieldType::Date)
            if (const auto date = readIso(text))
                return {*date};
        return {QString::fromUtf8(text)};
    }
    case Kind::Null:
        break;
    }
    return {};
}

FieldType Rows::typeOf(int column) const
{
    for (qsizetype row = 0; row < size(); ++row)
        switch (cell(row, column).kind) {
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
