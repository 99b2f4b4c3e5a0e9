#include "platform/FileLock.h"

#include "platform/FileReplacement.h"
#include "platform/RuntimeError.h"
#include "platform/windows/Handle.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <array>
#include <optional>

namespace orlo::platform
{

namespace
{

constexpr int TurnMilliseconds = 2000;

// What identifies a file on this computer, and after that its state.
using Look = std::array<DWORD, 7>;
constexpr std::size_t IdentityLength = 3;

std::optional<Look> look(const Handle& file)
{
    BY_HANDLE_FILE_INFORMATION found{};
    if (!file.isOpen() || !GetFileInformationByHandle(file.get(), &found))
        return std::nullopt;
    return Look{found.dwVolumeSerialNumber,
                found.nFileIndexHigh,
                found.nFileIndexLow,
                found.nFileSizeHigh,
                found.nFileSizeLow,
                found.ftLastWriteTime.dwHighDateTime,
                found.ftLastWriteTime.dwLowDateTime};
}

// By name, and closed again at once: an open file couldn't be replaced by the process that has the lock.
std::optional<Look> lookAt(const QString& path)
{
    return look(Handle(path, FILE_READ_ATTRIBUTES));
}

// Taken by the path's processes one after the other; freed by the system if one is killed.
HANDLE turnOf(const QString& path)
{
    const QByteArray name = QCryptographicHash::hash(path.toCaseFolded().toUtf8(), QCryptographicHash::Sha256).toHex();
    return CreateMutexW(nullptr, FALSE,
                        (QStringLiteral("Local\\orlo-") + QString::fromLatin1(name)).toStdWString().c_str());
}

[[noreturn]] void raise(const QString& words, const QString& path)
{
    throw RuntimeError(CannotLockFile, QStringLiteral("FileSystem"), QStringLiteral("%1: %2").arg(words, path));
}

bool isLockedByOthers(const Handle& file)
{
    OVERLAPPED start{};
    constexpr DWORD All = ~DWORD(0);
    if (LockFileEx(file.get(), LOCKFILE_FAIL_IMMEDIATELY | LOCKFILE_EXCLUSIVE_LOCK, 0, All, All, &start)) {
        UnlockFileEx(file.get(), 0, All, All, &start);
        return false;
    }
    return GetLastError() == ERROR_LOCK_VIOLATION;
}

} // namespace

struct FileLock::Held {
    ~Held()
    {
        if (turn) {
            ReleaseMutex(turn);
            CloseHandle(turn);
        }
    }

    QString path;
    std::optional<Look> first; // of the file that had the name when the lock was asked for
    HANDLE turn = nullptr;
    std::optional<Handle> file;
    std::optional<Handle> lockFile;
};

// Nothing is opened yet: a program that has just replaced the file is about to open the new one to write.
FileLock::FileLock(const QString& path) : m_held(new Held)
{
    m_held->path = path;
    m_held->first = lookAt(path);
    const HANDLE turn = turnOf(QFileInfo(path).canonicalFilePath());
    const DWORD got =
        turn ? WaitForSingleObject(turn, TurnMilliseconds) : WAIT_OBJECT_0; // another user's may be refused
    if (got != WAIT_OBJECT_0 && got != WAIT_ABANDONED) {
        CloseHandle(turn);
        raise(QStringLiteral("Another program is using the file"), path);
    }
    m_held->turn = turn;
}

FileLock::~FileLock() = default;

// While the file is open here, no other program can open it to write, and none that has it open so lets it be opened.
void FileLock::keepOthersOut(const QString& lockFile)
{
    const auto open = [this] {
        m_held->file.emplace(m_held->path, GENERIC_READ, OPEN_EXISTING, 0, FILE_SHARE_READ | FILE_SHARE_DELETE);
        return m_held->file->isOpen();
    };
    if (!untilLetGo(open))
        raise(GetLastError() == ERROR_SHARING_VIOLATION ? QStringLiteral("Another program is using the file")
                                                        : QStringLiteral("The file can't be read"),
              m_held->path);
    // It exists only while another program uses the file, if at all.
    m_held->lockFile.emplace(lockFile, GENERIC_READ, OPEN_EXISTING, 0, FILE_SHARE_READ | FILE_SHARE_DELETE);
    if (!m_held->lockFile->isOpen() && GetLastError() == ERROR_SHARING_VIOLATION)
        raise(QStringLiteral("Another program is using the file"), m_held->path);
    checkAlone();
}

void FileLock::checkAlone() const
{
    const auto now = look(*m_held->file);
    if (isLockedByOthers(*m_held->file) || (m_held->lockFile && isLockedByOthers(*m_held->lockFile)))
        raise(QStringLiteral("Another program is using the file"), m_held->path);
    if (now != m_held->first) // some network volumes let everybody write
        raise(QStringLiteral("Another program has changed the file"), m_held->path);
}

// The name of an open file can't be taken, nor that of one with a mark against writing.
QString FileLock::replaceBy(const QString& finished, const QString& note)
{
    m_held->file.reset();
    QString former = m_held->path;
    const DWORD before = GetFileAttributesW(systemPath(former).c_str());
    if (before == INVALID_FILE_ATTRIBUTES || (before & FILE_ATTRIBUTE_READONLY) == 0)
        return putInPlace(former, finished, note);
    SetFileAttributesW(systemPath(former).c_str(), before & ~DWORD(FILE_ATTRIBUTE_READONLY));
    const auto markAgain = qScopeGuard([&] { SetFileAttributesW(systemPath(former).c_str(), before); });
    return former = putInPlace(m_held->path, finished, note);
}

bool FileLock::isOn(const QString& path) const
{
    const auto named = lookAt(path);
    return named && m_held->first &&
           std::equal(named->begin(), named->begin() + IdentityLength, m_held->first->begin());
}

} // namespace orlo::platform
