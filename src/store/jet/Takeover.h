#pragma once

#include "platform/RuntimeError.h"

#include <QString>

namespace orlo::store
{

/// The failure of a file that nothing here can read: 3343.
[[nodiscard]] inline platform::RuntimeError noReader()
{
    return platform::RuntimeError(platform::UnrecognisedFormat, QStringLiteral("Database"),
                                  QStringLiteral("The file is in the format of an earlier version, and the program "
                                                 "orlo-jet, which reads it, isn't here or doesn't run."));
}

/// Puts a file of today's format with the same data in the place of one in the former format, which stays unchanged
/// beside it as "<name> (former format).<suffix>". All of it or nothing, whenever the process is ended. A native path.
/// Raises 3049 with the reason for one that can't be read, 3343 for one that is no pack's and in a build that reads
/// none, 3050 for one that can't be locked or that another program uses or changes meanwhile, 61, 68, 70 or 75 where
/// the new one can't be written.
void takeOver(const QString& file);

} // namespace orlo::store
