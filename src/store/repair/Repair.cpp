#include "store/repair/Repair.h"

#include "platform/FileReplacement.h"
#include "platform/FileSystem.h"
#include "platform/RuntimeError.h"
#include "store/engine/Connection.h"
#include "store/engine/Journal.h"
#include "store/engine/Version.h"
#include "store/repair/Salvage.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

// A line for each fault: the argument is their greatest number, or the table that is checked.
QStringList faultsOf(Connection& connection, const QByteArray& argument)
{
    QStringList faults;
    auto check = connection.statement("PRAGMA integrity_check(" + argument + ')');
    while (check.step())
        faults += check.text(0);
    return faults == QStringList{QStringLiteral("ok")} ? QStringList() : faults;
}

// Replaces the connection's file by a copy of it in memory, which SQLite may write to.
void holdInMemory(Connection& connection)
{
    constexpr int WriteFormat = 18, ReadFormat = 19; // memory has no log
    sqlite3* const db = connection.handle();
    sqlite3_int64 size = 0;
    unsigned char* bytes = sqlite3_serialize(db, "main", &size, 0);
    if (!bytes && sqlite3_errcode(db) == SQLITE_OK)
        throw RuntimeError(platform::ResourceExceeded, QStringLiteral("DBEngine"));
    if (!bytes)
        connection.raiseLast(sqlite3_errcode(db));
    bytes[WriteFormat] = bytes[ReadFormat] = 1;
    const int code = sqlite3_deserialize(db, "main", bytes, size, size, SQLITE_DESERIALIZE_FREEONCLOSE);
    if (code != SQLITE_OK)
        connection.raiseLast(code);
}

// Rows that break their tables' conditions. SQLite passes over the conditions of tables that it can't write to, so they
// are checked in a copy; one that only another program can work out says nothing.
QStringList brokenConditions(Connection& connection)
{
    holdInMemory(connection);
    QByteArrayList tables;
    auto names = connection.statement("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
    while (names.step())
        tables += '"' + names.text(0).toUtf8().replace('"', "\"\"") + '"';
    QStringList faults;
    for (const QByteArray& table : std::as_const(tables)) {
        try {
            faults += faultsOf(connection, table);
        } catch (const RuntimeError& error) {
            if (error.number() != platform::SyntaxError) // of the condition
                throw;
        }
    }
    return faults;
}

// Rebuilds a sound file with each table's pages in sequence; false for a damaged one.
bool compact(const QString& file)
{
    try {
        Connection connection(file, Connection::Mode::Open);
        if (!faultsOf(connection, "1").isEmpty())
            return false;
        sqlite3_limit(connection.handle(), SQLITE_LIMIT_ATTACHED, 1); // the rebuild needs a second file
        connection.run("VACUUM");
    } catch (const RuntimeError& error) {
        // What the system refuses says nothing about the file; any other failure does.
        for (const int number :
             {platform::CannotLockFile, platform::DiskFull, platform::PathFileAccess, platform::ReadOnlySet})
            if (error.number() == number)
                throw;
        return false;
    }
    return true;
}

} // namespace

QStringList DBEngine::checkDatabase(const QString& path)
{
    constexpr qsizetype Most = 20;
    Connection connection(path, Connection::Mode::View);
    const QStringList faults = faultsOf(connection, QByteArray::number(Most));
    return faults.isEmpty() ? brokenConditions(connection).mid(0, Most) : faults;
}

Repaired DBEngine::repairDatabase(const QString& path, const Versions& versions)
{
    const QFileInfo info(platform::nativePath(path));
    if (!info.isFile())
        throw RuntimeError(platform::DatabaseNotFound, QStringLiteral("DBEngine"));
    const QString file = info.canonicalFilePath(); // a link will still name the repaired file
    requireKnown(statedIn(file).value_or(0), versions);
    if (compact(file))
        return {};
    const platform::FileInTheMaking making(file, QStringLiteral(".repair"));
    Repaired repaired{{}, Salvage(file, making.name(), versions).run()};
    QFile::setPermissions(making.name(), info.permissions());
    setJournalAside(file);
    repaired.damaged = platform::putInPlace(file, making.name(), QStringLiteral("damaged"));
    return repaired;
}

} // namespace orlo::store
