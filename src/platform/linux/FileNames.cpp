#include "platform/FileNames.h"

#include "platform/linux/SystemFailure.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QScopeGuard>

#include <array>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
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

// What identifies a file. Inode numbers are reused, so its time of birth counts, too.
using Identity = std::array<quint64, 5>;

std::optional<Identity> identityOf(const QString& path)
{
    struct statx found {
    };
    if (::statx(AT_FDCWD, QFile::encodeName(path).constData(), 0, STATX_INO | STATX_BTIME, &found) != 0 ||
        (found.stx_mask & STATX_BTIME) == 0)
        return std::nullopt;
    return Identity{found.stx_dev_major, found.stx_dev_minor, found.stx_ino,
                    static_cast<quint64>(found.stx_btime.tv_sec), found.stx_btime.tv_nsec};
}

QHash<QString, Identity> flushedNames;

} // namespace

void flushFile(const QString& path)
{
    flushPath(path, 0);
}

void flushFile(int descriptor)
{
    flush(descriptor);
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

void flushName(const QString& path)
{
    const auto file = identityOf(path);
    if (!file)
        return;
    try {
        flushPath(QFileInfo(path).path(), O_DIRECTORY);
        flushedNames.insert(path, *file);
    } catch (const RuntimeError&) {
        flushedNames.remove(path);
    }
}

bool isNameFlushed(const QString& path)
{
    const auto flushed = flushedNames.constFind(path);
    return flushed != flushedNames.cend() && identityOf(path) == *flushed;
}

} // namespace orlo::platform
