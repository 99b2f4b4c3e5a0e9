#include "platform/FileLock.h"

#include "platform/RuntimeError.h"
#include "platform/windows/Handle.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

namespace orlo::platform
{

namespace
{

constexpr DWORD LockBusyMilliseconds = 2000;

// The lock is a name that all processes see and not a handle of the file, since nothing takes the place of an open
// file.
QString lockName(const QString& path)
{
    const QByteArray file = QFileInfo(path).canonicalFilePath().toCaseFolded().toUtf8();
    return QStringLiteral("Global\\ORLO-") +
           QString::fromLatin1(QCryptographicHash::hash(file, QCryptographicHash::Sha256).toHex());
}

} // namespace

struct FileLock::Held {
    HANDLE mutex;
    FileIdentity file;
};

FileLock::FileLock(const QString& path) : m_held(new Held{nullptr, identityOf(path)})
{
    const bool readable = Handle(path, GENERIC_READ).isOpen();
    if (readable)
        m_held->mutex = CreateMutexW(nullptr, FALSE, lockName(path).toStdWString().c_str());
    // That of a process that was ended is given up, and ours.
    if (m_held->mutex)
        if (const DWORD waited = WaitForSingleObject(m_held->mutex, LockBusyMilliseconds);
            waited == WAIT_OBJECT_0 || waited == WAIT_ABANDONED)
            return;
    if (m_held->mutex)
        CloseHandle(m_held->mutex);
    const QString words =
        readable ? QStringLiteral("Another program is using the file") : QStringLiteral("The file can't be read");
    throw RuntimeError(CannotLockFile, QStringLiteral("FileSystem"),
                       QStringLiteral("%1: %2").arg(words, QDir::toNativeSeparators(path)));
}

FileLock::~FileLock()
{
    ReleaseMutex(m_held->mutex);
    CloseHandle(m_held->mutex);
}

bool FileLock::isOn(const QString& path) const
{
    return m_held->file == identityOf(path);
}

} // namespace orlo::platform
