#include "store/jet/Takeover.h"

#include "platform/FileReplacement.h"
#include "platform/RuntimeError.h"
#include "store/engine/Catalogue.h"
#include "store/engine/Connection.h"
#include "store/jet/HelperStream.h"
#include "store/jet/Import.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QThread>

#include <cerrno>

#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

constexpr int BusyMilliseconds = 2000;
constexpr char Signature[] = {0, 1, 0, 0, 'S', 't', 'a', 'n', 'd', 'a', 'r', 'd', ' ', 'J', 'e', 't', ' ', 'D', 'B'};

QString note()
{
    return QStringLiteral("former format");
}

TakeoverWatch& watcher()
{
    static TakeoverWatch watch;
    return watch;
}

// The file that is taken over, locked against another process that would do the same.
class FormerFile
{
public:
    explicit FormerFile(const QString& path) : m_file(path)
    {
        QDeadlineTimer patience(BusyMilliseconds);
        bool locked = m_file.open(QIODevice::ReadOnly);
        // The lock of a process that was ended lives on for a moment in the reader that it was about to start.
        while (locked && ::flock(m_file.handle(), LOCK_EX | LOCK_NB) != 0) {
            locked = errno == EWOULDBLOCK && !patience.hasExpired();
            QThread::msleep(10);
        }
        if (!locked)
            throw RuntimeError(platform::CannotLockFile, QStringLiteral("Database"));
    }

    // False once another process has put the new file in its place.
    [[nodiscard]] bool isStill(const QString& path) const
    {
        struct stat ours {
        };
        struct stat named {
        };
        return ::fstat(m_file.handle(), &ours) == 0 && ::stat(QFile::encodeName(path).constData(), &named) == 0 &&
               ours.st_ino == named.st_ino && ours.st_dev == named.st_dev;
    }

private:
    QFile m_file;
};

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

// A process that ended right before the exchange of names left the old file with both of them.
void removeSecondNames(const FormerFile& former, const QFileInfo& file)
{
    const QStringList names = file.dir().entryList(QDir::Files | QDir::Hidden);
    for (const QString& name : names)
        if (name.startsWith(QStringLiteral("%1 (%2").arg(file.completeBaseName(), note())) &&
            former.isStill(file.dir().filePath(name)))
            QFile::remove(file.dir().filePath(name));
}

void tellProgress(const QString& file, int percent)
{
    if (watcher().progress)
        watcher().progress(file, percent);
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
    return number == platform::DatabaseDamaged || number == platform::DiskFull ||
           number == platform::PermissionDenied || number == platform::PathFileAccess ||
           number == platform::CannotLockFile;
}

} // namespace

void setTakeoverWatch(TakeoverWatch watch)
{
    watcher() = std::move(watch);
}

bool isFormerFormat(const QString& file)
{
    QFile opened(file);
    return QFileInfo(file).isFile() && opened.open(QIODevice::ReadOnly) &&
           opened.read(sizeof Signature) == QByteArrayView(Signature, sizeof Signature);
}

void takeOver(const QString& file)
{
    const QString helper = jet::helperProgram();
    if (helper.isEmpty())
        throw RuntimeError(platform::UnrecognisedFormat, QStringLiteral("Database"));
    const QFileInfo info(QFileInfo(file).canonicalFilePath());
    const QString path = info.filePath();
    const FormerFile former(path);
    if (!former.isStill(path))
        return;
    removeSecondNames(former, info);
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
    const QString kept = platform::putInPlace(path, making.name(), note());
    if (!report.isEmpty() && watcher().told)
        watcher().told(jet::words(report, info.fileName(), QFileInfo(kept).fileName()));
}

} // namespace orlo::store
