#include "platform/FileLock.h"

#include "platform/FileReplacement.h"
#include "platform/RuntimeError.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace orlo::platform
{

namespace
{

constexpr int BusyMilliseconds = 2000;
constexpr int LookEvery = 10; // ms

// All bytes, up to whatever the end will be.
struct flock everything(short type)
{
    struct flock range {
    };
    range.l_type = type;
    range.l_whence = SEEK_SET;
    return range;
}

bool isLockedByOthers(const QFile& file)
{
    struct flock found = everything(F_WRLCK);
    return file.isOpen() && ::fcntl(file.handle(), F_OFD_GETLK, &found) == 0 && found.l_type != F_UNLCK;
}

[[noreturn]] void raise(const QString& words, const QString& path)
{
    throw RuntimeError(CannotLockFile, QStringLiteral("FileSystem"), QStringLiteral("%1: %2").arg(words, path));
}

} // namespace

struct FileLock::Held {
    QFile file;
    QFile lockFile;
    struct stat status; // the file's state when other programs were first checked for
};

FileLock::FileLock(const QString& path) : m_held(new Held{QFile(path), QFile(), {}})
{
    QFile& file = m_held->file;
    QDeadlineTimer deadline(BusyMilliseconds);
    bool open = file.open(QIODevice::ReadOnly);
    const QString words =
        open ? QStringLiteral("Another program is using the file") : QStringLiteral("The file can't be read");
    // A killed process's lock survives briefly in a program it was just starting.
    while (open && ::flock(file.handle(), LOCK_EX | LOCK_NB) != 0) {
        open = (errno == EWOULDBLOCK || errno == EINTR) && !deadline.hasExpired();
        QThread::msleep(LookEvery);
    }
    if (!open)
        raise(words, path);
}

FileLock::~FileLock() = default;

void FileLock::keepOthersOut(const QString& lockFile)
{
    m_held->lockFile.setFileName(lockFile);
    (void)m_held->lockFile.open(QIODevice::ReadOnly); // it exists only while another program uses the file, if at all
    ::fstat(m_held->file.handle(), &m_held->status);
    checkAlone();
    struct flock ours = everything(F_RDLCK);
    for (const QFile* file : {&m_held->file, &m_held->lockFile})
        if (file->isOpen())
            (void)::fcntl(file->handle(), F_OFD_SETLK, &ours);
    checkAlone();
}

void FileLock::checkAlone() const
{
    const auto& [file, lockFile, before] = *m_held;
    if (isLockedByOthers(file) || isLockedByOthers(lockFile))
        raise(QStringLiteral("Another program is using the file"), file.fileName());
    struct stat now {
    };
    if (::fstat(file.handle(), &now) != 0 || now.st_size != before.st_size ||
        now.st_mtim.tv_sec != before.st_mtim.tv_sec || now.st_mtim.tv_nsec != before.st_mtim.tv_nsec)
        raise(QStringLiteral("Another program has changed the file"), file.fileName());
}

QString FileLock::replaceBy(const QString& finished, const QString& note)
{
    return putInPlace(m_held->file.fileName(), finished, note);
}

bool FileLock::isOn(const QString& path) const
{
    struct stat ours {
    };
    struct stat named {
    };
    return ::fstat(m_held->file.handle(), &ours) == 0 && ::stat(QFile::encodeName(path).constData(), &named) == 0 &&
           ours.st_ino == named.st_ino && ours.st_dev == named.st_dev;
}

} // namespace orlo::platform
