#include "store/engine/RowNumbers.h"

#include "store/engine/Connection.h"

#include <QString>

#include <algorithm>
#include <chrono>

namespace orlo::store
{

namespace
{
qint64 greatestGiven = 0; // of the numbers that this program gave, whichever the file
}

qint64 minNewNumber()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    const qint64 clock = std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count();
    return std::max(clock, greatestGiven + 1);
}

void noteGivenNumber(qint64 number)
{
    greatestGiven = std::max(greatestGiven, number);
}

QByteArray newNumberSql(const QByteArray& table, const QByteArray& rowKey, int parameter)
{
    return "max(?" + QByteArray::number(parameter) + ",1+ifnull((SELECT max(" + rowKey + ") FROM " + table + "),0))";
}

void OwnRows::note(const char* table, qint64 number, quint64 stamp)
{
    if (!m_rows || m_table != table) {
        m_table = table;
        m_rows = &m_tables[quoted(QString::fromUtf8(table))];
    }
    m_rows->insert(number, stamp);
}

quint64 OwnRows::lastChange(const QByteArray& table, qint64 number) const
{
    const auto rows = m_tables.find(table);
    return rows != m_tables.end() ? rows->second.value(number) : 0;
}

InsertWatch::InsertWatch(Connection& connection) : m_connection(connection)
{
    m_connection.watchInserts(this);
}

InsertWatch::~InsertWatch()
{
    m_connection.watchInserts(nullptr);
}

void InsertWatch::note(const char* table, qint64 number)
{
    if (!m_first)
        m_first = First{table, number};
    ++m_count;
}

void InsertWatch::renumber()
{
    if (!m_first)
        return;
    const TableInfo* table = m_connection.table(QString::fromUtf8(m_first->table));
    if (!table || !table->freeNumbers || m_first->number >= minNewNumber())
        return;
    // At least as far as the rows reach: none may come to a number that another one still has.
    const qint64 step = std::max(minNewNumber() - m_first->number, m_count);
    const QByteArray& key = table->rowKey;
    auto move = m_connection.statement("UPDATE " + quoted(table->name) + " SET " + key + '=' + key + "+?1 WHERE " +
                                       key + ">=?2");
    move.bind(1, step);
    move.bind(2, m_first->number);
    move.step();
    noteGivenNumber(m_first->number + step + m_count);
}

} // namespace orlo::store
