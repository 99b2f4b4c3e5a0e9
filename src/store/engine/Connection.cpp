#include "store/engine/Connection.h"

#include "platform/Conversion.h"
#include "platform/FileSystem.h"
#include "platform/RuntimeError.h"
#include "platform/System.h"
#include "store/engine/Database.h"
#include "store/engine/Failure.h"
#include "store/engine/Journal.h"
#include "store/engine/Source.h"
#include "store/engine/Value.h"

#include <QFile>
#include <QtEndian>

#include <sqlite3.h>

#include <array>
#include <utility>

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

constexpr int BusyMilliseconds = 2000;

QString databaseSource()
{
    return QStringLiteral("Database");
}

// Returns the cached object, or makes and caches it.
template <typename Key, typename Made, typename Make>
std::shared_ptr<Made> made(QCache<Key, std::shared_ptr<Made>>& cache, const Key& text, const Make& make)
{
    if (const auto* known = cache.object(text))
        return *known;
    std::shared_ptr<Made> made = make();
    cache.insert(text, new std::shared_ptr(made));
    return made;
}

} // namespace

Connection::Connection(const QString& path, Mode mode)
    : m_path(path), m_file(platform::nativePath(path)), m_viewed(mode == Mode::View)
{
    try {
        open(mode);
    } catch (...) {
        close();
        if (mode == Mode::Create)
            QFile::remove(m_file);
        throw;
    }
}

Connection::~Connection()
{
    close();
}

void Connection::waitForOthers()
{
    sqlite3_busy_timeout(m_db, BusyMilliseconds);
}

void Connection::close()
{
    endReading();
    forget();
    if (m_db && !m_viewed && QFile::exists(journalOf(m_file))) {
        // The journal is kept between changes but not beside a closed file. If another program has the file open, it
        // removes it.
        sqlite3_busy_timeout(m_db, 0);
        sqlite3_exec(m_db, "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr);
    }
    sqlite3_close_v2(m_db);
    m_db = nullptr;
}

void Connection::ensureOpen() const
{
    if (!m_db)
        throw RuntimeError(platform::ObjectInvalid, databaseSource());
}

std::shared_ptr<Statement::Prepared> Connection::prepare(const QByteArray& sql, Origin origin, bool toKeep)
{
    auto prepared = std::make_shared<Statement::Prepared>();
    prepared->connection = this;
    m_watch.guarding = origin == Origin::Outside;
    m_watch.refusal = 0;
    m_watch.hidden.clear();
    const int code = sqlite3_prepare_v3(m_db, sql.constData(), static_cast<int>(sql.size()) + 1,
                                        toKeep ? SQLITE_PREPARE_PERSISTENT : 0, &prepared->handle, nullptr);
    m_watch.guarding = false;
    if (const QByteArray name = m_watch.hidden; code == SQLITE_AUTH && !name.isEmpty()) {
        if (!isOfFile(name))
            throw RuntimeError(platform::UnknownTable, databaseSource(),
                               platform::standardDescription(platform::UnknownTable) +
                                   QStringLiteral(" (%1)").arg(QString::fromUtf8(name)));
        m_watch.ofFile.insert(name);
        return prepare(sql, origin, toKeep);
    }
    if (code != SQLITE_OK)
        raiseLast(code, true);
    if (!prepared->handle)
        throw RuntimeError(platform::SyntaxError, databaseSource());
    return prepared;
}

// True for a table or query of another tool whose name only looks like one of SQLite's own.
bool Connection::isOfFile(const QByteArray& name)
{
    if (isEngineTable(name.constData()) || m_watch.ofFile.contains(name))
        return false;
    auto found = statement("SELECT 1 FROM sqlite_master WHERE name = ?1 AND (type = 'view' OR type = 'table' AND "
                           "substr(sql, 1, 14) <> 'CREATE VIRTUAL')");
    found.bind(1, name);
    return found.step();
}

Statement Connection::statement(const QByteArray& sql, Origin origin)
{
    ensureOpen();
    const auto* known = m_statements.object(sql);
    const bool free = known && known->use_count() == 1; // not in use
    const bool toKeep = !known && noteMet(qHash(sql));
    auto prepared = free ? *known : prepare(sql, origin, toKeep);
    if (toKeep)
        m_statements.insert(sql, new std::shared_ptr(prepared));
    if (sqlite3_stmt_readonly(prepared->handle) == 0)
        readyToWrite();
    return Statement(std::move(prepared));
}

// Most texts contain a key and come only once, so only repeated ones are cached.
bool Connection::noteMet(std::size_t hash)
{
    if (m_metOnce.remove(hash))
        return true;
    if (m_metOnce.size() >= 2 * MaxTexts) // of both kinds
        m_metOnce.clear();
    m_metOnce.insert(hash);
    return false;
}

void Connection::run(const QByteArray& sql)
{
    ensureOpen();
    readyToWrite();
    noteStep();
    if (const int code = sqlite3_exec(m_db, sql.constData(), nullptr, nullptr, nullptr); code != SQLITE_OK)
        raiseLast(code);
}

// The listener reads the file, so it is called outside transactions.
void Connection::announce(const Change& change)
{
    readyToWrite();
    if (!m_listener || sqlite3_get_autocommit(m_db) == 0)
        return;
    const QDate today = platform::today(); // asks the system for its time zone
    if (!change.removes && m_toldOn == today)
        return;
    try {
        if (m_listener(change))
            m_toldOn = today;
    } catch (const RuntimeError& error) { // must not stop the change
        platform::logError(error.description());
    }
}

std::shared_ptr<const Translated> Connection::translated(const QString& statement)
{
    if (const auto* known = m_translations.object(statement))
        return *known;
    const auto sourceOf = [this](QStringView name) { return known(name); };
    auto translated = std::make_shared<const Translated>(translate(statement, sourceOf));
    if (noteMet(qHash(statement)))
        m_translations.insert(statement, new std::shared_ptr(translated));
    return translated;
}

KnownSource Connection::known(QStringView name)
{
    // Cached by spelling, as every statement asks for it.
    const QString wanted = QString::fromRawData(name.data(), name.size());
    if (const auto known = m_known.constFind(wanted); known != m_known.cend())
        return known.value();
    const QString key = name.toString();
    const TableInfo* found = table(name);
    if (!found)
        return *m_known.insert(key, {});
    const TableInfo read = *found;
    m_known.insert(key, {}); // ends the recursion of a query that names itself
    try {
        return *m_known.insert(key, knownSource(*this, read));
    } catch (...) {
        m_known.remove(key);
        throw;
    }
}

std::shared_ptr<const Source> Connection::source(const QString& text)
{
    return made(m_sources, text, [&] { return makeSource(*this, text); });
}

std::shared_ptr<const RowShape> Connection::shape(const QByteArray& sql,
                                                  const std::function<std::shared_ptr<const RowShape>()>& make)
{
    return made(m_shapes, sql, make);
}

const TableInfo* Connection::table(QStringView name)
{
    const QString key = name.toString().toCaseFolded();
    if (const auto known = m_tables.constFind(key); known != m_tables.cend())
        return &known.value();
    auto found = statement("SELECT name, type FROM sqlite_master WHERE type IN ('table', 'view') "
                           "AND name = ?1 COLLATE NOCASE");
    found.bind(1, Value(name.toString()));
    if (!found.step() || isEngineTable(name.toUtf8().constData()))
        return nullptr;
    TableInfo info{found.text(0), found.text(1) == QLatin1String("view"), {}, false};
    if (!info.isQuery) {
        info.rowKey = rowKeyOf(*this, info.name);
        info.freeNumbers = !info.rowKey.isEmpty() && !showsNumbers(*this, info.name);
    }
    return &*m_tables.insert(key, info);
}

bool Connection::beginReading()
{
    if (sqlite3_get_autocommit(m_db) == 0)
        return false;
    m_reading = !statement("BEGIN").step();
    return m_reading;
}

void Connection::endReading() noexcept
{
    if (m_reading)
        m_reading = sqlite3_exec(m_db, "COMMIT", nullptr, nullptr, nullptr) != SQLITE_OK;
}

// A change made within a reading that can't end would be rolled back with it.
void Connection::readyToWrite()
{
    endReading();
    if (m_reading)
        raiseLast(sqlite3_errcode(m_db));
}

void Connection::noteSchemaChange()
{
    forget();
    noteChange();
}

// Prepared statements keep the old columns until they run.
void Connection::forget()
{
    m_statements.clear();
    m_translations.clear();
    m_sources.clear();
    m_shapes.clear();
    m_tables.clear();
    m_known.clear();
    m_watch.ofFile.clear();
}

void Connection::deferFlushing()
{
    run("PRAGMA journal_mode=DELETE;PRAGMA synchronous=OFF;PRAGMA locking_mode=EXCLUSIVE;PRAGMA cache_size=-4000");
    run("BEGIN EXCLUSIVE;COMMIT"); // the lock is kept from the first use on
    m_versionSeen = version();
    m_alone = true;
}

// SQLite counts changes in the file's header, which can be read without a lock; a change that isn't committed yet may
// count. With a write-ahead log, which another tool may have turned on, it doesn't.
quint32 Connection::version() const
{
    if (m_alone)
        return m_versionSeen;
    constexpr int FormatAt = 18; // bytes from the file's start
    constexpr int CounterAt = 24;
    constexpr char WithJournal = 1;
    std::array<char, CounterAt + 4 - FormatAt> head{};
    sqlite3_file* file = nullptr;
    sqlite3_file_control(m_db, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    if (file && file->pMethods && file->pMethods->xRead(file, head.data(), int(head.size()), FormatAt) == SQLITE_OK &&
        head[0] == WithJournal)
        return qFromBigEndian<quint32>(head.data() + CounterAt - FormatAt);
    sqlite3_stmt* asked = nullptr;
    sqlite3_prepare_v2(m_db, "PRAGMA data_version", -1, &asked, nullptr);
    const quint32 version =
        sqlite3_step(asked) == SQLITE_ROW ? static_cast<quint32>(sqlite3_column_int64(asked, 0)) : 0;
    sqlite3_finalize(asked);
    return version;
}

FileState Connection::state() const
{
    m_looked = std::chrono::steady_clock::now();
    m_versionSeen = version();
    return {m_ownChanges, m_versionSeen};
}

// Reading the header takes about as long as reading a record.
FileState Connection::recentState() const
{
    if (std::chrono::steady_clock::now() - m_looked > std::chrono::milliseconds(1))
        return state();
    return {m_ownChanges, m_versionSeen};
}

void Connection::raiseLast(int code, bool preparing)
{
    const int kind = code & 0xFF;
    const QString words = QString::fromUtf8(sqlite3_errmsg(m_db));
    const int refusal = std::exchange(m_watch.refusal, 0);
    const int number = refusal != 0 ? refusal : failureNumber(m_db, preparing);
    if (kind == SQLITE_SCHEMA || number == platform::UnknownName || number == platform::UnknownTable)
        noteSchemaChange();
    QString description = platform::standardDescription(number);
    if (kind == SQLITE_BUSY || kind == SQLITE_LOCKED)
        description = QStringLiteral("Another program is using the file.");
    else if (sqlite3_extended_errcode(m_db) == SQLITE_READONLY_DBMOVED)
        description = QStringLiteral("The database file was moved or replaced while ORLO was open. Start ORLO again.");
    // Users see these when they enter a title twice or leave it empty, so SQLite's words are left out.
    if (number != platform::DuplicateKey && number != platform::NullInPrimaryKey &&
        number != platform::NullInRequiredField)
        description += QStringLiteral(" (%1)").arg(words);
    throw RuntimeError(number, QStringLiteral("Database"), description);
}

QByteArray quoted(QStringView name)
{
    return '"' + name.toString().replace(u'"', QLatin1String("\"\"")).toUtf8() + '"';
}

} // namespace orlo::store
