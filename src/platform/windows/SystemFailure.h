#pragma once

#include "platform/RuntimeError.h"

#include <windows.h>

namespace orlo::platform
{

/// What a failed call of the operating system is to the program, by the system's error code; a file or folder that
/// isn't there differs by the call.
[[nodiscard]] int numberOfCode(DWORD code, int missing = PathNotFound);

/// Raises that number.
[[noreturn]] void raiseCode(DWORD code, int missing = PathNotFound);

/// Raises what the system says unless a call succeeded.
inline void check(bool done)
{
    if (!done)
        raiseCode(GetLastError());
}

/// Flushes an open file to the disk; false on failure. A volume that knows no flush refuses nothing.
[[nodiscard]] bool flush(HANDLE file);

} // namespace orlo::platform
