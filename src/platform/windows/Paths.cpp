#include "platform/FileSystem.h"
#include "platform/windows/Handle.h"

#include <QDir>

namespace orlo::platform
{

// The system itself takes both separators and finds names without regard to case.
QString nativePath(const QString& path)
{
    return path.isEmpty() ? path : QDir::cleanPath(QDir::fromNativeSeparators(path));
}

bool isWithin(const QString& path, const QString& folder)
{
    return path.compare(folder, Qt::CaseInsensitive) == 0 ||
           path.startsWith(folder.endsWith(u'/') ? folder : folder + u'/', Qt::CaseInsensitive);
}

// Only opening tells: of a folder there is nothing else to ask, of a file just whether it is marked.
bool isWritable(const QString& path)
{
    return Handle(path, FILE_WRITE_DATA, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS).isOpen();
}

} // namespace orlo::platform
