#pragma once

namespace orlo
{

/// From now on, shows the progress of takeovers in the visible window, and afterwards, once the main window is there,
/// one message with what had no place in the new file.
void watchTakeovers();

/// True while the progress of a takeover is shown. Window events and timers run meanwhile; whatever needs the open
/// database must wait.
[[nodiscard]] bool isTakeoverShown();

} // namespace orlo
