#pragma once

#include <QString>

namespace orlo::platform
{

/// Puts a finished file in the place of another and keeps the old one beside it as "<name> (<note>).<suffix>", then
/// "(<note> 2)" and so on. Both are on the disk when it returns; if cut off at any moment, the name holds either the
/// old file or the new one. Native paths in one folder. Returns the kept file's path. Raises 61, 68, 70 or 75.
QString putInPlace(const QString& path, const QString& finished, const QString& note);

} // namespace orlo::platform
