#include "store/upkeep/basDataUpdate.h"

#include "platform/FileSystem.h"
#include "shell/forms/Module1.h"
#include "store/copies/KeptCopies.h"
#include "store/engine/Journal.h"
#include "store/opening/OpenFile.h"
#include "widgets/Application.h"
#include "widgets/MessageBox.h"

#include <QFile>

namespace orlo
{

namespace
{

QByteArray contents(const QString& path)
{
    QFile file(platform::nativePath(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A killed run leaves half a change in the file, and a journal to undo it, which must be done before the safety copy.
// But if the safety copy was put back since, the journal belongs to the file that it replaced.
void settleJournal(const QString& path, const QString& safetyCopy)
{
    const QString native = platform::nativePath(path);
    if (!QFile::exists(native + QStringLiteral("-journal")) || !gFileSystem.fileExists(path))
        return;
    if (contents(path) == contents(safetyCopy))
        store::setJournalAside(native);
    else
        store::openFile(path).close();
}

} // namespace

bool UpdateDatabaseFile()
{
    const QString old = gAppPath + gOldDbName;
    const QString safetyCopy = gAppPath + QStringLiteral("\\QuorrelOld_10.mdb");
    widgets::message(QStringLiteral("The ORLO Database will now be updated to work with this new version of software."),
                     QStringLiteral("Update Database"));
    const widgets::BusyPointer busy;
    // The next start would make the safety copy of whatever a failure leaves behind. A copy that exists already may be
    // an older update's.
    widgets::setClosingWords(QStringLiteral("Nothing was changed."));
    settleJournal(old, safetyCopy);
    gFileSystem.copyFile(old, safetyCopy, true);
    if (!gFileSystem.fileExists(safetyCopy)) {
        widgets::setClosingWords(QString());
        return false;
    }
    widgets::setClosingWords(
        QStringLiteral("Before you start ORLO again, put QuorrelOld_10.mdb in the place of Quorrel.mdb."));
    openDatabase(old);
    // A failed update has left its mark, in the safety copy, too.
    if (database().tableNames().contains(QLatin1StringView("Den_Titles"), Qt::CaseInsensitive))
        widgets::setClosingWords(QString());
    // The safety copy is on the disk. Until the changed file is copied to the disk, too, flushing after every row would
    // only keep the user waiting.
    database().deferFlushing();
    ApplyUpdateSteps();
    database().close();
    store::keepCopyOf(databasePath());
    store::setJournalAside(platform::nativePath(databasePath())); // it belongs to the file being replaced
    gFileSystem.copyFile(old, databasePath(), true);
    if (!gFileSystem.fileExists(databasePath()))
        return false;
    openDatabase(databasePath());
    gFileSystem.deleteFile(old, false);
    widgets::setClosingWords(QString());
    gDbNeedsUpdate = false;
    return true;
}

void ApplyUpdateSteps()
{
    store::schema::migrations().front().run(database());
}

} // namespace orlo
