#pragma once

#include "store/engine/Recordset.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3_stmt;

namespace orlo::store
{

/// A date as the file holds it: 'YYYY-MM-DD', with ' HH:MM:SS' only where there is a time.
[[nodiscard]] QByteArray isoText(const DateTime& date);
/// Reads what isoText() writes; nothing for any other text.
[[nodiscard]] std::optional<DateTime> readIso(QByteArrayView text);

/// The columns of a row that has so many.
[[nodiscard]] std::vector<int> allColumns(std::size_t count);

/// Rows as SQLite gave them, kept close together; a value is made only when it's asked for.
class Rows
{
public:
    /// Takes these columns of every row that is appended.
    explicit Rows(std::vector<int> columns);

    /// Takes over the statement's current row.
    void append(sqlite3_stmt* statement);
    /// Drops all rows.
    void clear();
    [[nodiscard]] qsizetype size() const { return m_size; }
    /// True for a column that is taken.
    [[nodiscard]] bool has(int column) const;
    /// How many columns of every row are taken.
    [[nodiscard]] std::size_t columns() const { return m_columns.size(); }
    /// True if a row of others, which has all columns of this, has the same in them.
    [[nodiscard]] bool same(qsizetype row, const Rows& others, qsizetype othersRow) const;
    /// Drops all rows and takes one more column from now on.
    void addColumn(int column);
    /// The value as a field of the type reads it; what the file holds of another kind comes as it is.
    [[nodiscard]] Value value(qsizetype row, int column, FieldType type) const;
    /// The field type that fits what the column holds, for columns that declare none.
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

    std::vector<int> m_columns;
    std::vector<int> m_slots; // by column: its place among a row's cells, -1 for none
    qsizetype m_size = 0;
    std::vector<Cell> m_cells;
    std::string m_bytes;
};

} // namespace orlo::store
