// How a connection opens its file.

#include "platform/FileSystem.h"
#include "platform/RuntimeError.h"
#include "store/engine/Connection.h"
#include "store/engine/Functions.h"
#include "store/engine/Journal.h"
#include "store/engine/JournalFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <sqlite3.h>

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

constexpr int MaxValueSize = 100'000'000;    // bytes
constexpr sqlite3_int64 MaxMemory = 1 << 30; // bytes
constexpr qsizetype FileHead = 19;           // bytes
constexpr int LastFormat = 2;

[[noreturn]] void refuseFile(int number)
{
    throw RuntimeError(number, QStringLiteral("Database"));
}

[[noreturn]] void raiseUnusable(int number, const QString& words, const QString& path)
{
    throw RuntimeError(number, QStringLiteral("Database"),
                       QStringLiteral("%1: %2").arg(words, QDir::toNativeSeparators(path)));
}

// Whether another program may change the file while it is read. Nobody can if the folder isn't writable, and nobody
// does if the file wants a log that doesn't exist; opening that one normally would create the log.
bool changesWith(const QString& path)
{
    QFile file(path);
    const QByteArray head = file.open(QIODevice::ReadOnly) ? file.read(FileHead) : QByteArray();
    const bool logged = head.size() == FileHead && head.back() == LastFormat;
    return QFile::exists(journalOf(path)) || (!logged && platform::isWritable(QFileInfo(path).absolutePath()));
}

} // namespace

void Connection::open(Mode mode)
{
    // SQLite reads "file:" at the start of a relative path as a URI. Links are resolved because the journal lies beside
    // the real file.
    const QFileInfo info(m_file);
    m_file = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
    int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
    QByteArray name = m_file.toUtf8();
    if (mode == Mode::Create)
        flags |= SQLITE_OPEN_CREATE;
    else
        checkFile();
    if (m_viewed) {
        flags = SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_URI;
        name = QUrl::fromLocalFile(m_file).toEncoded() + (changesWith(m_file) ? "" : "?immutable=1");
    }
    const int code = sqlite3_open_v2(name.constData(), &m_db, flags, filesOfKeptJournals());
    if (code != SQLITE_OK)
        refuseFile(mode == Mode::Create ? platform::PathFileAccess : platform::CannotLockFile);
    harden();
    if (m_viewed)
        run("SELECT count(*) FROM sqlite_master");
    if (mode != Mode::Open)
        return;
    if (sqlite3_db_readonly(m_db, "main") == 1)
        refuseFile(platform::CannotLockFile);
    // Rolls back what a killed process left unfinished, detects a damaged catalogue, and checks for the write lock.
    run("BEGIN IMMEDIATE;ROLLBACK;SELECT count(*) FROM sqlite_master");
    removeStrayJournal(m_file);
}

void Connection::checkFile() const
{
    const QFileInfo info(m_file);
    if (!info.exists())
        raiseUnusable(platform::DatabaseNotFound, QStringLiteral("Couldn't find the database file"), m_file);
    if (!info.isFile())
        refuseFile(platform::UnrecognisedFormat);
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        raiseUnusable(platform::CannotLockFile, QStringLiteral("The file can't be read"), m_file);
    if (!m_viewed && !platform::isWritable(m_file))
        raiseUnusable(platform::CannotLockFile, QStringLiteral("The file can't be written to"), m_file);
    // The journal needs a place beside the file.
    if (const QString folder = info.absolutePath(); !m_viewed && !platform::isWritable(folder))
        raiseUnusable(platform::CannotLockFile, QStringLiteral("The folder can't be written to"), folder);
    const QByteArray head = file.read(FileHead);
    if (!head.startsWith(QByteArrayView("SQLite format 3", 16)))
        refuseFile(platform::UnrecognisedFormat);
    // SQLite would open the file read-only, as one of a later version.
    if (head.size() == FileHead && static_cast<unsigned char>(head.back()) > LastFormat)
        refuseFile(platform::DatabaseDamaged);
    if (m_viewed && isHalfDone(m_file))
        raiseUnusable(
            platform::CannotLockFile,
            QStringLiteral("A change of the file isn't done, or another program has it open. Start the program "
                           "with it, or close that one"),
            m_file);
    if (!m_viewed)
        setStrayJournalAside(m_file);
}

void Connection::harden()
{
    sqlite3_extended_result_codes(m_db, 1);
    waitForOthers();
    const auto note = [](void* connection, int change, const char*, const char* table, sqlite3_int64 number) {
        static_cast<Connection*>(connection)->m_knownRecords.note(change == SQLITE_DELETE, table, number);
    };
    sqlite3_update_hook(m_db, note, this);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    // Renaming a table must work even if a stored query names one that doesn't exist.
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_LEGACY_ALTER_TABLE, 1, nullptr);
    sqlite3_limit(m_db, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_limit(m_db, SQLITE_LIMIT_LENGTH, MaxValueSize);
    sqlite3_hard_heap_limit64(MaxMemory);
    m_watch.set(m_db);
    addFunctions(m_db);
    run("PRAGMA cell_size_check=ON;PRAGMA mmap_size=0;PRAGMA temp_store=MEMORY;PRAGMA cache_size=-16000");
    if (!m_viewed)
        run("PRAGMA journal_mode=PERSIST;PRAGMA journal_size_limit=1048576;PRAGMA synchronous=FULL");
}

} // namespace orlo::store
