#pragma once

namespace orlo::platform
{

/// Gives the memory that was freed back to the system, which the allocator alone does only for the end of its heap.
/// Takes some milliseconds: for when much was freed at once.
void returnFreedMemory();

} // namespace orlo::platform
