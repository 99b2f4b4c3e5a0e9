#pragma once

#include "store/engine/Recordset.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace orlo::store
{

class Connection;
class TableDef;
struct QueryDef;
struct Version;
/// Newest first.
using Versions = std::vector<Version>;

/// The engine's own table of the stored queries' texts. No statement may name it.
inline constexpr char StoredQueries[] = "Stored_Queries";

/// A change that is about to happen.
struct Change {
    bool removes = false;
    QString table = {}; ///< that loses rows; empty if more will happen
};

/// An open database file. After close(), its record sets raise 3420; if it is only destroyed, they keep the file open.
class Database
{
public:
    /// Opens a record set on a table, a stored query or a Select of the dialect. Raises 3078 for an unknown table, 3061
    /// for an unknown field, 3075 for what can't be parsed, 3420 on a closed database. While a long snapshot is read,
    /// progress is called now and then; it may throw to stop the reading.
    [[nodiscard]] Recordset openRecordset(const QString& source, const std::function<void()>& progress = {});
    /// Runs an Insert, Update or Delete. Rows that the file refuses are skipped silently. Raises as openRecordset().
    void execute(const QString& sql);
    /// Flushes and closes the file; no other file is needed then. Raises 3420 if it is closed.
    void close();
    /// Locks the file for this program and leaves flushing to the system. A crash of the program still loses nothing,
    /// but a power failure may damage the file, so there should be a safe copy.
    void deferFlushing();
    /// Until endReading(), reads see one state of the file, which is checked once instead of for each statement. Other
    /// programs can't write from the first read on, which raises 3050 if the file can't be locked. False if the file is
    /// closed or already in a transaction or reading.
    [[nodiscard]] bool beginReading();
    /// Does nothing outside a reading. Any change ends it, too.
    void endReading() noexcept;
    /// Sets a listener that is called before each removal of rows and before the first change of each day, never within
    /// a transaction. If it returns false, it is called for the next change, too. What it raises is logged.
    void watchChanges(std::function<bool(Database&, const Change&)> listener);
    /// Announces a removal that starts with other steps.
    void aboutToRemove();
    /// The file's state, which differs after every change by any program. Raises 3420 if it is closed.
    [[nodiscard]] FileState state() const;
    [[nodiscard]] bool isOpen() const;
    /// SQLite's user_version, which states a file's version; 0 if none is stated.
    [[nodiscard]] int stated() const;
    void state(int version);
    /// The path it was opened with.
    [[nodiscard]] QString name() const;

    /// The catalogue. tableDef() raises 3265 for an unknown name; append raises 3010 or 3012 if the name is taken.
    [[nodiscard]] QStringList tableNames() const;
    [[nodiscard]] TableDef tableDef(QStringView name) const;
    void appendTableDef(TableDef& table);
    void deleteTableDef(QStringView name);
    [[nodiscard]] QStringList queryNames() const;
    [[nodiscard]] QueryDef queryDef(QStringView name) const;
    /// Stores a query. Its text may name queries that don't exist yet.
    void createQueryDef(const QString& name, const QString& sql);

    explicit Database(std::shared_ptr<Connection> connection);
    /// The connection, for code that works on the file as a whole.
    [[nodiscard]] const std::shared_ptr<Connection>& connection() const { return m_connection; }

private:
    std::shared_ptr<Connection> m_connection;
};

/// A transaction, rolled back unless committed. A nested one is part of the outer one. Every change of rows happens in
/// one.
class Transaction
{
public:
    /// Raises 3420 on a closed database, 3050 where another program is writing.
    explicit Transaction(const Database& database);
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    /// Makes the changes durable. Raises what the file refuses.
    void commit();

private:
    Connection& m_connection;
    bool m_outermost;
    bool m_done = false;
};

/// Operations on files.
namespace DBEngine
{
/// Opens a file for shared reading and writing; the path is resolved as by the file system object. Raises 3024 for a
/// missing file, 3343 for one that is no database, 3049 for a damaged one, 3050 for one that can't be locked or
/// written. Drops all triggers except the engine's own and those of the versions.
[[nodiscard]] Database openDatabase(const QString& path);
[[nodiscard]] Database openDatabase(const QString& path, const Versions& versions);
/// Opens a file read-only and changes nothing beside it. Raises 3050 if the file has an unfinished change.
[[nodiscard]] Database viewDatabase(const QString& path);
/// Creates an empty database file. Raises 3010 if the file exists.
[[nodiscard]] Database createDatabase(const QString& path);
} // namespace DBEngine

} // namespace orlo::store
