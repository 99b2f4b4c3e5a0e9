#include "store/copies/DatabaseCopy.h"

#include "platform/RuntimeError.h"
#include "store/engine/Connection.h"
#include "store/engine/Database.h"

#include <QFile>
#include <QScopeGuard>

#include <sqlite3.h>

namespace orlo::store
{

namespace
{

constexpr int CopyBusyMilliseconds = 200;
constexpr sqlite3_int64 BlockSize = 1 << 20; // bytes
constexpr qsizetype FormatAt = 18;           // bytes from the file's start
constexpr char WithJournal = 1;

[[noreturn]] void refuseCopying(int number)
{
    throw platform::RuntimeError(number, QStringLiteral("Database"));
}

} // namespace

// Under SQLite's own lock, and through its own handle: closing another one on the file would give that lock up.
void copyDatabase(const Database& database, const QString& path)
{
    Connection& connection = *database.connection();
    connection.ensureOpen();
    connection.readyToWrite(); // an open reading would show the state of its beginning
    sqlite3_busy_timeout(connection.handle(), CopyBusyMilliseconds);
    const auto patience = qScopeGuard([&connection] { connection.waitForOthers(); });
    if (!connection.beginReading())
        refuseCopying(platform::CannotLockFile);
    const auto ending = qScopeGuard([&connection] { connection.endReading(); });
    (void)connection.statement("SELECT count(*) FROM sqlite_master").step(); // takes the lock
    // A file for a log that has none is read without a lock, so a log may come meanwhile.
    const QString log = QString::fromUtf8(sqlite3_db_filename(connection.handle(), "main")) + QStringLiteral("-wal");
    bool mayHaveLog = false;

    sqlite3_file* file = nullptr;
    sqlite3_int64 size = 0;
    sqlite3_file_control(connection.handle(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
    if (!file || !file->pMethods || file->pMethods->xFileSize(file, &size) != SQLITE_OK)
        refuseCopying(platform::DatabaseDamaged);
    QFile made(path);
    if (!made.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        refuseCopying(platform::PathFileAccess);
    QByteArray block;
    for (sqlite3_int64 at = 0; at < size; at += block.size()) {
        block.resize(std::min(BlockSize, size - at));
        if (file->pMethods->xRead(file, block.data(), static_cast<int>(block.size()), at) != SQLITE_OK)
            refuseCopying(platform::DatabaseDamaged);
        mayHaveLog = mayHaveLog || (at == 0 && block[FormatAt] != WithJournal);
        if (mayHaveLog && QFile::exists(log)) // the newest rows are in it
            refuseCopying(platform::CannotLockFile);
        if (made.write(block) != block.size())
            refuseCopying(made.error() == QFileDevice::ResourceError ? platform::DiskFull : platform::PathFileAccess);
    }
}

} // namespace orlo::store
