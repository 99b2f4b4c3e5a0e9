#include "store/engine/DatabaseCopy.h"

#include "platform/RuntimeError.h"
#include "store/engine/Connection.h"
#include "store/engine/Failure.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <sqlite3.h>

namespace orlo::store
{

namespace
{

constexpr int CopyBusyMilliseconds = 200;

[[noreturn]] void raiseCopying(sqlite3* made, int code)
{
    const QString words = QString::fromUtf8(code == SQLITE_OK ? "" : sqlite3_errmsg(made));
    throw platform::RuntimeError(failureNumber(code, words, false), QStringLiteral("Database"));
}

} // namespace

// Page by page through both engines: the copy is of one state, whatever journal the file has.
void copyDatabase(Connection& connection, const QString& path)
{
    connection.ensureOpen();
    connection.readyToWrite(); // a reading that goes on would be the state of its beginning
    sqlite3* made = nullptr;
    const auto closing = qScopeGuard([&made] { sqlite3_close_v2(made); });
    // An absolute path, since SQLite reads "file:" as the start of an address with options.
    const QByteArray name = QFileInfo(path).absoluteFilePath().toUtf8();
    int code = sqlite3_open_v2(name.constData(), &made,
                               SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    // Nobody sees the copy before it is whole, so it needs no way back of its own.
    if (code == SQLITE_OK)
        code = sqlite3_exec(made, "PRAGMA journal_mode=OFF;PRAGMA synchronous=OFF;PRAGMA locking_mode=EXCLUSIVE",
                            nullptr, nullptr, nullptr);
    if (code != SQLITE_OK)
        raiseCopying(made, code);
    sqlite3_busy_timeout(connection.handle(), CopyBusyMilliseconds);
    const auto patience = qScopeGuard([&connection] { connection.waitForOthers(); });
    sqlite3_backup* copying = sqlite3_backup_init(made, "main", connection.handle(), "main");
    if (!copying)
        raiseCopying(made, sqlite3_errcode(made));
    const int stepped = sqlite3_backup_step(copying, -1);
    const int finished = sqlite3_backup_finish(copying);
    if (stepped != SQLITE_DONE || finished != SQLITE_OK)
        raiseCopying(made, stepped == SQLITE_DONE ? finished : stepped);
}

} // namespace orlo::store
