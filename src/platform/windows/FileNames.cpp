#include "platform/FileNames.h"

#include "platform/windows/Handle.h"

#include <io.h>

namespace orlo::platform
{

void flushFile(const QString& path)
{
    const Handle file(path, GENERIC_WRITE);
    check(file.isOpen() && flush(file.get()));
}

void flushFile(int descriptor)
{
    check(flush(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor))));
}

bool addName(const QString& path, const QString& name)
{
    return CreateHardLinkW(systemPath(name).c_str(), systemPath(path).c_str(), nullptr) != 0;
}

void takeName(const QString& path, const QString& name)
{
    check(renameOver(path, name));
}

void flushName(const QString& /*path*/)
{
}

bool isNameFlushed(const QString& /*path*/)
{
    return false; // nobody will ask for another flush
}

} // namespace orlo::platform
