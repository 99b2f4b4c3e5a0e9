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

// One line per fault, up to a maximum.
QStringList faultsOf(Connection& connection, int most)
{
    QStringList faults;
    auto check = connection.statement("PRAGMA integrity_check(" + QByteArray::number(most) + ')');
    while (check.step())
        faults += check.text(0);
    return faults == QStringList{QStringLiteral("ok")} ? QStringList() : faults;
}

// Replaces the connection's file by a copy of it in memory, which SQLite may write to: it passes over the conditions of
// tables that are read-only.
void holdInMemory(Connection& connection)
{
    constexpr int WriteFormat = 18, ReadFormat = 19; // memory has no log
    sqlite3_int64 size = 0;
    unsigned char* bytes = sqlite3_serialize(connection.handle(), "main", &size, 0);
    if (bytes)
        bytes[WriteFormat] = bytes[ReadFormat] = 1;
    if (!bytes || sqlite3_deserialize(connection.handle(), "main", bytes, size, size, SQLITE_DESERIALIZE_FREEONCLOSE) !=
                      SQLITE_OK)
        throw RuntimeError(platform::ResourceExceeded, QStringLiteral("DBEngine"));
}

// Rebuilds a sound file with each table's pages in sequence; false for a damaged one.
bool compact(const QString& file)
{
    try {
        Connection connection(file, Connection::Mode::Open);
        if (!faultsOf(connection, 1).isEmpty())
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
    Connection connection(path, Connection::Mode::View);
    holdInMemory(connection);
    return faultsOf(connection, 20);
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
