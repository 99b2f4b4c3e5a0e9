#pragma once

#include <QList>
#include <QString>

#include <functional>

namespace orlo::platform
{

/// The operating system's path for a program path: "\" and "/" both separate folders, and each part is found without
/// regard to case. A last part that doesn't exist stays as written, so that it can be created.
[[nodiscard]] QString nativePath(const QString& path);

/// True for a folder itself and everything below it; both paths absolute and clean.
[[nodiscard]] bool isWithin(const QString& path, const QString& folder);

/// Whether this user may write to a file, or create files in a folder. A native path.
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

/// The file system as the program sees it; paths go through nativePath().
class FileSystem
{
public:
    /// Never fails.
    [[nodiscard]] bool fileExists(const QString& path) const;
    /// Copies a file. The copy is flushed to disk before it takes the destination's name, so a copy that breaks off
    /// leaves the old file in place. Only if the volume can't hold both files is the old one overwritten. Raises 53
    /// without the source, 76 without the folder, 58 if the destination exists and overwrite is false, 61 if the disk
    /// is full, 68 if the device fails, 70 if access is denied or another program is writing to the file, 75 otherwise.
    void copyFile(const QString& source, const QString& destination, bool overwrite) const;
    /// Raises 53 for a missing file, 70 for one that can't be deleted, or is write-protected unless force is true.
    void deleteFile(const QString& path, bool force) const;
    /// Raises 53 for a missing file.
    [[nodiscard]] File getFile(const QString& path) const;
    /// Raises 76 for a missing folder.
    [[nodiscard]] Folder getFolder(const QString& path) const;
    /// The volume whose root the text names. Raises 5 for an empty text, 68 if it isn't the root of a mounted volume.
    [[nodiscard]] Drive getDrive(const QString& text) const;
    /// The mounted volumes that hold user files, the root's first.
    [[nodiscard]] QList<Drive> drives() const;
    /// The bytes that this user may still write to the volume of a path; more than any volume has if unknown.
    [[nodiscard]] qint64 freeSpaceAt(const QString& path) const;
    /// The root of the volume in drives() that a path lies on.
    [[nodiscard]] QString driveOf(const QString& path) const;
};

/// Replaces the mounted volumes, for tests; an empty function restores them.
void setVolumes(std::function<QList<Drive>()> volumes);

} // namespace orlo::platform
