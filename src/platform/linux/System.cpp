#include "platform/System.h"

#include <QSet>
#include <QStorageInfo>

#include <syslog.h>

namespace orlo::platform
{

std::optional<QString> registryValue(const QString& /*key*/, const QString& /*name*/)
{
    return std::nullopt; // no registry here
}

QString programName(const QString& program)
{
    return program;
}

QString moduleName(const QString& module)
{
    return module + QStringLiteral(".so");
}

bool lacksLibrary(int exitCode)
{
    return exitCode == 127;
}

const char* screenlessPlatform()
{
    return "offscreen";
}

void logError(const QString& text)
{
    openlog("orlo", LOG_PID, LOG_USER);
    // A line break would split the entry, and a percent sign would be read as a format.
    syslog(LOG_ERR, "%s", QString(text).replace(u'\r', u' ').replace(u'\n', u' ').toUtf8().constData());
    closelog();
}

bool holdsUserFiles(const QStorageInfo& volume)
{
    static const QSet<QByteArray> types{"autofs",   "bpf",      "cgroup",   "cgroup2", "configfs",   "debugfs",
                                        "devpts",   "devtmpfs", "efivarfs", "fusectl", "hugetlbfs",  "mqueue",
                                        "nsfs",     "proc",     "pstore",   "ramfs",   "rootfs",     "securityfs",
                                        "squashfs", "sysfs",    "tmpfs",    "tracefs", "binfmt_misc"};
    static const QSet<QByteArray> services{"fuse.gvfsd-fuse", "fuse.portal", "fuse.snapfuse", "fuse.lxcfs"};
    return !types.contains(volume.fileSystemType()) && !services.contains(volume.fileSystemType());
}

} // namespace orlo::platform
