#pragma once

#include <string_view>

// What a helper process needs from the operating system. No Qt: the helper is built without it.
namespace orlo::platform
{

/// Limits the process's time and memory to what reading the file can need, forbids it to write files (on Linux) or to
/// start programs (on Windows), and ends it with the program that started it. False if the file doesn't exist.
[[nodiscard]] bool limitOurselves(const char* file);

/// Writes all bytes to the standard output; false once nobody reads it.
[[nodiscard]] bool send(std::string_view bytes);

/// Ends the process at once, without cleaning up.
[[noreturn]] void leave(int status);

} // namespace orlo::platform
