#include "store/jet/Takeover.h"

#include "platform/Application.h"
#include "platform/FileLock.h"
#include "platform/FileReplacement.h"
#include "platform/RuntimeError.h"
#include "store/engine/Catalogue.h"
#include "store/engine/Connection.h"
#include "store/jet/HelperStream.h"
#include "store/jet/Import.h"
#include "store/jet/OpenFile.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

// The new file under the name that it has while it is being made; it goes away unless it takes the other's place.
class FileInTheMaking
{
public:
    explicit FileInTheMaking(const QString& file) : m_name(file + QStringLiteral(".new")) { remove(); }
    ~FileInTheMaking() { remove(); }
    FileInTheMaking(const FileInTheMaking&) = delete;
    FileInTheMaking& operator=(const FileInTheMaking&) = delete;

    [[nodiscard]] const QString& name() const { return m_name; }

private:
    void remove() const
    {
        QFile::remove(m_name);
        QFile::remove(m_name + QStringLiteral("-journal"));
    }

    QString m_name;
};

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
    // Nothing of it counts before it is whole, and then it is flushed as one.
    connection->run("PRAGMA journal_mode=MEMORY;PRAGMA synchronous=OFF");
    createQueryTexts(*connection);
    Database database(connection);
    jet::Report report =
        jet::import(stream, *connection, database, [&shown](int percent) { tellProgress(shown, percent); });
    database.close();
    return report;
}

bool isOurFailure(int number)
{
    return number == platform::DatabaseDamaged || number == platform::UnrecognisedFormat ||
           number == platform::DiskFull || number == platform::PermissionDenied || number == platform::PathFileAccess ||
           number == platform::CannotLockFile || number == platform::DeviceUnavailable;
}

} // namespace

void takeOver(const QString& file)
{
    const QString helper = platform::companionFile(QStringLiteral("orlo-jet"));
    if (helper.isEmpty())
        throw noReader();
    const QFileInfo info(QFileInfo(file).canonicalFilePath());
    const QString path = info.filePath();
    const platform::FileLock former(path);
    if (!former.isOn(path)) // another process has put the new file in its place
        return;
    const FileInTheMaking making(path);
    jet::Report report;
    try {
        report = make(making.name(), path, helper);
    } catch (const RuntimeError& error) {
        if (isOurFailure(error.number()))
            throw;
        throw jet::damaged(error.description());
    }
    // What comes from a disc that can't be written may still be marked so.
    QFile::setPermissions(making.name(), info.permissions() | QFile::WriteOwner);
    const QString kept = platform::putInPlace(path, making.name(), QStringLiteral("former format"));
    if (!report.isEmpty() && takeoverWatch().report)
        takeoverWatch().report(jet::words(report, info.fileName(), QFileInfo(kept).fileName()));
}

} // namespace orlo::store
