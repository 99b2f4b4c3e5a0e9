#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace orlo::store
{

/// Who wants to hear of a file in the former format that is being taken over.
struct TakeoverWatch {
    /// Called now and then with the file's name and how far it is, in percent; with 100 at the end, however that is.
    std::function<void(const QString& file, int percent)> progress;
    /// Called once a file that held something for which the new one has no place stands in its place; the report says
    /// what that was and where it is kept.
    std::function<void(const QString& report)> report;
};

/// Says who hears of it; at first nobody does.
void setTakeoverWatch(TakeoverWatch watch);
[[nodiscard]] const TakeoverWatch& takeoverWatch();

/// What was counted of a table in the former format.
struct FormerCount {
    QString table;
    qint64 rows = 0;
    qint64 stated = 0; ///< rows that the table says it has; more may have been found than that
    qint64 older = 0;  ///< rows from before a field was added, which they don't have
    qint64 values = 0; ///< other than Null
};

/// The count in one line, as `orlo-db check` has it.
[[nodiscard]] QString words(const FormerCount& count);

/// Whether a file begins as one of the former format does. A native path.
[[nodiscard]] bool isFormerFormat(const QString& file);

/// Reads a file in the former format to its end, changes nothing and returns what was counted. Raises as takeOver().
[[nodiscard]] std::vector<FormerCount> checkFormer(const QString& file);

} // namespace orlo::store
