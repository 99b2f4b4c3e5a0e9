#pragma once

#include <QByteArray>
#include <QHash>

#include <map>
#include <optional>

namespace orlo::store
{

class Connection;

/// The least number that a new row may have. A set knows its rows by number, and SQLite gives the newest row's number
/// again once that row is gone; a number of the clock's, in microseconds, doesn't come a second time, whichever program
/// gives it and whatever was removed. A clock that was put back is below what other programs gave; this one then goes
/// on from the greatest number of its own.
[[nodiscard]] qint64 minNewNumber();
/// Remembers a number that a row was given, which may be after the clock's.
void noteGivenNumber(qint64 number);
/// The expression for a new row's number, after all that the table has; its parameter is minNewNumber(). Quoted
/// names.
[[nodiscard]] QByteArray newNumberSql(const QByteArray& table, const QByteArray& rowKey, int parameter);

/// Which rows a connection wrote itself and when, for sets that ask whether a row is another's.
class OwnRows
{
public:
    /// The row of that number was inserted, changed or removed.
    void note(const char* table, qint64 number, quint64 stamp);
    /// The stamp of the row's last change, 0 where there was none. Quoted name.
    [[nodiscard]] quint64 lastChange(const QByteArray& table, qint64 number) const;

private:
    std::map<QByteArray, QHash<qint64, quint64>> m_tables; // by quoted name
    QByteArray m_table;                                    // that was noted last
    QHash<qint64, quint64>* m_rows = nullptr;              // its rows
};

/// Watches for what a statement inserts, whose numbers SQLite chooses.
class InsertWatch
{
public:
    /// Watches until its end.
    explicit InsertWatch(Connection& connection);
    ~InsertWatch();
    InsertWatch(const InsertWatch&) = delete;
    InsertWatch& operator=(const InsertWatch&) = delete;

    /// A row was inserted.
    void note(const char* table, qint64 number);
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
    qint64 m_count = 0;
};

} // namespace orlo::store
