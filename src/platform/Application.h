#pragma once

#include <QString>

namespace orlo::platform
{

/// The program's own version, as three plain integers.
struct Version {
    int major;
    int minor;
    int revision;
};

[[nodiscard]] Version version();
/// "Version 1.1.0" or the like, as the splash and the about box show it.
[[nodiscard]] QString versionText();
/// The program's title.
[[nodiscard]] QString title();
/// The folder of the running executable, as the system reports it.
[[nodiscard]] QString folder();
/// The path of a file that the build puts beside the program; its other programs lie in folders beside the program's.
/// Empty where there is none.
[[nodiscard]] QString companionFile(const QString& name);
/// Gives another folder in its place, for tests and pictures; an empty one gives the executable's back.
void setFolder(const QString& path);

} // namespace orlo::platform
