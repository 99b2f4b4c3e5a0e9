#include "store/jet/Takeover.h"

#include "platform/Application.h"
#include "platform/FileLock.h"
#include "platform/FileReplacement.h"
#include "platform/FileSystem.h"
#include "platform/RuntimeError.h"
#include "platform/System.h"
#include "store/engine/Catalogue.h"
#include "store/engine/Connection.h"
#include "store/engine/Journal.h"
#include "store/jet/Definitions.h"
#include "store/jet/FormerFile.h"
#include "store/jet/FormerRows.h"
#include "store/jet/HelperStream.h"
#include "store/jet/Import.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

void tellProgress(const QString& file, int percent)
{
    if (takeoverWatch().progress)
        takeoverWatch().progress(file, percent);
}

jet::Report make(const QString& name, const QString& former, const QString& helper)
{
    const QString shown = QFileInfo(former).fileName();
    const auto end = qScopeGuard([&shown] { tellProgress(shown, 100); });
    jet::HelperStream stream(helper, former);
    auto connection = std::make_shared<Connection>(name, Connection::Mode::Create);
    // Nothing counts until it is complete, and then it is flushed at once.
    connection->run("PRAGMA journal_mode=MEMORY;PRAGMA synchronous=OFF");
    createQueryTexts(*connection);
    Database database(connection);
    jet::Report report =
        jet::import(stream, *connection, database, [&shown](int percent) { tellProgress(shown, percent); });
    database.close();
    return report;
}

// Failures to write name the file, too.
[[noreturn]] void raise(const RuntimeError& error, const QFileInfo& file)
{
    const auto named = [&error](const QString& words, const QString& path) {
        return RuntimeError(error.number(), error.source(),
                            QStringLiteral("%1: %2").arg(words, QDir::toNativeSeparators(path)));
    };
    switch (error.number()) {
    case platform::DatabaseDamaged:
    case platform::UnrecognisedFormat:
    case platform::CannotLockFile:
        throw error;
    case platform::DiskFull:
    case platform::PermissionDenied:
    case platform::PathFileAccess:
    case platform::DeviceUnavailable:
        if (!platform::isWritable(file.path()))
            throw named(QStringLiteral("The folder can't be written to"), file.path());
        throw named(error.description(), file.filePath());
    default:
        throw jet::damaged(error.description());
    }
}

QString helperProgram()
{
    QString helper = platform::companionFile(platform::programName(QStringLiteral("orlo-jet")));
    if (helper.isEmpty())
        throw noReader();
    return helper;
}

// The former engine's lock file beside it.
QString lockFileOf(const QFileInfo& file)
{
    return platform::nativePath(QStringLiteral("%1/%2.ldb").arg(file.path(), file.completeBaseName()));
}

} // namespace

std::vector<FormerCount> checkFormer(const QString& file)
{
    platform::FileLock former(file);
    former.keepOthersOut(lockFileOf(QFileInfo(file)));
    jet::HelperStream stream(helperProgram(), file);
    std::vector<FormerCount> counts;
    const jet::Definitions definitions = jet::readDefinitions(stream);
    jet::readTables(stream, definitions.tables, [&counts](const jet::FormerTable&, jet::FormerRows& rows) {
        while (rows.next())
            ;
        counts.push_back(rows.count());
    });
    return counts;
}

void takeOver(const QString& file)
{
    const QString helper = helperProgram();
    const QFileInfo info(QFileInfo(file).canonicalFilePath());
    const QString path = info.filePath();
    platform::FileLock former(path);
    if (!former.isOn(path) || !isFormerFormat(path)) // another process has put the new file in its place
        return;
    former.keepOthersOut(lockFileOf(info));
    const platform::FileInTheMaking making(path, QStringLiteral(".orlo-new"));
    jet::Report report;
    QString kept;
    try {
        report = make(making.name(), path, helper);
        former.checkAlone();
        // Files from a read-only disc may still be write-protected.
        QFile::setPermissions(making.name(), info.permissions() | QFile::WriteOwner);
        setJournalAside(path); // the former format knows none
        kept = former.replaceBy(making.name(), QStringLiteral("former format"));
    } catch (const RuntimeError& error) {
        raise(error, info);
    }
    if (!report.isEmpty() && takeoverWatch().report)
        takeoverWatch().report(jet::words(report, info.fileName(), QFileInfo(kept).fileName()));
}

} // namespace orlo::store
