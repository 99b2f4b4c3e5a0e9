#include "store/opening/OpenFile.h"

#include "platform/FileSystem.h"
#include "platform/RuntimeError.h"
#include "store/copies/KeptCopies.h"
#include "store/engine/Catalogue.h"
#include "store/engine/Connection.h"
#include "store/engine/Version.h"
#include "store/jet/FormerFile.h"
#include "store/jet/Takeover.h"

namespace orlo::store
{

Database openFile(const QString& path, const Versions& versions)
{
    if (const QString file = platform::nativePath(path); isFormerFormat(file))
        takeOver(file);
    return DBEngine::openDatabase(path, versions);
}

Database openPack(const QString& path, const Versions& versions)
{
    if (!isFormerFormat(platform::nativePath(path))) {
        Connection look(path, Connection::Mode::Open);
        schema::requireOurs(tableNames(look));
    }
    return openFile(path, versions);
}

Database openCurrent(const QString& path, const Versions& versions, const Migrations& steps)
{
    Database database = openPack(path, versions);
    if (!isBehind(database, versions, steps))
        return database;
    keepCopyOf(path);
    try {
        migrate(database, versions, steps);
    } catch (const platform::RuntimeError& error) {
        throw platform::RuntimeError(
            error.number(), error.source(),
            QStringLiteral("The file couldn't be brought to version %1, and nothing in it was changed: %2")
                .arg(versionText(versions.front().number), error.description()));
    }
    return database;
}

} // namespace orlo::store
