#pragma once

#include "platform/RuntimeError.h"

#include <QByteArrayView>

class QIODevice;
class QFileDevice;
class QSaveFile;

namespace orlo::platform
{

/// Writes all of the bytes. A device that takes a part of them, as a file on a disk that becomes full, is handed the
/// rest until it takes it or says why not. Raises 75.
void writeAll(QIODevice& device, QByteArrayView bytes);

/// Hands what a file's buffer holds to the system. Raises 75.
void flushAll(QFileDevice& file);
/// Puts a file that was written into its place; QSaveFile::commit() alone takes no notice of what its buffer couldn't
/// get rid of, nor of what the disk says of it. Raises 75, and what stood there stays.
void commitAll(QSaveFile& file);

/// The failure 75 of a file that can't be written: which one, and what the system says of it.
[[nodiscard]] RuntimeError unwritable(const QString& path, const QString& reason);
/// Raises it.
[[noreturn]] void raiseUnwritable(const QString& path, const QString& reason);

} // namespace orlo::platform
