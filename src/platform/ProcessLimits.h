#pragma once

#include <cstdint>
#include <string_view>

// What a helper process asks of the operating system. Without Qt, which such a process does without.
namespace orlo::platform
{

/// Limits the time and the memory that the process may use to what reading the file can need, keeps it from writing
/// files, and lets it end with the program that started it. Returns how many bytes it may send; 0 if there is no such
/// file.
[[nodiscard]] std::uint64_t limitOurselves(const char* file);

/// Writes all of it to the standard output; false once nobody takes it.
[[nodiscard]] bool send(std::string_view bytes);

/// Ends the process at once: nothing that the library holds is worth giving back.
[[noreturn]] void leave(int status);

} // namespace orlo::platform
