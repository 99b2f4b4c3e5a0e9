#pragma once

#include <QString>

namespace orlo::platform
{

/// Writes what the system holds of a file to the disk. Raises 61, 68, 70, 75 or 76.
void flushFile(const QString& path);
/// The same for an open file, by its descriptor of the C library.
void flushFile(int descriptor);
/// Gives a file a second name in the same folder; false where the volume knows no second names.
[[nodiscard]] bool addName(const QString& path, const QString& name);
/// Puts a file under another name of the same folder in one step, in the place of the file of that name; on the disk
/// when it returns. Raises 61, 68, 70, 75 or 76.
void takeName(const QString& path, const QString& name);

/// Writes the name of a file to the disk and remembers for which file, which isNameFlushed() then knows. A failure
/// isn't told: the name then counts as not written.
void flushName(const QString& path);
/// True if flushName() has written the name since the file that bears it now was made. False where the volume doesn't
/// tell when that was, and on systems that write a name with its file.
[[nodiscard]] bool isNameFlushed(const QString& path);

} // namespace orlo::platform
