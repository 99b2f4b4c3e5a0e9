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

/// What the engine must know of a table or stored query to read it.
struct TableInfo {
    QString name;
    bool isQuery = false;
    QByteArray rowKey;        ///< the name of the row's own number, empty where there is none to be had
    bool freeNumbers = false; ///< no field shows that number, so the engine may choose it
};

/// The one SQLite connection of an open database, with its caches. Lives as long as anything refers to it; closed, it
/// raises 3420.
class Connection
{
public:
    enum class Mode { Open, Create, View };

    /// Opens or makes the file, or opens it to read alone, and hardens the connection. Raises as DBEngine does.
    Connection(const QString& path, Mode mode);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Closes the file and removes its journal; statements that are still borrowed only end.
    void close();
    [[nodiscard]] bool isOpen() const { return m_db != nullptr; }
    /// Raises 3420 once closed.
    void ensureOpen() const;
    [[nodiscard]] const QString& path() const { return m_path; }
    [[nodiscard]] sqlite3* handle() const { return m_db; }

    /// A statement from the cache, prepared if it isn't there. Raises 3061, 3075, 3078.
    [[nodiscard]] Statement statement(const QByteArray& sql, Origin origin = Origin::Engine);
    /// Runs statements of the engine's own.
    void run(const QByteArray& sql);

    /// From here to endReading() all is read as of one state of the file. False where that is so already, as in a
    /// transaction. Raises 3050 for a file that can't be locked.
    [[nodiscard]] bool beginReading();
    /// Nothing without a reading. A statement that writes, as soon as it is asked for, ends it, too: none may be kept
    /// from before the reading and be stepped within it.
    void endReading() noexcept;
    /// endReading() before a change, which would be lost in a reading that goes on: raises what keeps it from ending.
    void readyToWrite();

    /// As Database::watchChanges().
    using Listener = std::function<bool(const Change&)>;
    void listen(Listener listener) { m_listener = std::move(listener); }
    /// Tells the listener ahead of a change, unless a transaction is under way.
    void announce(const Change& change);
    /// Waits for other programs as long as usual.
    void waitForOthers();

    /// What a statement of the dialect is to SQLite. Raises 3075.
    [[nodiscard]] std::shared_ptr<const Translated> translated(const QString& statement);
    /// What is known of a table or stored query; nothing where there is none of the name. Raises 3075 for a query that
    /// can't be read.
    [[nodiscard]] KnownSource known(QStringView name);
    /// Where a record set of a table's or stored query's name, or of a Select, comes from. Raises 3061, 3075, 3078.
    [[nodiscard]] std::shared_ptr<const Source> source(const QString& text);
    /// The shape of a statement's rows, made where it isn't known.
    [[nodiscard]] std::shared_ptr<const RowShape> shape(const QByteArray& sql,
                                                        const std::function<std::shared_ptr<const RowShape>()>& make);
    /// The table or stored query of a name; nothing where there is none.
    [[nodiscard]] const TableInfo* table(QStringView name);

    /// Tells of a change: what was read before it is read anew.
    void noteChange() { ++m_ownChanges; }
    /// The file's state as it is now, by a look at its head.
    [[nodiscard]] FileState state() const;
    /// The same for a walk over many records, where a look of a millisecond ago will do.
    [[nodiscard]] FileState recentState() const;
    /// The state in which this connection's last transaction left it.
    [[nodiscard]] FileState stateLeft() const { return {m_ownChanges, m_knownRecords.version()}; }
    [[nodiscard]] KnownRecords& knownRecords() { return m_knownRecords; }
    /// Drops what was remembered of the catalogue.
    void noteSchemaChange();

    /// A statement starts on its next row: one that runs on without end is ended, counted from here.
    void noteStep() { m_watch.checks = 0; }
    /// Raises the failure that SQLite reported last.
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
    sqlite3* m_db = nullptr;
    Watch m_watch;
    // What was made of texts, for the next time that they come.
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
    mutable quint32 m_versionSeen = 0; // by the last look
    mutable std::chrono::steady_clock::time_point m_looked;
};

/// A name as the file's SQL writes it: in double quotes.
[[nodiscard]] QByteArray quoted(QStringView name);

} // namespace orlo::store
