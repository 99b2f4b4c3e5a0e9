#pragma once

#include <QString>

#include <functional>

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

/// The one that hears of it; at first nobody does.
[[nodiscard]] TakeoverWatch& takeoverWatch();

/// True if the file begins as one in the former format, of Jet 3 or Jet 4.
[[nodiscard]] bool isFormerFormat(const QString& file);

/// Puts a file of today's format with the same data in the place of one in the former format, which stays unchanged
/// beside it as "<name> (former format).<suffix>". All of it or nothing, whenever the process is ended. A native path.
/// Raises 3049 with the reason for one that can't be read, 3343 in a build that reads none, 3050 for one that can't be
/// locked, 61, 68, 70 or 75 where the new one can't be written.
void takeOver(const QString& file);

} // namespace orlo::store
