#pragma once

#include <QString>

namespace orlo::platform
{

/// Makes a copy of the source stand under the target's name, as FileSystem::copyFile() promises; both are paths of the
/// operating system. The failures are those of copyFile().
void copyOver(const QString& source, const QString& target);

} // namespace orlo::platform
