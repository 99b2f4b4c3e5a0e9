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
/// The version as the splash and the about box show it: "Version 1.1.0".
[[nodiscard]] QString versionText();
/// The program's title.
[[nodiscard]] QString title();
/// The folder of the running executable.
[[nodiscard]] QString folder();
/// The path of a file that the build puts beside the program, or of another program in a folder beside it. Empty if
/// there is no such file.
[[nodiscard]] QString companionFile(const QString& name);
/// Sets another folder, for tests and pictures; an empty path restores the executable's.
void setFolder(const QString& path);

} // namespace orlo::platform
