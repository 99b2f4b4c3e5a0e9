#include "jet/Output.h"

#include <cstdio>

#include <unistd.h>

namespace orlo::jet
{

void fail(const std::string& reason)
{
    std::fprintf(stderr, "\norlo-jet: %s\n", reason.c_str());
    _exit(1); // nothing that the library holds is worth giving back
}

void Output::flush()
{
    if (m_block.size() > m_left)
        fail("The file would grow without end.");
    m_left -= m_block.size();
    std::string_view rest = m_block;
    while (!rest.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, rest.data(), rest.size());
        if (written <= 0)
            fail("The program doesn't take what was read.");
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
    m_block.clear();
}

} // namespace orlo::jet
