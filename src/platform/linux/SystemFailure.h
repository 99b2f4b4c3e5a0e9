#pragma once

#include "platform/RuntimeError.h"

#include <cerrno>

namespace orlo::platform
{

/// What a failed call of the operating system is to the program, by its errno; a file or folder that isn't there
/// differs by the call.
[[nodiscard]] int numberOfErrno(int code, int missing = PathNotFound);

/// Raises that number.
[[noreturn]] void raiseErrno(int code, int missing = PathNotFound);

/// Raises what errno says unless a call succeeded.
inline void check(bool done)
{
    if (!done)
        raiseErrno(errno);
}

/// Writes what the system holds of an open file or folder to the disk; not every volume knows how.
void flush(int descriptor);

} // namespace orlo::platform
