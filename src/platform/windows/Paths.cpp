#include "platform/FileSystem.h"
#include "platform/windows/Handle.h"

#include <QDir>

namespace orlo::platform
{

// The system itself accepts both separators and ignores case.
QString nativePath(const QString& path)
{
    return path.isEmpty() ? path : QDir::cleanPath(QDir::fromNativeSeparators(path));
}

bool isWithin(const QString& path, const QString& folder)
{
    return path.compare(folder, Qt::CaseInsensitive) == 0 ||
           path.startsWith(folder.endsWith(u'/') ? folder : folder + u'/', Qt::CaseInsensitive);
}

// Only opening a folder tells; a file merely has its read-only attribute checked.
bool isWritable(const QString& path)
{
    return untilLetGo(
        [&] { return Handle(path, FILE_WRITE_DATA, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS).isOpen(); });
}

} // namespace orlo::platform
