#pragma once

#include "platform/RuntimeError.h"

#include <QString>

namespace orlo::store
{

/// Failure 3343 of a file that this build can't read.
[[nodiscard]] inline platform::RuntimeError noReader()
{
    return platform::RuntimeError(platform::UnrecognisedFormat, QStringLiteral("Database"),
                                  QStringLiteral("The file is in the format of an earlier version, and the program "
                                                 "orlo-jet, which reads it, isn't here or doesn't run."));
}

/// Replaces a file in the former format with one in today's format and the same data; the old one stays beside it as
/// "<name> (former format).<suffix>". All or nothing, even if the process is killed. A native path. Raises 3049 with
/// the reason if it can't be read, 3343 if it isn't a pack's or this build has no reader, 3050 if it can't be locked or
/// another program uses or changes it, 61, 68, 70 or 75 if the new file can't be written.
void takeOver(const QString& file);

} // namespace orlo::store
