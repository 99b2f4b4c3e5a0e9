// How a set writes its buffer.

#include "store/engine/Connection.h"
#include "store/engine/Recordset.h"
#include "store/engine/Source.h"
#include "store/engine/Value.h"

#include <sqlite3.h>

#include <algorithm>
#include <chrono>

namespace orlo::store
{

namespace
{

qint64 greatestGiven = 0; // in all files

// The lowest number for a new row. A set knows its rows by number, and SQLite reuses the newest row's number after a
// removal. The clock in microseconds never repeats, in any program. If the clock was set back, our own greatest number
// is used instead.
qint64 minNewNumber()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    const qint64 clock = std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count();
    return std::max(clock, greatestGiven + 1);
}

} // namespace

QByteArray Recordset::changedColumns(const char* separator, const char* after) const
{
    QByteArray list;
    for (std::size_t i = 0; i < m_buffer->changed.size(); ++i)
        if (m_buffer->changed[i])
            list += (list.isEmpty() ? "" : separator) + m_shape->columns[i] + after;
    return list;
}

// Returns the number of parameters.
int Recordset::bindChanged(Statement& statement) const
{
    int parameter = 0;
    for (std::size_t i = 0; i < m_buffer->changed.size(); ++i)
        if (m_buffer->changed[i])
            statement.bind(++parameter, m_buffer->values[i]);
    return parameter;
}

void Recordset::insertBuffer()
{
    const auto given = static_cast<int>(std::ranges::count(m_buffer->changed, true));
    const bool numbered = m_source->freeNumbers;
    QByteArray columns = changedColumns(",", "");
    QByteArray values = QByteArray(",?").repeated(given).sliced(given > 0 ? 1 : 0);
    if (numbered) {
        columns += (given > 0 ? "," : "") + m_source->rowKey;
        values += QByteArray(given > 0 ? "," : "") + "max(?,1+ifnull((SELECT max(" + m_source->rowKey + ") FROM " +
                  m_source->table + "),0))";
    }
    auto statement =
        m_connection->statement("INSERT INTO " + m_source->table +
                                (columns.isEmpty() ? " DEFAULT VALUES" : '(' + columns + ") VALUES(" + values + ')'));
    bindChanged(statement);
    if (numbered)
        statement.bind(given + 1, minNewNumber());
    statement.step();
    m_added = m_connection->knownRecords().add(m_source, sqlite3_last_insert_rowid(m_connection->handle()));
    m_added->record = {readBlock(*m_connection, *m_source, std::span(&m_added->number, 1))};
    if (numbered)
        greatestGiven = std::max(greatestGiven, m_added->number);
}

void Recordset::updateBuffer()
{
    confirm();
    auto statement = m_connection->statement("UPDATE " + m_source->table + " SET " + changedColumns(",", "=?") +
                                             " WHERE " + m_source->rowKey + "=?");
    statement.bind(bindChanged(statement) + 1, m_known->number);
    statement.step();
}

} // namespace orlo::store
