#pragma once

#include <QString>

namespace orlo
{

/// The backup's path in a folder, or at a drive's root.
[[nodiscard]] inline QString backupIn(const QString& folder)
{
    return folder + QStringLiteral("\\Quorrel11_Backup");
}

} // namespace orlo
