#include "platform/FileCopy.h"

#include "platform/linux/SystemFailure.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cstdio>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace orlo::platform
{

namespace
{

constexpr std::size_t CopyBlockSize = 1 << 20; // bytes
constexpr qint64 StatBlock = 512;              // bytes, the unit of st_blocks
constexpr mode_t ModeBits = 0777;
// The bytes that SQLite locks for whoever reads or changes a file, and how long to wait for them.
constexpr off_t SharedLocksAt = 0x40000002;
constexpr off_t SharedLocksLength = 510;
constexpr int CopyBusyMilliseconds = 2000;

// The volume can't hold another file; quotas excepted.
struct NoRoom : RuntimeError {
    NoRoom() : RuntimeError(DiskFull, QStringLiteral("FileSystem")) {}
};

[[noreturn]] void raise(int code, int missing = PathNotFound)
{
    if (code == ENOSPC)
        throw NoRoom();
    raiseErrno(code, missing);
}

void checkRoom(bool done)
{
    if (!done)
        raise(errno);
}

// An open file, closed with the object.
class Handle
{
public:
    explicit Handle(int descriptor) : m_descriptor(descriptor) {}
    ~Handle()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    [[nodiscard]] int get() const { return m_descriptor; }
    [[nodiscard]] struct stat status() const
    {
        struct stat found {
        };
        checkRoom(::fstat(m_descriptor, &found) == 0);
        return found;
    }
    // Some volumes report only at close that the data didn't fit.
    void close()
    {
        const int closing = std::exchange(m_descriptor, -1);
        checkRoom(::close(closing) == 0);
    }

private:
    int m_descriptor;
};

void writeAll(int descriptor, const char* data, std::size_t length)
{
    while (length > 0) {
        const ssize_t written = ::write(descriptor, data, length);
        if (written < 0 && errno == EINTR)
            continue;
        checkRoom(written > 0);
        data += written;
        length -= static_cast<std::size_t>(written);
    }
}

// Overwrites a file with the source's bytes and truncates it to the source's size.
void copyContents(const Handle& source, Handle& file)
{
    std::vector<char> block(CopyBlockSize);
    off_t size = 0;
    for (;;) {
        const ssize_t got = ::read(source.get(), block.data(), block.size());
        if (got < 0 && errno == EINTR)
            continue;
        checkRoom(got >= 0);
        if (got == 0)
            break;
        writeAll(file.get(), block.data(), static_cast<std::size_t>(got));
        size += got;
    }
    checkRoom(::ftruncate(file.get(), size) == 0);
    flush(file.get());
    file.close();
}

// Keeps other programs from changing a database file, or from using it at all, while it is open here. Waits for a
// change in progress: half a change must be neither copied nor overwritten.
void lock(int descriptor, short type)
{
    struct flock range {
    };
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = SharedLocksAt;
    range.l_len = SharedLocksLength;
    QDeadlineTimer deadline(CopyBusyMilliseconds);
    while (::fcntl(descriptor, F_OFD_SETLK, &range) != 0 && (errno == EAGAIN || errno == EACCES)) {
        if (deadline.hasExpired())
            raise(EACCES);
        QThread::msleep(10);
    } // A volume without locks has nothing to wait for
}

// A copy in progress: the source, the target, and the temporary name that the copy has until it is complete.
class Copy
{
public:
    Copy(const QString& source, const QString& target)
        : m_source(::open(QFile::encodeName(source).constData(), O_RDONLY | O_CLOEXEC)),
          m_old(::open(QFile::encodeName(target).constData(), O_RDWR | O_CLOEXEC)), m_target(QFile::encodeName(target)),
          m_part(QFile::encodeName(target + QStringLiteral(".part")))
    {
        if (m_source.get() < 0)
            raise(errno, FileNotFound);
        lock(m_source.get(), F_RDLCK);
        if (m_old.get() >= 0)
            lock(m_old.get(), F_WRLCK);
    }

    void beside()
    {
        const struct stat given = m_source.status();
        struct stat old {
        };
        const bool replaces = ::stat(m_target.constData(), &old) == 0;
        const mode_t mode = replaces ? old.st_mode : given.st_mode;
        Handle part(::open(m_part.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode & ModeBits));
        checkRoom(part.get() >= 0);
        try {
            // Reserve the space now; if the volume can't, writing will report it.
            if (given.st_size > 0 && ::fallocate(part.get(), 0, 0, given.st_size) != 0 &&
                numberOfErrno(errno) == DiskFull)
                raise(errno);
            (void)::fchmod(part.get(), mode & ModeBits); // volumes without permissions keep their own
            copyContents(m_source, part);
            checkRoom(::rename(m_part.constData(), m_target.constData()) == 0);
        } catch (...) {
            ::unlink(m_part.constData());
            throw;
        }
    }

    // Whether the copy fits if the old file's space is reused.
    [[nodiscard]] bool fitsInPlace() const
    {
        struct stat old {
        };
        struct statvfs volume {
        };
        if (::stat(m_target.constData(), &old) != 0 || ::statvfs(m_target.constData(), &volume) != 0)
            return false;
        const auto free = static_cast<qint64>(volume.f_bavail) * static_cast<qint64>(volume.f_frsize);
        return free + old.st_blocks * StatBlock >= m_source.status().st_size;
    }

    // The old file loses its name before its contents, so a partial copy never has that name.
    void inPlace()
    {
        checkRoom(::lseek(m_source.get(), 0, SEEK_SET) == 0);
        Handle part(::open(m_target.constData(), O_WRONLY | O_CLOEXEC));
        checkRoom(part.get() >= 0);
        checkRoom(::rename(m_target.constData(), m_part.constData()) == 0);
        try {
            copyContents(m_source, part);
            checkRoom(::rename(m_part.constData(), m_target.constData()) == 0);
        } catch (...) {
            ::unlink(m_part.constData());
            throw;
        }
    }

private:
    Handle m_source;
    Handle m_old; // the target's present file, if any
    QByteArray m_target;
    QByteArray m_part;
};

} // namespace

void copyOver(const QString& source, const QString& target)
{
    Copy copy(source, target);
    try {
        copy.beside();
    } catch (const NoRoom&) {
        if (!copy.fitsInPlace())
            throw;
        copy.inPlace();
    }
    const Handle folder(::open(QFile::encodeName(QFileInfo(target).path()).constData(), O_RDONLY | O_DIRECTORY));
    if (folder.get() >= 0)
        ::fsync(folder.get()); // the file itself is on the disk already
}

} // namespace orlo::platform
