#include "platform/FileSystem.h"

#include <QDir>
#include <QFileInfo>

namespace orlo::platform
{

namespace
{

// The folder's entry of this name, the exact spelling preferred; the name itself if there is none.
QString matchingEntry(const QString& folder, const QString& name)
{
    if (QFileInfo::exists(folder + u'/' + name))
        return name;
    const auto entries = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
    for (const QString& entry : entries)
        if (entry.compare(name, Qt::CaseInsensitive) == 0)
            return entry;
    return name;
}

} // namespace

QString nativePath(const QString& path)
{
    // Here a backslash may be part of a folder's name: keep such folders as they are.
    qsizetype known = path.lastIndexOf(u'\\');
    while (known > 0 && !QFileInfo(path.first(known)).isDir())
        known = path.lastIndexOf(u'\\', known - 1);
    const QString folder = known > 0 ? path.first(known) : QString();
    QString rest = path.sliced(folder.size());
    rest.replace(u'\\', u'/');
    if (QFileInfo::exists(folder + rest))
        return folder + rest;
    const bool absolute = !folder.isEmpty() || rest.startsWith(u'/');
    QString found = absolute ? folder : QStringLiteral(".");
    const auto parts = rest.split(u'/', Qt::SkipEmptyParts);
    for (const QString& part : parts)
        found += u'/' + matchingEntry(found.isEmpty() ? QStringLiteral("/") : found, part);
    return absolute ? found : found.mid(2);
}

bool isWithin(const QString& path, const QString& folder)
{
    return path == folder || path.startsWith(folder.endsWith(u'/') ? folder : folder + u'/');
}

bool isWritable(const QString& path)
{
    return QFileInfo(path).isWritable();
}

} // namespace orlo::platform
