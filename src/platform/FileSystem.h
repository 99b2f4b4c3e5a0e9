#pragma once

#include <QList>
#include <QString>

#include <functional>

namespace orlo::platform
{

/// The path that the operating system knows a program path by: "\" and "/" both separate folders, and each part is
/// found without regard to case. A last part that isn't there stays as it stands, so that it can be created.
[[nodiscard]] QString nativePath(const QString& path);

/// True for a folder itself and for all that lies below it; both paths absolute and clean.
[[nodiscard]] bool isWithin(const QString& path, const QString& folder);

/// Whether this user may write to a file, or make files in a folder; a path of the operating system.
[[nodiscard]] bool isWritable(const QString& path);

/// A file that exists.
struct File {
    QString path;
    qint64 size = 0; ///< bytes
};

/// A folder that exists.
struct Folder {
    QString path;
};

/// A mounted volume.
struct Drive {
    QString root;
    qint64 freeSpace = 0; ///< bytes that this user may write
};

/// The file system object: paths as the program builds them, through nativePath().
class FileSystem
{
public:
    /// True or false, never fails.
    [[nodiscard]] bool fileExists(const QString& path) const;
    /// Copies a file, flushed to disk before it takes the destination's name: a copy that breaks off leaves what stood
    /// there. Only where the volume can't hold the old file and the new one does the new one take the old one's room.
    /// Raises 53 without the source, 76 without the folder, 58 if the destination is there and not to be overwritten,
    /// 61 when the disk is full, 68 when the device fails, 70 for what may not be read or written, or
    /// what another program is writing, 75 else.
    void copyFile(const QString& source, const QString& destination, bool overwrite) const;
    /// Raises 53 for a missing file, 70 for one that may not be deleted.
    void deleteFile(const QString& path, bool force) const;
    /// Raises 53 for a missing file.
    [[nodiscard]] File getFile(const QString& path) const;
    /// Raises 76 for a missing folder.
    [[nodiscard]] Folder getFolder(const QString& path) const;
    /// The volume whose root the text names. Raises 5 for no text, 68 for one that isn't the root of a mounted volume.
    [[nodiscard]] Drive getDrive(const QString& text) const;
    /// The mounted volumes that hold files of users, the root's first.
    [[nodiscard]] QList<Drive> drives() const;
    /// The bytes that this user may write on the volume that a path lies on; 0 where that can't be told.
    [[nodiscard]] qint64 freeSpaceAt(const QString& path) const;
    /// The root of the one of drives() that a path lies on.
    [[nodiscard]] QString driveOf(const QString& path) const;
};

/// Gives other volumes in place of the mounted ones, for tests; none gives the mounted ones back.
void setVolumes(std::function<QList<Drive>()> volumes);

} // namespace orlo::platform
