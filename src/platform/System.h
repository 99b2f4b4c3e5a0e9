#pragma once

#include <QString>

#include <optional>

class QStorageInfo;

namespace orlo::platform
{

/// A value of the machine's registry, below HKEY_LOCAL_MACHINE; nothing if the key or value doesn't exist or the system
/// has no registry.
[[nodiscard]] std::optional<QString> registryValue(const QString& key, const QString& name);

/// Writes an error to the system log.
void logError(const QString& text);

/// False for mounted volumes that don't hold user files, such as the system's own and images of installed programs.
[[nodiscard]] bool holdsUserFiles(const QStorageInfo& volume);

} // namespace orlo::platform
