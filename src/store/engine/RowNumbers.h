#pragma once

#include <QByteArray>

#include <optional>

struct sqlite3;

namespace orlo::store
{

class Connection;

/// The least number that a new row may have. A set knows its rows by number, and SQLite gives the newest row's number
/// again once that row is gone; a number of the clock's, in microseconds, never comes a second time, whichever program
/// gives it and whatever was removed.
[[nodiscard]] qint64 leastNewNumber();
/// The expression for a new row's number, behind all that the table has; its parameter is leastNewNumber(). Quoted
/// names.
[[nodiscard]] QByteArray newNumberSql(const QByteArray& table, const QByteArray& rowKey, int parameter);

/// Watches for what a statement inserts, whose numbers SQLite chooses.
class InsertWatch
{
public:
    explicit InsertWatch(Connection& connection);
    ~InsertWatch();
    InsertWatch(const InsertWatch&) = delete;
    InsertWatch& operator=(const InsertWatch&) = delete;

    /// Gives the inserted rows numbers that were never given before, in their order. Within the statement's
    /// transaction.
    void renumber();

private:
    struct First {
        QByteArray table;
        qint64 number;
    };
    Connection& m_connection;
    std::optional<First> m_first;
};

} // namespace orlo::store
