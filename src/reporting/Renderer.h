#pragma once

#include "reporting/Document.h"

#include <algorithm>
#include <functional>
#include <map>
#include <optional>

namespace orlo::store
{
class Database;
}

namespace orlo::reporting
{

struct Definition;

/// The database file of each table slot; an empty path clears the slot.
using Slots = std::map<int, QString>;

/// The settings of a run.
struct RunRequest {
    QString reportFile;                  ///< path, resolved as FileSystem does
    Slots databases;                     ///< slots of the main report
    std::map<QString, Slots> subreports; ///< slots by subreport name; other subreports use the main ones
    QString selectionFormula;            ///< empty for all records
    QString reportTitle;                 ///< describes the selection
    int firstPage = 1;                   ///< first page kept in the document; numbering is the whole report's
    int lastPage = 0;                    ///< 0 for no upper limit
};

/// Returns the open database for a path; what it raises fails the run.
using DatabaseProvider = std::function<store::Database&(const QString& path)>;

/// Called with the amount of work done and the total; returning false cancels.
using Progress = std::function<bool(int done, int total)>;
/// Thrown when progress returns false, and caught where the run ends.
struct Cancelled {
};

/// Reports progress from inside loops: each part covers a range of percentages of the whole.
class PartProgress
{
public:
    PartProgress() = default; ///< reports nothing
    PartProgress(const Progress& progress, int from, int to) : m_progress(&progress), m_from(from), m_to(to) {}
    PartProgress(Progress&&, int, int) = delete; // the reference would dangle

    /// Reports how much of the part is done. Throws Cancelled.
    void operator()(std::size_t done, std::size_t total) const
    {
        const std::size_t span = std::size_t(m_to - m_from) * Scale;
        const std::size_t share = total > 0 ? span * std::min(done, total) / total : 0;
        if (m_progress && *m_progress && !(*m_progress)(int(std::size_t(m_from) * Scale + share), 100 * Scale))
            throw Cancelled();
    }
    /// The same for rows, of which only some are reported.
    void row(std::size_t done, std::size_t total) const
    {
        if (done % RowsBetween == 0)
            (*this)(done, total);
    }

private:
    static constexpr int Scale = 100;
    static constexpr std::size_t RowsBetween = 500;

    const Progress* m_progress = nullptr;
    int m_from = 0;
    int m_to = 0;
};

/// Receives a long report's first page, in an incomplete document, before the rest is laid out. Not called for a quick
/// report, or one without its first page.
using FirstPage = std::function<void(Document&&)>;

/// Runs a report file; nothing if cancelled. Raises ReportError, or what the store raises.
[[nodiscard]] std::optional<Document> render(const RunRequest& request, const DatabaseProvider& databaseOf,
                                             const Progress& progress = {}, const FirstPage& firstPage = {});
/// The same for a parsed definition; the request's file is only used in messages.
[[nodiscard]] std::optional<Document> render(const Definition& definition, const RunRequest& request,
                                             const DatabaseProvider& databaseOf, const Progress& progress = {},
                                             const FirstPage& firstPage = {});

} // namespace orlo::reporting
