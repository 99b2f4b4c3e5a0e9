#pragma once

#include <QString>

namespace orlo::platform
{

/// Flushes a file to the disk. Raises 61, 68, 70, 75 or 76.
void flushFile(const QString& path);
/// The same for an open file, by its descriptor of the C library.
void flushFile(int descriptor);
/// Gives a file a second name in the same folder; false if the volume has no hard links.
[[nodiscard]] bool addName(const QString& path, const QString& name);
/// Renames a file within its folder in one step, replacing a file of that name; on the disk when it returns. Raises 61,
/// 68, 70, 75 or 76.
void takeName(const QString& path, const QString& name);

/// Flushes a file's name to the disk and remembers it for isNameFlushed(). Raises nothing: after a failure the name
/// counts as not flushed.
void flushName(const QString& path);
/// True if flushName() has flushed the name since the present file got it. False if the volume doesn't record when
/// files are made, and on systems that flush a name with its file.
[[nodiscard]] bool isNameFlushed(const QString& path);

} // namespace orlo::platform
