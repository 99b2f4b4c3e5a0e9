#pragma once

#include "platform/windows/SystemFailure.h"

#include <QString>

#include <string>

namespace orlo::platform
{

/// A path for the system's own calls, of any length.
[[nodiscard]] std::wstring systemPath(const QString& path);

/// An open file or folder, closed with the object; others may read, write and delete it meanwhile, or only what is
/// shared.
class Handle
{
public:
    Handle(const QString& path, DWORD access, DWORD disposition = OPEN_EXISTING, DWORD flags = 0,
           DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    /// False if it couldn't be opened; GetLastError() tells why.
    [[nodiscard]] bool isOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
    [[nodiscard]] HANDLE get() const { return m_handle; }
    void close();

private:
    HANDLE m_handle;
};

/// Renames a file on its volume, replacing a file of that name; on the disk when it returns. Waits for programs that
/// hold the old file open briefly, such as virus scanners. False on failure.
[[nodiscard]] bool renameOver(const QString& path, const QString& name);

} // namespace orlo::platform
