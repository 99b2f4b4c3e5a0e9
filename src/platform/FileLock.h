#pragma once

#include <QString>

#include <memory>

namespace orlo::platform
{

/// Locks a file against other processes that use this class, for as long as the object lives. Needs no right to write
/// the file.
class FileLock
{
public:
    /// Waits up to two seconds for a process that holds the lock. A native path. Raises 3050.
    explicit FileLock(const QString& path);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Checks that no other program has locked any byte of the file, or of the lock file that such programs use
    /// instead, and keeps them out from now on. Volumes without such locks count as unlocked. Raises 3050.
    void keepOthersOut(const QString& lockFile);
    /// Raises 3050 if another program has locked a byte or changed the file since.
    void checkAlone() const;
    /// Puts a finished file in the locked one's place as putInPlace() does; that one keeps its mark against writing.
    /// From then on only processes that use this class are kept out. Raises 61, 68, 70 or 75.
    [[nodiscard]] QString replaceBy(const QString& finished, const QString& note);

    /// False once the path names a file other than the locked one.
    [[nodiscard]] bool isOn(const QString& path) const;

private:
    struct Held;
    std::unique_ptr<Held> m_held;
};

} // namespace orlo::platform
