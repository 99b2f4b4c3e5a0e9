#pragma once

#include <QString>

#include <optional>

class QStorageInfo;

namespace orlo::platform
{

/// A value of a key of the machine's registry, below HKEY_LOCAL_MACHINE; none where the key, the value or the registry
/// is missing.
[[nodiscard]] std::optional<QString> registryValue(const QString& key, const QString& name);

/// Enters an error in the system log.
void logError(const QString& text);

/// False for a mounted volume that is no place for a user's files: what the system shows of itself, and images of
/// installed programs.
[[nodiscard]] bool holdsUserFiles(const QStorageInfo& volume);

} // namespace orlo::platform
