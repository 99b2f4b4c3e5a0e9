#include "jet/Output.h"

#include "platform/ProcessLimits.h"

#include <cstdio>

namespace orlo::jet
{

void fail(const std::string& reason)
{
    std::fprintf(stderr, "\norlo-jet: %s\n", reason.c_str());
    platform::leave(1);
}

void Output::flush()
{
    if (!platform::send(m_block))
        fail("The program doesn't take what was read.");
    m_block.clear();
}

} // namespace orlo::jet
