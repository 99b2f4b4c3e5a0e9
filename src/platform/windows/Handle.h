#pragma once

#include "platform/windows/SystemFailure.h"

#include <QString>

#include <string>

namespace orlo::platform
{

/// A path as the system's own calls take it, of any length.
[[nodiscard]] std::wstring systemPath(const QString& path);

/// An open file or folder, closed with the object; others may read, write and remove it meanwhile.
class Handle
{
public:
    Handle(const QString& path, DWORD access, DWORD disposition = OPEN_EXISTING, DWORD flags = 0);
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    /// False where it couldn't be opened; GetLastError() tells why.
    [[nodiscard]] bool isOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
    [[nodiscard]] HANDLE get() const { return m_handle; }
    void close();

private:
    HANDLE m_handle;
};

/// Gives a file another name of the same volume, in the place of the file of that name; on the disk when it returns.
/// What holds that file open for a moment, as virus scanners do, is waited for. False where it fails.
[[nodiscard]] bool renameOver(const QString& path, const QString& name);

} // namespace orlo::platform
