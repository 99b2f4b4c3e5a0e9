#pragma once

namespace orlo
{

/// From here on the program tells about a file in the former format while it is taken over: how far it is, in the
/// window that is up, and what had no place in the new file, in one message once the main frame is there.
void watchTakeovers();

} // namespace orlo
