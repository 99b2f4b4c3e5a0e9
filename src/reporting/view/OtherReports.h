#pragma once

#include <QString>

#include <vector>

namespace orlo::reporting
{

/// A report file and its title.
struct OtherReport {
    QString title;
    QString path;
    bool isExample;
};

/// The report files in the application's folder and its folder "examples", except the one shown, sorted by folder and
/// title. An unreadable file is listed by its name; where titles are equal the file names are added.
[[nodiscard]] std::vector<OtherReport> otherReports(const QString& shown);

} // namespace orlo::reporting
