#pragma once

#include <QByteArray>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3_stmt;

namespace orlo::platform
{
struct DateTime;
}

namespace orlo::store
{

class Value;
enum class FieldType : int;

/// A date as stored: 'YYYY-MM-DD', with ' HH:MM:SS' if there is a time.
[[nodiscard]] QByteArray isoText(const platform::DateTime& date);
/// Reads such a date; none for any other text.
[[nodiscard]] std::optional<platform::DateTime> readIso(QByteArrayView text);

/// Rows in compact form; values are made on demand.
class Rows
{
public:
    /// The number of columns to take from each row.
    explicit Rows(std::size_t columns) : m_columns(columns) {}

    /// Adds the statement's current row; without a statement, a placeholder for a missing row.
    void append(sqlite3_stmt* statement);
    [[nodiscard]] qsizetype size() const { return static_cast<qsizetype>(m_there.size()); }
    /// The approximate size in memory.
    [[nodiscard]] std::size_t bytes() const { return m_bytes.size() + m_cells.size() * sizeof(Cell); }
    [[nodiscard]] bool isGone(qsizetype row) const { return !m_there[static_cast<std::size_t>(row)]; }
    /// True if a row equals another one in all columns with a name here.
    [[nodiscard]] bool same(qsizetype row, const Rows& others, qsizetype othersRow,
                            const std::vector<QByteArray>& columns) const;
    /// The value as the field type reads it. A stored value of another kind is returned as it is.
    [[nodiscard]] Value value(qsizetype row, int column, FieldType type) const;
    /// The field type for a column that declares none, by its first value.
    [[nodiscard]] FieldType typeOf(int column) const;

private:
    enum class Kind : quint8 { Null, Whole, Number, Text };
    struct Cell {
        union {
            qint64 whole;
            double number;
            qint64 start;
        };
        quint32 length;
        Kind kind;
    };
    [[nodiscard]] const Cell& cell(qsizetype row, int column) const;
    [[nodiscard]] std::string_view bytes(const Cell& cell) const;

    std::size_t m_columns;
    std::vector<bool> m_there; // by row
    std::vector<Cell> m_cells;
    std::string m_bytes;
};

} // namespace orlo::store
