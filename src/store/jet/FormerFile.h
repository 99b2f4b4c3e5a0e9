#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace orlo::store
{

/// Receives reports about files being taken over.
struct TakeoverWatch {
    /// Called repeatedly with the file's name and the progress in percent; ends with 100 in any case.
    std::function<void(const QString& file, int percent)> progress;
    /// Called after a takeover in which something had no place in the new file; the report says what, and where it is
    /// kept.
    std::function<void(const QString& report)> report;
};

/// Sets the receiver; at first there is none.
void setTakeoverWatch(TakeoverWatch watch);
[[nodiscard]] const TakeoverWatch& takeoverWatch();

/// Counts for a table in the former format.
struct FormerCount {
    QString table;
    qint64 rows = 0;
    qint64 stated = 0; ///< rows according to the table's header; more may exist
    qint64 older = 0;  ///< rows from before a field was added
    qint64 values = 0; ///< values that aren't Null
};

/// The counts in one line, for `orlo-db check`.
[[nodiscard]] QString words(const FormerCount& count);

/// Whether a file begins like one of the former format. A native path.
[[nodiscard]] bool isFormerFormat(const QString& file);

/// Reads a former file to its end without changing it, and returns the counts. Raises as takeOver() does.
[[nodiscard]] std::vector<FormerCount> checkFormer(const QString& file);

} // namespace orlo::store
