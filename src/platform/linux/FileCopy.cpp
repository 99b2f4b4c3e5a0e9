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
// Where SQLite's locks lie, and how long one of them is waited for.
constexpr off_t LocksAt = 0x40000000;
constexpr off_t LocksLength = 512;
constexpr off_t SharedLocksAt = LocksAt + 2;
constexpr int CopyBusyMilliseconds = 2000;

// A volume without room for one file more, other than a limit that is set to this user.
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
    // Some volumes tell only now that what was written didn't fit.
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

// Writes the source's bytes over the file's own, and ends it where the source ends.
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

// Keeps other programs from changing a database file as long as it is open here, or from using it at all. One that is
// in the middle of a change is waited for a while; half a change must not be copied, nor be copied over.
void lock(int descriptor, short type)
{
    struct flock range {
    };
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = type == F_RDLCK ? SharedLocksAt : LocksAt;
    range.l_len = LocksAt + LocksLength - range.l_start;
    QDeadlineTimer deadline(CopyBusyMilliseconds);
    while (::fcntl(descriptor, F_OFD_SETLK, &range) != 0 && (errno == EAGAIN || errno == EACCES)) {
        if (deadline.hasExpired())
            raise(EACCES);
        QThread::msleep(10);
    } // a volume without locks has nobody to wait for
}

// One copy on its way: the source, the target, and the name beside the target that the copy bears until it is whole.
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
            // Asks for the room at once; where the volume can't say, writing will tell.
            if (given.st_size > 0 && ::fallocate(part.get(), 0, 0, given.st_size) != 0 &&
                numberOfErrno(errno) == DiskFull)
                raise(errno);
            (void)::fchmod(part.get(), mode & ModeBits); // a volume without such rights keeps its own
            copyContents(m_source, part);
            checkRoom(::rename(m_part.constData(), m_target.constData()) == 0);
        } catch (...) {
            ::unlink(m_part.constData());
            throw;
        }
    }

    // Whether the copy fits once the old file's room counts as free.
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

    // The old file gives up its name before its contents, so that half a copy never stands under it.
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
    Handle m_old; // what the target names so far, if it is there
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
        ::fsync(folder.get()); // the file itself is safe by now
}

} // namespace orlo::platform
