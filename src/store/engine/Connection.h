#pragma once

#include "store/engine/Database.h"
#include "store/engine/Sql.h"

#include <QByteArray>
#include <QHash>

#include <list>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace orlo::store
{

class Connection;
struct Source;
struct RowShape;

/// Whose text a statement is: the engine's own, or one from outside that may only do what the dialect offers.
enum class Origin { Engine, Outside };

/// A prepared statement, borrowed from its connection; letting it go resets it.
class Statement
{
public:
    struct Prepared;

    explicit Statement(std::shared_ptr<Prepared> prepared) : m_prepared(std::move(prepared)) {}
    ~Statement();
    Statement(Statement&&) noexcept = default;
    Statement& operator=(Statement&&) = delete;
    Statement(const Statement&) = delete;

    /// Binds the parameter, 1-based.
    void bind(int parameter, qint64 value);
    void bind(int parameter, const Value& value);
    /// Goes to the next row; false behind the last one. Raises what the file refuses.
    bool step();
    void reset();
    [[nodiscard]] qint64 integer(int column) const;
    [[nodiscard]] QString text(int column) const;
    [[nodiscard]] sqlite3_stmt* handle() const;

private:
    std::shared_ptr<Prepared> m_prepared;
};

/// What the engine must know of a table or stored query to read it.
struct TableInfo {
    QString name;
    bool isQuery = false;
    QByteArray rowKey; ///< the name of the row's own key, empty where there is none to be had
};

/// The one SQLite connection of an open database, with its caches. Lives as long as anything refers to it; closed, it
/// raises 3420.
class Connection
{
public:
    enum class Mode { Open, Create };

    /// Opens or makes the file and hardens the connection. Raises as DBEngine does.
    Connection(const QString& path, Mode mode);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

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
    /// Runs a translated action; a row that the file refuses is passed over.
    void execute(const Translated& action);

    [[nodiscard]] std::shared_ptr<const Translated> translated(const QString& statement);
    [[nodiscard]] std::shared_ptr<const Source> source(const QString& text);
    [[nodiscard]] std::shared_ptr<const RowShape>& shape(const QByteArray& sql) { return m_shapes[sql]; }
    /// The table or stored query of a name; nothing where there is none.
    [[nodiscard]] const TableInfo* table(QStringView name);

    /// Grows with every change made through this connection.
    [[nodiscard]] quint64 changeStamp() const { return m_changeStamp; }
    void noteChange() { ++m_changeStamp; }
    /// Another number after every change that came from outside this connection.
    [[nodiscard]] qint64 dataVersion();
    /// Drops what was remembered of the catalogue.
    void noteSchemaChange();

    /// Raises the failure that SQLite reported last.
    [[noreturn]] void raiseLast(int code, bool preparing = false);

    /// The number that the authorizer refused an outside statement with, 0 for none; for its own use.
    int refusal = 0;
    bool guarding = false;
    /// How often the running statement was looked at, to end one that would never end.
    int looks = 0;

private:
    void open(Mode mode);
    void checkFile() const;
    void harden();
    std::shared_ptr<Statement::Prepared> prepare(const QByteArray& sql, Origin origin);
    void executeSkippingRefusedRows(const Translated& action);

    QString m_path;
    QString m_file;
    sqlite3* m_db = nullptr;
    std::list<std::shared_ptr<Statement::Prepared>> m_statements; // most recently used first
    QHash<QByteArray, std::list<std::shared_ptr<Statement::Prepared>>::iterator> m_byText;
    QHash<QString, std::shared_ptr<const Translated>> m_translations;
    QHash<QString, std::shared_ptr<const Source>> m_sources;
    QHash<QByteArray, std::shared_ptr<const RowShape>> m_shapes;
    QHash<QString, TableInfo> m_tables;
    quint64 m_changeStamp = 0;
};

/// A transaction that is rolled back unless it is committed. Within another one it is a part of that.
class Transaction
{
public:
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

private:
    Connection& m_connection;
    bool m_open;
};

/// A name as the file's SQL writes it: in double quotes.
[[nodiscard]] QByteArray quoted(QStringView name);

} // namespace orlo::store
