#include "platform/FileSystem.h"

#include "platform/RuntimeError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <unistd.h>

namespace orlo::platform
{

namespace
{

constexpr int FileAlreadyExists = 58;

// The entry of a folder with this name, the exact spelling preferred; the name itself where there is none.
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

[[noreturn]] void raiseWriteFailure(const QFile& file)
{
    throw RuntimeError(file.error() == QFileDevice::ResourceError || file.error() == QFileDevice::WriteError
                           ? DiskFull
                           : PermissionDenied,
                       QStringLiteral("FileSystem"));
}

} // namespace

QString nativePath(const QString& path)
{
    QString slashed = path;
    slashed.replace(u'\\', u'/');
    if (QFileInfo::exists(slashed))
        return slashed;
    QString found = slashed.startsWith(u'/') ? QString() : QStringLiteral(".");
    const auto parts = slashed.split(u'/', Qt::SkipEmptyParts);
    for (const QString& part : parts)
        found += u'/' + matchingEntry(found.isEmpty() ? QStringLiteral("/") : found, part);
    return slashed.startsWith(u'/') ? found : found.mid(2);
}

bool FileSystem::fileExists(const QString& path) const
{
    return QFileInfo(nativePath(path)).isFile();
}

void FileSystem::copyFile(const QString& source, const QString& destination, bool overwrite) const
{
    const QString target = nativePath(destination);
    if (!fileExists(source))
        throw RuntimeError(FileNotFound, QStringLiteral("FileSystem"));
    if (!QFileInfo(target).dir().exists())
        throw RuntimeError(PathNotFound, QStringLiteral("FileSystem"));
    if (!overwrite && QFileInfo::exists(target))
        throw RuntimeError(FileAlreadyExists, QStringLiteral("FileSystem"), QStringLiteral("File already exists"));

    QFile from(nativePath(source));
    if (!from.open(QIODevice::ReadOnly))
        throw RuntimeError(PermissionDenied, QStringLiteral("FileSystem"));
    // Written beside the destination and renamed, so that a copy that breaks off never stands under the good name.
    QFile to(target + QStringLiteral(".part"));
    if (!to.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw RuntimeError(PermissionDenied, QStringLiteral("FileSystem"));
    QByteArray block;
    try {
        while (!(block = from.read(1 << 20)).isEmpty())
            if (to.write(block) != block.size())
                raiseWriteFailure(to);
        if (from.error() != QFileDevice::NoError)
            throw RuntimeError(PathFileAccess, QStringLiteral("FileSystem"));
        if (!to.flush() || ::fsync(to.handle()) != 0)
            raiseWriteFailure(to);
        to.close();
        if (::rename(QFile::encodeName(to.fileName()).constData(), QFile::encodeName(target).constData()) != 0)
            throw RuntimeError(PermissionDenied, QStringLiteral("FileSystem"));
    } catch (const RuntimeError&) {
        to.remove();
        throw;
    }
}

void FileSystem::deleteFile(const QString& path, bool force) const
{
    const QString target = nativePath(path);
    if (!QFileInfo(target).isFile())
        throw RuntimeError(FileNotFound, QStringLiteral("FileSystem"));
    if ((!force && !QFileInfo(target).isWritable()) || !QFile::remove(target))
        throw RuntimeError(PermissionDenied, QStringLiteral("FileSystem"));
}

File FileSystem::getFile(const QString& path) const
{
    const QFileInfo info(nativePath(path));
    if (!info.isFile())
        throw RuntimeError(FileNotFound, QStringLiteral("FileSystem"));
    return File{info.filePath(), info.size()};
}

Folder FileSystem::getFolder(const QString& path) const
{
    const QFileInfo info(nativePath(path));
    if (!info.isDir())
        throw RuntimeError(PathNotFound, QStringLiteral("FileSystem"));
    return Folder{info.filePath()};
}

Drive FileSystem::getDrive(const QString& text) const
{
    if (text.isEmpty())
        throw RuntimeError(InvalidProcedureCall, QStringLiteral("FileSystem"));
    const QStorageInfo volume(nativePath(text));
    if (!volume.isValid() || !volume.isReady())
        throw RuntimeError(DeviceUnavailable, QStringLiteral("FileSystem"));
    return Drive{volume.rootPath(), volume.bytesAvailable()};
}

} // namespace orlo::platform
