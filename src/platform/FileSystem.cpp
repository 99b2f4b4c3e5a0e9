#include "platform/FileSystem.h"

#include "platform/FileCopy.h"
#include "platform/RuntimeError.h"
#include "platform/System.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QStorageInfo>

#include <filesystem>
#include <limits>

namespace orlo::platform
{

namespace
{

constexpr int FileAlreadyExists = 58;

std::function<QList<Drive>()> otherVolumes; // in place of the mounted ones

} // namespace

bool FileSystem::fileExists(const QString& path) const
{
    return QFileInfo(nativePath(path)).isFile();
}

void FileSystem::copyFile(const QString& source, const QString& destination, bool overwrite) const
{
    const QFileInfo from(nativePath(source));
    const QFileInfo to(nativePath(destination));
    if (!from.isFile())
        throw RuntimeError(FileNotFound, QStringLiteral("FileSystem"));
    if (!to.dir().exists())
        throw RuntimeError(PathNotFound, QStringLiteral("FileSystem"));
    if (!overwrite && to.exists())
        throw RuntimeError(FileAlreadyExists, QStringLiteral("FileSystem"), QStringLiteral("File already exists"));
    if (to.exists() && (!to.isFile() || !isWritable(to.filePath())))
        throw RuntimeError(PermissionDenied, QStringLiteral("FileSystem"));
    // A link stays a link: the file it names is replaced.
    copyOver(from.filePath(), to.exists() ? to.canonicalFilePath() : to.filePath());
}

void FileSystem::deleteFile(const QString& path, bool force) const
{
    const QString target = nativePath(path);
    if (!QFileInfo(target).isFile())
        throw RuntimeError(FileNotFound, QStringLiteral("FileSystem"));
    if ((!isWritable(target) && !force) || !QFile::remove(target))
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
    // An unmounted folder belongs to another volume, which isn't the one the text names.
    const QString root = QDir::cleanPath(nativePath(text));
    if (otherVolumes) {
        const auto volumes = otherVolumes();
        for (const Drive& drive : volumes)
            if (drive.root == root)
                return drive;
    } else if (const QStorageInfo volume(root); volume.isValid() && volume.isReady() && volume.rootPath() == root)
        return Drive{root, volume.bytesAvailable()};
    throw RuntimeError(DeviceUnavailable, QStringLiteral("FileSystem"));
}

QList<Drive> FileSystem::drives() const
{
    if (otherVolumes)
        return otherVolumes();
    QMap<QString, Drive> byRoot;
    const auto volumes = QStorageInfo::mountedVolumes();
    for (const QStorageInfo& volume : volumes) {
        const QString root = volume.rootPath();
        if (volume.isValid() && volume.isReady() && QFileInfo(root).isDir() &&
            (volume.isRoot() || holdsUserFiles(volume)))
            byRoot.insert(root, Drive{root, volume.bytesAvailable()});
    }
    return byRoot.values();
}

qint64 FileSystem::freeSpaceAt(const QString& path) const
{
    if (!otherVolumes) {
        std::error_code error;
        const auto space = std::filesystem::space(QFileInfo(path).filesystemFilePath(), error);
        return error ? std::numeric_limits<qint64>::max() : static_cast<qint64>(space.available);
    }
    const QString root = driveOf(path);
    for (const Drive& drive : drives())
        if (drive.root == root)
            return drive.freeSpace;
    return 0;
}

QString FileSystem::driveOf(const QString& path) const
{
    QString root = QDir::rootPath();
    const auto volumes = drives();
    for (const Drive& drive : volumes)
        if (isWithin(path, drive.root) && drive.root.size() > root.size())
            root = drive.root;
    return root;
}

void setVolumes(std::function<QList<Drive>()> volumes)
{
    otherVolumes = std::move(volumes);
}

} // namespace orlo::platform
