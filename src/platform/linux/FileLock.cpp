#include "platform/FileLock.h"

#include "platform/RuntimeError.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

#include <cerrno>

#include <sys/file.h>
#include <sys/stat.h>

namespace orlo::platform
{

namespace
{

constexpr int BusyMilliseconds = 2000;
constexpr int LookEvery = 10; // ms

} // namespace

struct FileLock::Held {
    QFile file;
};

FileLock::FileLock(const QString& path) : m_held(new Held{QFile(path)})
{
    QFile& file = m_held->file;
    QDeadlineTimer deadline(BusyMilliseconds);
    bool open = file.open(QIODevice::ReadOnly);
    const QString words =
        open ? QStringLiteral("Another program is using the file") : QStringLiteral("The file can't be read");
    // The lock of a process that was ended lives on for a moment in a program that it was about to start.
    while (open && ::flock(file.handle(), LOCK_EX | LOCK_NB) != 0) {
        open = (errno == EWOULDBLOCK || errno == EINTR) && !deadline.hasExpired();
        QThread::msleep(LookEvery);
    }
    if (!open)
        throw RuntimeError(CannotLockFile, QStringLiteral("FileSystem"), QStringLiteral("%1: %2").arg(words, path));
}

FileLock::~FileLock() = default;

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
