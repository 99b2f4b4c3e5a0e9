#include "platform/FileNames.h"

#include "platform/linux/SystemFailure.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <fcntl.h>
#include <unistd.h>

namespace orlo::platform
{

namespace
{

void flushPath(const QString& path, int flags)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), flags | O_RDONLY | O_CLOEXEC);
    check(descriptor >= 0);
    const auto close = qScopeGuard([descriptor] { ::close(descriptor); });
    flush(descriptor);
}

} // namespace

void flushFile(const QString& path)
{
    flushPath(path, 0);
}

bool addName(const QString& path, const QString& name)
{
    return ::link(QFile::encodeName(path).constData(), QFile::encodeName(name).constData()) == 0;
}

void takeName(const QString& path, const QString& name)
{
    check(::rename(QFile::encodeName(path).constData(), QFile::encodeName(name).constData()) == 0);
    flushPath(QFileInfo(name).path(), O_DIRECTORY);
}

} // namespace orlo::platform
