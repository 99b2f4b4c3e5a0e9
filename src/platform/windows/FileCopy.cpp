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
// Where SQLite puts its locks, and how long to wait for one.
constexpr DWORD LocksAt = 0x40000000;
constexpr DWORD LocksLength = 512;
constexpr DWORD SharedLocksAt = LocksAt + 2;
constexpr int CopyBusyMilliseconds = 2000;

// The volume can't hold another file; quotas excepted.
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

// Reserves the source's size for the file; if the volume can't, writing will report it.
void reserve(const Handle& source, const Handle& file)
{
    FILE_ALLOCATION_INFO room{};
    room.AllocationSize.QuadPart = sizeOf(source);
    if (room.AllocationSize.QuadPart > sizeOf(file) &&
        !SetFileInformationByHandle(file.get(), FileAllocationInfo, &room, sizeof room))
        checkRoom(numberOfCode(GetLastError()) != DiskFull);
}

// Overwrites a file with the source's bytes and truncates it to the source's size.
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
    checkRoom(flush(file.get()));
    file.close();
}

// Keeps other programs from changing a database file, or from using it at all, while it is open here. Waits for a
// change in progress: half a change must be neither copied nor overwritten.
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
    } // A volume without locks has nothing to wait for
}

// A copy in progress: the source, the target, and the temporary name that the copy has until it is complete.
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

    // Whether the copy fits if the old file's space is reused.
    [[nodiscard]] bool fitsInPlace() const
    {
        FILE_STANDARD_INFO old{};
        ULARGE_INTEGER free{};
        if (!m_old.isOpen() || !GetFileInformationByHandleEx(m_old.get(), FileStandardInfo, &old, sizeof old) ||
            !GetDiskFreeSpaceExW(systemPath(QFileInfo(m_target).path()).c_str(), &free, nullptr, nullptr))
            return false;
        return static_cast<qint64>(free.QuadPart) + old.AllocationSize.QuadPart >= sizeOf(m_source);
    }

    // The old file loses its name before its contents, so a partial copy never has that name.
    void inPlace()
    {
        reserve(m_source, m_old); // nothing is lost yet if this fails
        checkRoom(renameOver(m_target, m_part));
        fill(m_old);
    }

private:
    // Fills the temporary file and renames it to the target; removes it on failure.
    void fill(Handle& part)
    {
        try {
            copyContents(m_source, part);
            m_old.close(); // an open file can't be replaced
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
    Handle m_old; // the target's present file, if any
    QString m_target;
    QString m_part;
    DWORD m_attributes; // the target's attributes, or the source's without a target
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
