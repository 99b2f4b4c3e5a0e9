#pragma once

#include <QString>

#include <vector>

namespace orlo::reporting
{

/// A report file and what it is called.
struct OtherReport {
    QString title;
    QString path;
    bool isExample;
};

/// The report files of the application's folder and of its folder "examples", without the one that is shown, by folder
/// and title. A file that can't be read goes by its name; of two with one title, each tells its file.
[[nodiscard]] std::vector<OtherReport> otherReports(const QString& shown);

} // namespace orlo::reporting
