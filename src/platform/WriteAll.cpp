#include "platform/WriteAll.h"

#include "platform/FileNames.h"

#include <QDir>
#include <QSaveFile>

namespace orlo::platform
{

void flushAll(QFileDevice& file)
{
    // A full disk takes part of the buffer first, and reports the failure only at the next attempt.
    if (!file.flush() && !file.flush())
        raiseUnwritable(file.fileName(), file.errorString());
}

void writeAll(QIODevice& device, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const qint64 taken = device.write(bytes.data(), bytes.size());
        if (taken <= 0) {
            auto* file = qobject_cast<QFileDevice*>(&device);
            if (file)
                flushAll(*file);
            raiseUnwritable(file ? file->fileName() : QString(), device.errorString());
        }
        bytes = bytes.sliced(taken);
    }
}

void commitAll(QSaveFile& file)
{
    flushAll(file);
    // Network volumes and volumes with quotas may report only here that there is no room.
    try {
        flushFile(file.handle());
    } catch (const RuntimeError& error) {
        raiseUnwritable(file.fileName(), error.description());
    }
    if (!file.commit())
        raiseUnwritable(file.fileName(), file.errorString());
}

RuntimeError unwritable(const QString& path, const QString& reason)
{
    return RuntimeError(PathFileAccess, QString(),
                        QStringLiteral("The file %1 can't be written: %2").arg(QDir::toNativeSeparators(path), reason));
}

void raiseUnwritable(const QString& path, const QString& reason)
{
    throw unwritable(path, reason);
}

} // namespace orlo::platform
