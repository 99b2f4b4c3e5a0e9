#include "platform/windows/SystemFailure.h"

namespace orlo::platform
{

namespace
{
constexpr DWORD QuotaExceeded = 1295; // not named in the compiler's headers
} // namespace

int numberOfCode(DWORD code, int missing)
{
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
        return missing;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case QuotaExceeded:
    case ERROR_FILE_TOO_LARGE:
        return DiskFull;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_DELETE_PENDING:
        return PermissionDenied;
    case ERROR_CRC:
    case ERROR_SEEK:
    case ERROR_SECTOR_NOT_FOUND:
    case ERROR_WRITE_FAULT:
    case ERROR_READ_FAULT:
    case ERROR_GEN_FAILURE:
    case ERROR_IO_DEVICE:
    case ERROR_BAD_NETPATH:
    case ERROR_DEV_NOT_EXIST:
    case ERROR_UNEXP_NET_ERR:
    case ERROR_NETNAME_DELETED:
    case ERROR_DEVICE_NOT_CONNECTED:
        return DeviceUnavailable;
    case ERROR_NOT_READY:
    case ERROR_NO_MEDIA_IN_DRIVE:
        return DiskNotReady;
    default:
        return PathFileAccess;
    }
}

void raiseCode(DWORD code, int missing)
{
    throw RuntimeError(numberOfCode(code, missing), QStringLiteral("FileSystem"));
}

bool flush(HANDLE file)
{
    if (FlushFileBuffers(file))
        return true;
    const DWORD code = GetLastError();
    return code == ERROR_INVALID_FUNCTION || code == ERROR_NOT_SUPPORTED;
}

} // namespace orlo::platform
