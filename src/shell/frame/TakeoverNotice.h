#pragma once

namespace orlo
{

/// From here on the program tells about a file in the former format while it is taken over: how far it is, in the
/// window that is up, and what had no place in the new file, in one message once the main frame is there.
void watchTakeovers();

/// True while a file is being taken over and shows how far it is. The window system's events and timers run meanwhile;
/// what needs the open database waits.
[[nodiscard]] bool isTakeoverShown();

} // namespace orlo
