#pragma once

#include "store/engine/Database.h"

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

/// True for a file that begins as one of the former format does; a native path.
[[nodiscard]] bool isFormerFormat(const QString& file);

/// Opens a pack's file, after taking it over where it is in the former format. Raises as DBEngine::openDatabase() and
/// takeOver().
[[nodiscard]] Database openFile(const QString& path);

} // namespace orlo::store
