#include "platform/FileCopy.h"

#include "platform/windows/Handle.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QThread>

#include <vector>

namespace orlo::platform
{

namespace
{

constexpr DWORD CopyBlockSize = 1 << 20; // bytes
constexpr DWORD KeptAttributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE;
// Where SQLite's locks lie, and how long one of them is waited for.
constexpr DWORD LocksAt = 0x40000000;
constexpr DWORD LocksLength = 512;
constexpr DWORD SharedLocksAt = LocksAt + 2;
constexpr int CopyBusyMilliseconds = 2000;

// A volume without room for one file more, other than a limit that is set to this user.
struct NoRoom : RuntimeError {
    NoRoom() : RuntimeError(DiskFull, QStringLiteral("FileSystem")) {}
};

[[noreturn]] void raiseCopy(DWORD code, int missing = PathNotFound)
{
    if (code == ERROR_DISK_FULL || code == ERROR_HANDLE_DISK_FULL)
        throw NoRoom();
    raiseCode(code, missing);
}

void checkRoom(bool done)
{
    if (!done)
        raiseCopy(GetLastError());
}

void writeAll(HANDLE file, const char* data, DWORD length)
{
    while (length > 0) {
        DWORD written = 0;
        checkRoom(WriteFile(file, data, length, &written, nullptr));
        data += written;
        length -= written;
    }
}

qint64 sizeOf(const Handle& file)
{
    LARGE_INTEGER size{};
    checkRoom(GetFileSizeEx(file.get(), &size));
    return size.QuadPart;
}

// Asks for the source's room at once, if the file has less; where the volume can't say, writing will tell.
void reserve(const Handle& source, const Handle& file)
{
    FILE_ALLOCATION_INFO room{};
    room.AllocationSize.QuadPart = sizeOf(source);
    if (room.AllocationSize.QuadPart > sizeOf(file) &&
        !SetFileInformationByHandle(file.get(), FileAllocationInfo, &room, sizeof room))
        checkRoom(numberOfCode(GetLastError()) != DiskFull);
}

// Writes the source's bytes over the file's own, and ends it where the source ends.
void copyContents(const Handle& source, Handle& file)
{
    checkRoom(SetFilePointerEx(source.get(), {}, nullptr, FILE_BEGIN));
    reserve(source, file);
    std::vector<char> block(CopyBlockSize);
    for (;;) {
        DWORD got = 0;
        checkRoom(ReadFile(source.get(), block.data(), CopyBlockSize, &got, nullptr));
        if (got == 0)
            break;
        writeAll(file.get(), block.data(), got);
    }
    checkRoom(SetEndOfFile(file.get()));
    checkRoom(FlushFileBuffers(file.get()));
    file.close();
}

// Keeps other programs from changing a database file as long as it is open here, or from using it at all. One that is
// in the middle of a change is waited for a while; half a change must not be copied, nor be copied over.
void lock(HANDLE file, bool alone)
{
    OVERLAPPED range{};
    range.Offset = alone ? LocksAt : SharedLocksAt;
    const DWORD length = LocksAt + LocksLength - range.Offset;
    const DWORD kind = LOCKFILE_FAIL_IMMEDIATELY | (alone ? LOCKFILE_EXCLUSIVE_LOCK : 0);
    const QDeadlineTimer deadline(CopyBusyMilliseconds);
    while (!LockFileEx(file, kind, 0, length, 0, &range) && GetLastError() == ERROR_LOCK_VIOLATION) {
        if (deadline.hasExpired())
            raiseCopy(ERROR_LOCK_VIOLATION);
        QThread::msleep(10);
    } // a volume without locks has nobody to wait for
}

// One copy on its way: the source, the target, and the name beside the target that the copy bears until it is whole.
class Copy
{
public:
    Copy(const QString& source, const QString& target)
        : m_source(source, GENERIC_READ), m_sourceError(GetLastError()), m_old(target, GENERIC_READ | GENERIC_WRITE),
          m_target(target), m_part(target + QStringLiteral(".part")),
          m_attributes(GetFileAttributesW(systemPath(QFileInfo::exists(target) ? target : source).c_str()))
    {
        if (!m_source.isOpen())
            raiseCopy(m_sourceError, FileNotFound);
        lock(m_source.get(), false);
        if (m_old.isOpen())
            lock(m_old.get(), true);
    }

    void beside()
    {
        Handle part(m_part, GENERIC_WRITE, CREATE_ALWAYS);
        checkRoom(part.isOpen());
        fill(part);
    }

    // Whether the copy fits once the old file's room counts as free.
    [[nodiscard]] bool fitsInPlace() const
    {
        FILE_STANDARD_INFO old{};
        ULARGE_INTEGER free{};
        if (!m_old.isOpen() || !GetFileInformationByHandleEx(m_old.get(), FileStandardInfo, &old, sizeof old) ||
            !GetDiskFreeSpaceExW(systemPath(QFileInfo(m_target).path()).c_str(), &free, nullptr, nullptr))
            return false;
        return static_cast<qint64>(free.QuadPart) + old.AllocationSize.QuadPart >= sizeOf(m_source);
    }

    // The old file gives up its name before its contents, so that half a copy never stands under it.
    void inPlace()
    {
        reserve(m_source, m_old); // while a refusal costs nothing
        checkRoom(renameOver(m_target, m_part));
        fill(m_old);
    }

private:
    // Makes the part the whole copy and gives it the target's name; nothing is left of one that fails.
    void fill(Handle& part)
    {
        try {
            copyContents(m_source, part);
            m_old.close(); // nothing takes the place of an open file
            SetFileAttributesW(systemPath(m_part).c_str(), m_attributes & KeptAttributes);
            checkRoom(renameOver(m_part, m_target));
        } catch (...) {
            part.close();
            DeleteFileW(systemPath(m_part).c_str());
            throw;
        }
    }

    Handle m_source;
    DWORD m_sourceError;
    Handle m_old; // what the target names so far, if it is there
    QString m_target;
    QString m_part;
    DWORD m_attributes; // those of the target, of the source where there is none
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
}

} // namespace orlo::platform
