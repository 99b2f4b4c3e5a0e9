#include "platform/Memory.h"

#include <malloc.h>

namespace orlo::platform
{

void returnFreedMemory()
{
    _heapmin();
}

} // namespace orlo::platform
