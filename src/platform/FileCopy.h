#pragma once

#include <QString>

namespace orlo::platform
{

/// Copies the source over the target as FileSystem::copyFile() promises, with the same failures. Native paths.
void copyOver(const QString& source, const QString& target);

} // namespace orlo::platform
