#pragma once

#include "platform/windows/SystemFailure.h"

#include <QString>

#include <functional>
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

enum class Denied { IsFinal, IsHeld };

/// Repeats an action that fails because another program holds the file, as a virus scanner does briefly, for up to two
/// seconds. Where an open file is reported as access denied, that counts as held, too. False if the action failed;
/// GetLastError() tells why.
[[nodiscard]] bool untilLetGo(const std::function<bool()>& action, Denied denied = Denied::IsFinal);

/// Renames a file on its volume, replacing a file of that name; on the disk when it returns. Waits for programs that
/// hold the old file open briefly. False on failure.
[[nodiscard]] bool renameOver(const QString& path, const QString& name);

} // namespace orlo::platform
