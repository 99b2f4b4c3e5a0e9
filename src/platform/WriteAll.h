#pragma once

#include "platform/RuntimeError.h"

#include <QByteArrayView>

class QIODevice;
class QFileDevice;
class QSaveFile;

namespace orlo::platform
{

/// Writes all bytes, repeating partial writes until the device takes the rest or fails. Raises 75.
void writeAll(QIODevice& device, QByteArrayView bytes);

/// Flushes a file's buffer to the system. Raises 75.
void flushAll(QFileDevice& file);
/// Commits a file, and reports what QSaveFile::commit() alone ignores: a buffer that couldn't be written and a failed
/// flush to the disk. Raises 75 and leaves the old file in place.
void commitAll(QSaveFile& file);

/// Failure 75 for a file that can't be written, with its path and the system's reason.
[[nodiscard]] RuntimeError unwritable(const QString& path, const QString& reason);
/// Raises unwritable().
[[noreturn]] void raiseUnwritable(const QString& path, const QString& reason);

} // namespace orlo::platform
