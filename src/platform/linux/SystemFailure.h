#pragma once

#include "platform/RuntimeError.h"

#include <cerrno>

namespace orlo::platform
{

/// The program's failure number for an errno. Which number a missing file or folder gets depends on the call.
[[nodiscard]] int numberOfErrno(int code, int missing = PathNotFound);

/// Raises that number.
[[noreturn]] void raiseErrno(int code, int missing = PathNotFound);

/// Raises the number of errno if a call failed.
inline void check(bool done)
{
    if (!done)
        raiseErrno(errno);
}

/// Flushes an open file or folder to the disk, if the volume supports it.
void flush(int descriptor);

} // namespace orlo::platform
