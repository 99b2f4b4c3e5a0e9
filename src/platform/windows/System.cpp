#include "platform/System.h"

#include <windows.h>

#include <array>

namespace orlo::platform
{

std::optional<QString> registryValue(const QString& key, const QString& name)
{
    std::array<wchar_t, 2 * MAX_PATH> text{};
    auto size = static_cast<DWORD>(sizeof text); // bytes
    if (RegGetValueW(HKEY_LOCAL_MACHINE, key.toStdWString().c_str(), name.toStdWString().c_str(), RRF_RT_REG_SZ,
                     nullptr, text.data(), &size) != ERROR_SUCCESS)
        return std::nullopt;
    return QString::fromWCharArray(text.data());
}

QString programName(const QString& program)
{
    return program + QStringLiteral(".exe");
}

QString moduleName(const QString& module)
{
    return module + QStringLiteral(".dll");
}

bool lacksLibrary(int exitCode)
{
    return static_cast<DWORD>(exitCode) == 0xC0000135 ||
           static_cast<DWORD>(exitCode) == 0xC0000139; // library, function
}

const char* screenlessPlatform()
{
    return "windows"; // the one that every package has
}

void logError(const QString& text)
{
    const HANDLE log = RegisterEventSourceW(nullptr, L"ORLO");
    if (!log)
        return;
    const std::wstring words = text.toStdWString();
    const wchar_t* line = words.c_str();
    ReportEventW(log, EVENTLOG_ERROR_TYPE, 0, 0, nullptr, 1, 0, &line, nullptr);
    DeregisterEventSource(log);
}

bool holdsUserFiles(const QStorageInfo& /*volume*/)
{
    return true; // only volumes with a drive letter are listed
}

} // namespace orlo::platform
