#include "platform/Memory.h"

#include <malloc.h>

namespace orlo::platform
{

void returnFreedMemory()
{
    malloc_trim(0);
}

} // namespace orlo::platform
