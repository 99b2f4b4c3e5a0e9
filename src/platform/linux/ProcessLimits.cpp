#include "platform/ProcessLimits.h"

#include <cerrno>
#include <csignal>
#include <cstdint>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlo::platform
{

namespace
{

constexpr std::uint64_t Megabyte = 1 << 20;

void limit(int resource, rlim_t most)
{
    const rlimit limits{most, most};
    setrlimit(static_cast<__rlimit_resource>(resource), &limits);
}

} // namespace

bool limitOurselves(const char* file)
{
    struct stat status {
    };
    if (::stat(file, &status) != 0)
        return false;
    const auto size = static_cast<std::uint64_t>(status.st_size);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);
    limit(RLIMIT_CPU, 5 + size / (2 * Megabyte));
#ifndef __SANITIZE_ADDRESS__ // it reserves more address space than there is memory
    limit(RLIMIT_AS, 512 * Megabyte + 4 * size);
#endif
    return true;
}

bool send(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

void leave(int status)
{
    _exit(status);
}

} // namespace orlo::platform
