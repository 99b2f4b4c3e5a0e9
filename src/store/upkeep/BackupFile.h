#pragma once

#include "store/copies/KeptCopies.h"

namespace orlo
{

/// The backup's path in a folder or at a drive's root.
[[nodiscard]] inline QString backupIn(const QString& folder)
{
    return folder + u'\\' + store::BackupName;
}

} // namespace orlo
