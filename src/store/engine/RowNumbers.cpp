#include "store/engine/RowNumbers.h"

#include "store/engine/Connection.h"

#include <QString>

#include <sqlite3.h>

#include <chrono>

namespace orlo::store
{

qint64 leastNewNumber()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count();
}

QByteArray newNumberSql(const QByteArray& table, const QByteArray& rowKey, int parameter)
{
    return "max(?" + QByteArray::number(parameter) + ",1+ifnull((SELECT max(" + rowKey + ") FROM " + table + "),0))";
}

InsertWatch::InsertWatch(Connection& connection) : m_connection(connection)
{
    const auto note = [](void* watch, int change, const char*, const char* table, sqlite3_int64 number) {
        auto& first = static_cast<InsertWatch*>(watch)->m_first;
        if (change == SQLITE_INSERT && !first)
            first = First{table, number};
    };
    sqlite3_update_hook(connection.handle(), note, this);
}

InsertWatch::~InsertWatch()
{
    sqlite3_update_hook(m_connection.handle(), nullptr, nullptr);
}

void InsertWatch::renumber()
{
    if (!m_first)
        return;
    const TableInfo* table = m_connection.table(QString::fromUtf8(m_first->table));
    const qint64 step = leastNewNumber() - m_first->number;
    if (!table || !table->freeNumbers || step <= 0)
        return;
    const QByteArray& key = table->rowKey;
    auto move = m_connection.statement("UPDATE " + quoted(table->name) + " SET " + key + '=' + key + "+?1 WHERE " +
                                       key + ">=?2");
    move.bind(1, step);
    move.bind(2, m_first->number);
    move.step();
}

} // namespace orlo::store
