#include "platform/FileReplacement.h"

#include "platform/FileCopy.h"
#include "platform/RuntimeError.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace orlo::platform
{

namespace
{

void check(int result)
{
    if (result != 0)
        throw RuntimeError(errno == ENOSPC || errno == EDQUOT ? DiskFull
                           : errno == EIO                     ? PathFileAccess
                                                              : PermissionDenied,
                           QStringLiteral("FileSystem"));
}

void flush(const QString& path, int flags)
{
    const int handle = ::open(QFile::encodeName(path).constData(), flags | O_RDONLY | O_CLOEXEC);
    check(handle < 0 ? -1 : 0);
    const int result = ::fsync(handle);
    ::close(handle);
    check(result);
}

QString freeName(const QFileInfo& file, const QString& note)
{
    const QString suffix = file.suffix().isEmpty() ? QString() : u'.' + file.suffix();
    for (int number = 1;; ++number) {
        const QString words = number == 1 ? note : QStringLiteral("%1 %2").arg(note).arg(number);
        QString name = QStringLiteral("%1/%2 (%3)%4").arg(file.path(), file.completeBaseName(), words, suffix);
        if (!QFileInfo::exists(name))
            return name;
    }
}

} // namespace

QString putInPlace(const QString& path, const QString& finished, const QString& note)
{
    const QFileInfo file(path);
    const QString kept = freeName(file, note);
    flush(finished, 0);
    const QByteArray name = QFile::encodeName(path);
    // A second name for the old file first, or a copy where the volume knows no second names.
    if (::link(name.constData(), QFile::encodeName(kept).constData()) != 0)
        copyOver(path, kept);
    check(::rename(QFile::encodeName(finished).constData(), name.constData()));
    flush(file.path(), O_DIRECTORY);
    return kept;
}

} // namespace orlo::platform
