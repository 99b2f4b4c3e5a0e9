#pragma once

#include "store/engine/Recordset.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace orlo::store
{

class Connection;
struct Version;
/// The newest version first.
using Versions = std::vector<Version>;

/// An index of a table definition, on one field or more.
struct Index {
    QString name;
    QStringList fields;
    bool primary = false;
    bool unique = false;
    bool required = false;
};

/// One table of the catalogue: either a definition being filled before it is appended, or a table of the file, whose
/// fields and indexes then change at once.
class TableDef
{
public:
    explicit TableDef(QString name);

    [[nodiscard]] const QString& name() const { return m_name; }
    [[nodiscard]] const std::vector<Field>& fields() const { return m_fields; }
    [[nodiscard]] const std::vector<Index>& indexes() const { return m_indexes; }
    /// The field of a name, without regard to case; null for an unknown one.
    [[nodiscard]] const Field* findField(QStringView name) const;

    /// Raises 3010 for a name that is there already, 3283 for a counter where the table has a primary key.
    void appendField(const Field& field);
    /// Raises 3265 for an unknown name.
    void deleteField(QStringView name);
    /// Raises 3010 for a name that is there already, 3022 for a unique index over equal values, 3265 for an unknown
    /// field, 3283 for a second primary key.
    void appendIndex(const Index& index);

private:
    friend class Database;
    void write() const;

    QString m_name;
    std::vector<Field> m_fields;
    std::vector<Index> m_indexes;
    std::weak_ptr<Connection> m_connection; // set once the table stands in a file
};

/// The table of a file that keeps the given texts of its stored queries. It is the engine's; no statement names it.
inline constexpr char StoredQueries[] = "Stored_Queries";

/// A stored query: its name and the text that was given for it.
struct QueryDef {
    QString name;
    QString sql;
};

/// What a file's rows are about to go through.
struct Change {
    bool removes = false;
    QString table = {}; ///< that loses rows; empty where several things will happen
};

/// One open database file. Closing it ends every record set that was opened on it (3420); letting it go leaves them
/// their file.
class Database
{
public:
    /// Opens a record set on a table's name, a stored query's name or a Select statement of the dialect. Raises 3078
    /// for an unknown table, 3061 for an unknown field, 3075 for what can't be parsed, 3420 on a closed database.
    /// While the rows of a long snapshot are read, readingOn is called now and then; what it throws ends the reading.
    [[nodiscard]] Recordset openRecordset(const QString& source, const std::function<void()>& readingOn = {});
    /// Runs one Insert, Update or Delete. Passes silently over a row that the file refuses; raises as openRecordset().
    void execute(const QString& sql);
    /// Flushes and closes the file: it alone then holds all data. Raises 3420 if it is closed.
    void close();
    /// From here on nobody else can use the file, and writes reach the disk when the system finds time for them. The
    /// program's end at any moment still loses nothing, but a power failure may leave a damaged file: for one that has
    /// a copy on the disk.
    void deferFlushing();
    /// From here to endReading() all is read as of one state of the file, which is looked at once and not for each
    /// statement. False where that is so already, as in a transaction, and on a closed database. Raises 3050 for a file
    /// that can't be locked, which nobody can write to meanwhile.
    [[nodiscard]] bool beginReading();
    /// Nothing without a reading: a change ends it, too.
    void endReading() noexcept;
    /// Has somebody told ahead of the first change of each day and of each removal of rows. The listener gives false
    /// where it wants to be told of the next change, too; what it raises is logged. Nobody is told within a
    /// transaction.
    void watchChanges(std::function<bool(Database&, const Change&)> listener);
    /// Tells of a removal that begins with other steps.
    void aboutToRemove();
    /// The file's state, which is another one after every change, whoever made it. Raises 3420 if it is closed.
    [[nodiscard]] FileState state() const;
    [[nodiscard]] bool isOpen() const;
    /// SQLite's user_version, by which a file states its version; 0 in one that states none.
    [[nodiscard]] int stated() const;
    void state(int version);
    /// The path that it was opened by.
    [[nodiscard]] QString name() const;

    /// The catalogue. tableDef() raises 3265 for an unknown name; append 3010/3012 for one that is there already.
    [[nodiscard]] QStringList tableNames() const;
    [[nodiscard]] TableDef tableDef(QStringView name) const;
    void appendTableDef(TableDef& table);
    void deleteTableDef(QStringView name);
    [[nodiscard]] QStringList queryNames() const;
    [[nodiscard]] QueryDef queryDef(QStringView name) const;
    /// Stores a named query with its text. A text may name a query that doesn't exist yet.
    void createQueryDef(const QString& name, const QString& sql);

    explicit Database(std::shared_ptr<Connection> connection);
    /// The file itself, for what works on it as a whole.
    [[nodiscard]] const std::shared_ptr<Connection>& connection() const { return m_connection; }

private:
    std::shared_ptr<Connection> m_connection;
};

/// A transaction that is rolled back unless it is committed. Within another one it is a part of that. Every change of
/// a file's rows is made in one.
class Transaction
{
public:
    /// Raises 3420 on a closed database, 3050 where another program is writing.
    explicit Transaction(const Database& database);
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    /// Raises what the file refuses; the changes are on the disk after it.
    void commit();

private:
    Connection& m_connection;
    bool m_outermost;
    bool m_done = false;
};

/// The engine's own operations on files.
namespace DBEngine
{
/// Opens a file for shared read and write; the path is resolved as the file system object does. Raises 3024 for a
/// missing file, 3343 for one that is no database, 3049 for a damaged one, 3050 for one that can't be locked or
/// written. Triggers that are neither the engine's own nor those of the versions are
/// dropped.
[[nodiscard]] Database openDatabase(const QString& path);
[[nodiscard]] Database openDatabase(const QString& path, const Versions& versions);
/// The same for somebody who only looks: nothing in the file changes, nor beside it. Raises 3050 where a change of the
/// file isn't done.
[[nodiscard]] Database viewDatabase(const QString& path);
/// Makes an empty database file. Raises 3010 if the file exists.
[[nodiscard]] Database createDatabase(const QString& path);
} // namespace DBEngine

} // namespace orlo::store
