#pragma once

#include <QString>

namespace orlo::platform
{

/// The path that the operating system knows a program path by: "\" and "/" both separate folders, and each part is
/// found without regard to case. A last part that isn't there stays as it stands, so that it can be created.
[[nodiscard]] QString nativePath(const QString& path);

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
    /// Copies a file, flushed to disk before it takes the destination's name. Raises 53 without the source, 76 without
    /// the folder, 58 if the destination is there and not to be overwritten, 61 when the disk is full, 70 else.
    void copyFile(const QString& source, const QString& destination, bool overwrite) const;
    /// Raises 53 for a missing file, 70 for one that may not be deleted.
    void deleteFile(const QString& path, bool force) const;
    /// Raises 53 for a missing file.
    [[nodiscard]] File getFile(const QString& path) const;
    /// Raises 76 for a missing folder.
    [[nodiscard]] Folder getFolder(const QString& path) const;
    /// Raises 68 for a text that names no volume.
    [[nodiscard]] Drive getDrive(const QString& text) const;
};

} // namespace orlo::platform
