#include "support/System.h"

#include "support/Main.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QTest>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <set>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

static int flushes = 0;
static int noFlush = 0; // the errno
static bool noLinks = false;
static std::set<ino_t> flushedFiles;
static QStringList putUnflushed;

static int flush(long call, int file)
{
    struct stat status {
    };
    if (::fstat(file, &status) == 0)
        S_ISDIR(status.st_mode) ? (void)++flushes : (void)flushedFiles.insert(status.st_ino);
    return noFlush != 0 ? (errno = noFlush, -1) : static_cast<int>(::syscall(call, file));
}

// Replaces the C library's function, also for SQLite.
extern "C" int fsync(int file)
{
    return flush(SYS_fsync, file);
}
extern "C" int fdatasync(int file)
{
    return flush(SYS_fdatasync, file);
}

extern "C" int rename(const char* from, const char* to)
{
    const QFileInfo moved(QString::fromUtf8(from));
    const QDir folder(moved.filePath());
    struct stat status {
    };
    for (const QFileInfo& file : moved.isDir() ? folder.entryInfoList(QDir::Files) : QFileInfoList{moved})
        if (::stat(file.filePath().toUtf8().constData(), &status) == 0 && flushedFiles.erase(status.st_ino) == 0)
            putUnflushed += QString::fromUtf8(to);
    return static_cast<int>(::syscall(SYS_rename, from, to));
}

extern "C" int link(const char* from, const char* to)
{
    return noLinks ? (errno = EPERM, -1) : static_cast<int>(::syscall(SYS_link, from, to));
}

extern "C" int fallocate(int file, int mode, off_t at, off_t size)
{
    return noLinks ? (errno = EOPNOTSUPP, -1) : static_cast<int>(::syscall(SYS_fallocate, file, mode, at, size));
}

// Data written after a flush isn't flushed.
static ssize_t isWritten(int file, ssize_t written)
{
    struct stat status {
    };
    if (written > 0 && ::fstat(file, &status) == 0)
        flushedFiles.erase(status.st_ino);
    return written;
}
extern "C" ssize_t write(int file, const void* from, size_t size)
{
    return isWritten(file, ::syscall(SYS_write, file, from, size));
}
extern "C" ssize_t pwrite64(int file, const void* from, size_t size, off64_t at)
{
    return isWritten(file, ::syscall(SYS_pwrite64, file, from, size, at));
}

static qint64 badFrom = 0;
static qint64 badTo = 0;

static bool isBad(qint64 at, size_t size)
{
    return at < badTo && at + qint64(size) > badFrom;
}

extern "C" ssize_t read(int file, void* to, size_t size)
{
    const qint64 at = badTo > 0 ? ::lseek(file, 0, SEEK_CUR) : -1;
    return at >= 0 && isBad(at, size) ? (errno = EIO, -1) : ::syscall(SYS_read, file, to, size);
}
extern "C" ssize_t pread64(int file, void* to, size_t size, off64_t at)
{
    return badTo > 0 && isBad(at, size) ? (errno = EIO, -1) : ::syscall(SYS_pread64, file, to, size, at);
}

static QMap<QByteArray, QStringList> entries; // of the system's log, by the row that made them

static QByteArray row()
{
    return QByteArray(QTest::currentTestFunction()) + ':' + QTest::currentDataTag();
}

extern "C" void syslog(int /*level*/, const char* format, ...)
{
    va_list values;
    va_start(values, format);
    entries[row()] += QString::fromUtf8(va_arg(values, const char*));
    va_end(values);
}
// The same where the compiler is told to check such calls.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" void __syslog_chk(int /*level*/, int /*checked*/, const char* format, ...)
{
    va_list values;
    va_start(values, format);
    syslog(0, format, va_arg(values, const char*));
    va_end(values);
}

namespace orlo::test
{

QStringList logged()
{
    return entries.take(row());
}

void failReads(qint64 from, qint64 to)
{
    badFrom = from;
    badTo = to;
}

void failLinks(bool fail)
{
    noLinks = fail;
}

void failFlushes(bool fail, int code)
{
    noFlush = fail ? code : 0;
}

int folderFlushes()
{
    return flushes;
}

QStringList putInPlaceUnflushed()
{
    return std::exchange(putUnflushed, {});
}

void limitFiles(qint64 most)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{most < 0 ? RLIM_INFINITY : static_cast<rlim_t>(most), RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &limit);
}

bool mountSmall(const QString& folder, qint64 bytes)
{
    const QByteArray place = QFile::encodeName(folder);
    if (bytes == 0)
        return ::umount(place.constData()) == 0;
    return ::mount("none", place.constData(), "tmpfs", 0, ("size=" + QByteArray::number(bytes)).constData()) == 0;
}

const char* const OtherJournal = "";

bool lockByte(QFile& file, qint64 at)
{
    struct flock range {
        F_WRLCK, SEEK_SET, at, 1, 0
    };
    return ::fcntl(file.handle(), F_OFD_SETLK, &range) == 0;
}

void endProgramsWithUs()
{
}

qint64 residentMemory()
{
    QFile pages(QStringLiteral("/proc/self/statm"));
    return pages.open(QIODevice::ReadOnly) ? pages.readAll().split(' ').value(1).toLongLong() * 4096 : 0;
}

void hide(const QString& /*folder*/)
{
}

Forbidden::Forbidden(const QString& file, What what) : m_file(file)
{
    QFile::setPermissions(QFileInfo(file).path(), QFile::Permissions(what == File ? 0x7777 : 0x5555));
    QFile::setPermissions(file, QFile::Permissions(what == File ? 0x4444 : 0x6666));
    if (getuid() == 0 && setresuid(65534, 65534, 0) != 0) // root could write everywhere
        fail(QStringLiteral("still root"));
}

Forbidden::~Forbidden()
{
    (void)!setresuid(0, 0, 0);
    QFile::setPermissions(QFileInfo(m_file).path(), QFile::Permissions(0x7700));
}

} // namespace orlo::test
