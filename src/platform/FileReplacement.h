#pragma once

#include <QString>

namespace orlo::platform
{

/// Puts a finished file in the place of another and keeps that one beside it, under a name that no other contents have:
/// "<name> (<note>).<suffix>", then "(<note> 2)" and so on. Both are on the disk when it returns; cut off at any
/// moment, the name holds the old file or the new one. Native paths in one folder. Returns the kept file's path.
/// Raises 61, 68, 70 or 75.
QString putInPlace(const QString& path, const QString& finished, const QString& note);

} // namespace orlo::platform
