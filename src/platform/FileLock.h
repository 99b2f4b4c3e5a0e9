#pragma once

#include <QString>

#include <memory>

namespace orlo::platform
{

/// Keeps other processes that lock the same file away from it for as long as the object lives; it needs no right to
/// write the file. Linux only: nothing on Windows asks for it.
class FileLock
{
public:
    /// Waits up to two seconds for a process that has it. A native path. Raises 3050.
    explicit FileLock(const QString& path);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Asks whether another program has locked any byte of the file, or of the one that programs lock in its stead, and
    /// keeps from now on whoever wants to. On volumes that know no such locks nobody is asked. Raises 3050.
    void keepOthersOut(const QString& lockFile);
    /// Raises 3050 if another program has locked a byte since then, or has changed the file.
    void checkAlone() const;

    /// False once the path names another file than the locked one.
    [[nodiscard]] bool isOn(const QString& path) const;

private:
    struct Held;
    std::unique_ptr<Held> m_held;
};

} // namespace orlo::platform
