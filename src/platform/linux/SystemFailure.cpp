#include "platform/linux/SystemFailure.h"

#include <unistd.h>

namespace orlo::platform
{

int numberOfErrno(int code, int missing)
{
    switch (code) {
    case ENOENT:
    case ENOTDIR:
        return missing;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return DiskFull;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ETXTBSY:
        return PermissionDenied;
    case EIO:
    case ENODEV:
    case ENXIO:
    case ESTALE:
        return DeviceUnavailable;
    case ENOMEDIUM:
        return DiskNotReady;
    default:
        return PathFileAccess;
    }
}

void raiseErrno(int code, int missing)
{
    throw RuntimeError(numberOfErrno(code, missing), QStringLiteral("FileSystem"));
}

void flush(int descriptor)
{
    check(::fsync(descriptor) == 0 || errno == EINVAL || errno == ENOSYS);
}

} // namespace orlo::platform
