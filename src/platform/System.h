#pragma once

#include <QString>

#include <optional>

class QStorageInfo;

namespace orlo::platform
{

/// A value of the machine's registry, below HKEY_LOCAL_MACHINE; nothing if the key or value doesn't exist or the system
/// has no registry.
[[nodiscard]] std::optional<QString> registryValue(const QString& key, const QString& name);

/// The names of files on this system: of a program, and of a module that a program loads.
[[nodiscard]] QString programName(const QString& program);
[[nodiscard]] QString moduleName(const QString& module);

/// Whether a program's exit code says that a library wasn't found.
[[nodiscard]] bool lacksLibrary(int exitCode);

/// Qt's platform for a program that draws but shows nothing; it needs no screen where there may be none.
[[nodiscard]] const char* screenlessPlatform();

/// Writes an error to the system log.
void logError(const QString& text);

/// False for mounted volumes that don't hold user files, such as the system's own and images of installed programs.
[[nodiscard]] bool holdsUserFiles(const QStorageInfo& volume);

} // namespace orlo::platform
