#include "platform/ProcessLimits.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <io.h>
#include <tlhelp32.h>

namespace orlo::platform
{

namespace
{

constexpr std::uint64_t Megabyte = 1 << 20;
constexpr std::uint64_t Second = 10'000'000; // in the system's ticks

DWORD parent()
{
    DWORD found = 0;
    const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W process{};
    process.dwSize = sizeof process;
    for (BOOL more = Process32FirstW(all, &process); more && found == 0; more = Process32NextW(all, &process))
        if (process.th32ProcessID == GetCurrentProcessId())
            found = process.th32ParentProcessID;
    CloseHandle(all);
    return found;
}

DWORD WINAPI endWith(void* program)
{
    WaitForSingleObject(program, INFINITE);
    TerminateProcess(GetCurrentProcess(), 1);
    return 0;
}

void endWithParent()
{
    if (const HANDLE program = OpenProcess(SYNCHRONIZE, FALSE, parent()))
        CloseHandle(CreateThread(nullptr, 0, endWith, program, 0, nullptr));
}

} // namespace

bool limitOurselves(const char* file)
{
    WIN32_FILE_ATTRIBUTE_DATA found{};
    if (!GetFileAttributesExA(file, GetFileExInfoStandard, &found)) // a UTF-8 name, by the manifest
        return false;
    const std::uint64_t size = std::uint64_t(found.nFileSizeHigh) << 32 | found.nFileSizeLow;
    _setmode(_fileno(stderr), _O_BINARY);                         // a line ends alike on all systems
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX); // a crash shows no box
    endWithParent();
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags =
        JOB_OBJECT_LIMIT_PROCESS_TIME | JOB_OBJECT_LIMIT_PROCESS_MEMORY | JOB_OBJECT_LIMIT_ACTIVE_PROCESS;
    limits.BasicLimitInformation.PerProcessUserTimeLimit.QuadPart =
        static_cast<LONGLONG>((5 + size / (2 * Megabyte)) * Second);
    limits.BasicLimitInformation.ActiveProcessLimit = 1;
    limits.ProcessMemoryLimit = 512 * Megabyte + 4 * size;
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    AssignProcessToJobObject(job, GetCurrentProcess());
    return true;
}

bool send(std::string_view bytes)
{
    while (!bytes.empty()) {
        constexpr std::size_t AtOnce = 1 << 20;
        DWORD written = 0;
        if (!WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), bytes.data(),
                       static_cast<DWORD>(std::min(bytes.size(), AtOnce)), &written, nullptr))
            return false;
        bytes.remove_prefix(written);
    }
    return true;
}

void leave(int status)
{
    // Leaving in order would end the libraries under the thread that waits for the parent.
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
    std::abort();
}

} // namespace orlo::platform
