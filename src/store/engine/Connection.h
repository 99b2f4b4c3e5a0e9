#pragma once

#include "store/engine/Guard.h"
#include "store/engine/Record.h"
#include "store/engine/Sql.h"
#include "store/engine/Statement.h"

#include <QByteArray>
#include <QCache>
#include <QDate>
#include <QHash>
#include <QSet>

#include <chrono>
#include <functional>
#include <memory>

struct sqlite3;

namespace orlo::store
{

struct Change;
struct Source;
struct RowShape;

/// What the engine needs to know to read a table or stored query.
struct TableInfo {
    QString name;
    bool isQuery = false;
    QByteArray rowKey;        ///< the name of the row number, empty if there is none
    bool freeNumbers = false; ///< no field is an alias of it, so the engine may choose it
};

/// The SQLite connection of an open database, with its caches. Once closed, it raises 3420.
class Connection
{
public:
    enum class Mode { Open, Create, View };

    /// Opens the file, creates it, or opens it read-only. Raises as DBEngine does.
    Connection(const QString& path, Mode mode);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Closes the file and removes its journal. Statements still in use may only be destroyed.
    void close();
    [[nodiscard]] bool isOpen() const { return m_db != nullptr; }
    /// Raises 3420 once closed.
    void ensureOpen() const;
    [[nodiscard]] const QString& path() const { return m_path; }
    [[nodiscard]] sqlite3* handle() const { return m_db; }

    /// Returns a prepared statement, from the cache if possible. Raises 3061, 3075, 3078.
    [[nodiscard]] Statement statement(const QByteArray& sql, Origin origin = Origin::Engine);
    /// Runs the engine's own statements.
    void run(const QByteArray& sql);

    /// As Database::beginReading().
    [[nodiscard]] bool beginReading();
    /// Does nothing outside a reading. Preparing a statement that writes ends the reading, too, so no such statement
    /// may be kept from before it.
    void endReading() noexcept;
    /// Ends a reading before a change. Raises if it can't end, because the change would be lost.
    void readyToWrite();

    /// As Database::watchChanges().
    using Listener = std::function<bool(const Change&)>;
    void listen(Listener listener) { m_listener = std::move(listener); }
    /// Calls the listener before a change, unless a transaction is open.
    void announce(const Change& change);
    /// As Database::deferFlushing(). No other program can change the file from then on, so its header is read no more.
    /// The page cache is small, because SQLite looks through all of it after many of the changes.
    void deferFlushing();
    /// Restores the usual time to wait for other programs.
    void waitForOthers();

    /// Translates a statement of the dialect. Raises 3075.
    [[nodiscard]] std::shared_ptr<const Translated> translated(const QString& statement);
    /// What is known of a table or stored query; empty for an unknown name. Raises 3075 for a query that can't be read.
    [[nodiscard]] KnownSource known(QStringView name);
    /// The source for a record set: a table, a stored query or a Select. Raises 3061, 3075, 3078.
    [[nodiscard]] std::shared_ptr<const Source> source(const QString& text);
    /// The cached shape of a statement's rows.
    [[nodiscard]] std::shared_ptr<const RowShape> shape(const QByteArray& sql,
                                                        const std::function<std::shared_ptr<const RowShape>()>& make);
    /// The table or stored query of a name, or null.
    [[nodiscard]] const TableInfo* table(QStringView name);

    /// Marks everything read so far as out of date.
    void noteChange() { ++m_ownChanges; }
    /// The file's current state, from its header.
    [[nodiscard]] FileState state() const;
    /// The same, but up to a millisecond old, for walking over many records.
    [[nodiscard]] FileState recentState() const;
    /// The state after this connection's last transaction.
    [[nodiscard]] FileState stateLeft() const { return {m_ownChanges, m_knownRecords.version()}; }
    [[nodiscard]] KnownRecords& knownRecords() { return m_knownRecords; }
    /// The number of Transaction objects on it.
    int transactions = 0;
    /// Clears the caches after a change of the schema.
    void noteSchemaChange();

    /// Restarts the limit on a statement's running time.
    void noteStep() { m_watch.checks = 0; }
    /// Raises SQLite's last failure.
    [[noreturn]] void raiseLast(int code, bool preparing = false);

private:
    void open(Mode mode);
    void checkFile() const;
    void harden();
    void forget();
    std::shared_ptr<Statement::Prepared> prepare(const QByteArray& sql, Origin origin, bool toKeep);
    bool noteMet(std::size_t hash);
    bool isOfFile(const QByteArray& name);
    [[nodiscard]] quint32 version() const;

    QString m_path;
    QString m_file;
    bool m_viewed;
    bool m_alone = false;
    sqlite3* m_db = nullptr;
    Watch m_watch;
    // Caches by text.
    template <typename Key, typename Made>
    using Cache = QCache<Key, std::shared_ptr<Made>>;
    static constexpr qsizetype MaxStatements = 64;
    static constexpr qsizetype MaxTexts = 256;
    Cache<QByteArray, Statement::Prepared> m_statements{MaxStatements};
    QSet<std::size_t> m_metOnce; // hashes of texts
    Cache<QString, const Translated> m_translations{MaxTexts};
    Cache<QString, const Source> m_sources{MaxTexts};
    Cache<QByteArray, const RowShape> m_shapes{MaxTexts};
    QHash<QString, TableInfo> m_tables;
    QHash<QString, KnownSource> m_known;
    bool m_reading = false;
    Listener m_listener;
    QDate m_toldOn;
    quint64 m_ownChanges = 0;
    KnownRecords m_knownRecords{*this};
    mutable quint32 m_versionSeen = 0;
    mutable std::chrono::steady_clock::time_point m_looked;
};

/// A name in double quotes.
[[nodiscard]] QByteArray quoted(QStringView name);

} // namespace orlo::store
