#pragma once

#include "store/engine/Value.h"

#include <QByteArray>

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

/// Rows as SQLite gave them, kept close together; a value is made only when it's asked for.
class Rows
{
public:
    /// Takes the first so many columns of every row that is appended.
    explicit Rows(std::size_t columns) : m_columns(columns) {}

    /// Takes over the statement's current row; without a statement, a place for one that is gone.
    void append(sqlite3_stmt* statement);
    [[nodiscard]] qsizetype size() const { return static_cast<qsizetype>(m_there.size()); }
    /// The memory that they take, roughly.
    [[nodiscard]] std::size_t bytes() const { return m_bytes.size() + m_cells.size() * sizeof(Cell); }
    [[nodiscard]] bool isGone(qsizetype row) const { return !m_there[static_cast<std::size_t>(row)]; }
    /// True if a row of others, which have the same columns, holds the same in those that have a name here.
    [[nodiscard]] bool same(qsizetype row, const Rows& others, qsizetype othersRow,
                            const std::vector<QByteArray>& columns) const;
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

    std::size_t m_columns;
    std::vector<bool> m_there; // by row
    std::vector<Cell> m_cells;
    std::string m_bytes;
};

} // namespace orlo::store
