#include "platform/windows/Handle.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QThread>

#include <utility>

namespace orlo::platform
{

namespace
{

constexpr int HeldMilliseconds = 2000;
constexpr int TryEvery = 10; // ms

} // namespace

std::wstring systemPath(const QString& path)
{
    const QString plain = QDir::toNativeSeparators(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    // This prefix allows paths longer than 260 characters.
    if (plain.startsWith(QLatin1String(R"(\\)")))
        return (QStringLiteral(R"(\\?\UNC)") + plain.sliced(1)).toStdWString();
    return (QStringLiteral(R"(\\?\)") + plain).toStdWString();
}

Handle::Handle(const QString& path, DWORD access, DWORD disposition, DWORD flags, DWORD share)
    : m_handle(CreateFileW(systemPath(path).c_str(), access, share, nullptr, disposition, flags, nullptr))
{
}

void Handle::close()
{
    if (const HANDLE closing = std::exchange(m_handle, INVALID_HANDLE_VALUE); closing != INVALID_HANDLE_VALUE)
        CloseHandle(closing);
}

bool untilLetGo(const std::function<bool()>& action, Denied denied)
{
    const QDeadlineTimer deadline(HeldMilliseconds);
    while (!action()) {
        const DWORD code = GetLastError();
        const bool held =
            code == ERROR_SHARING_VIOLATION || (denied == Denied::IsHeld && numberOfCode(code) == PermissionDenied);
        if (!held || deadline.hasExpired()) {
            SetLastError(code);
            return false;
        }
        QThread::msleep(TryEvery);
    }
    return true;
}

bool renameOver(const QString& path, const QString& name)
{
    const std::wstring from = systemPath(path);
    const std::wstring to = systemPath(name);
    constexpr DWORD How = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    return untilLetGo([&] { return MoveFileExW(from.c_str(), to.c_str(), How) != 0; }, Denied::IsHeld);
}

} // namespace orlo::platform
