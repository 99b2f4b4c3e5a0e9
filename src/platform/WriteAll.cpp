#include "platform/WriteAll.h"

#include <QDir>
#include <QSaveFile>

namespace orlo::platform
{

void writeAll(QIODevice& device, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const qint64 taken = device.write(bytes.data(), bytes.size());
        if (taken <= 0) {
            const auto* file = qobject_cast<QFileDevice*>(&device);
            raiseUnwritable(file ? file->fileName() : QString(), device.errorString());
        }
        bytes = bytes.sliced(taken);
    }
}

void commitAll(QSaveFile& file)
{
    if (!file.flush() || !file.commit())
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
