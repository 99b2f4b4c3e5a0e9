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

/// The database file that each table slot reads; an empty path is a cleared slot.
using Slots = std::map<int, QString>;

/// What one run of a report is to do.
struct RunRequest {
    QString reportFile;                  ///< path, resolved as the file system object does
    Slots databases;                     ///< the main report's slots
    std::map<QString, Slots> subreports; ///< slots by subreport name; a subreport not named here reads the main ones
    QString selectionFormula;            ///< empty for all records
    QString reportTitle;                 ///< the words for what was selected
    int firstPage = 1;                   ///< the pages kept in the document; numbering stays that of the whole
    int lastPage = 0;                    ///< 0 for no upper limit
};

/// Yields the open database of a path; what it raises fails the run.
using DatabaseProvider = std::function<store::Database&(const QString& path)>;

/// Called with how much of the work is done, of how much; false cancels it.
using Progress = std::function<bool(int done, int total)>;
/// Thrown by a step whose progress answers false, and caught where the run ends.
struct Cancelled {
};

/// Reports a run's progress from inside its loops: each of its parts goes from one percentage of the whole to another.
class PartProgress
{
public:
    PartProgress() = default; ///< of work whose progress nobody wants to know
    PartProgress(const Progress& progress, int from, int to) : m_progress(&progress), m_from(from), m_to(to) {}
    PartProgress(Progress&&, int, int) = delete; // it would be gone

    /// Reports that so much of the part is done. Throws Cancelled.
    void operator()(std::size_t done, std::size_t total) const
    {
        const std::size_t span = std::size_t(m_to - m_from) * Scale;
        const std::size_t share = total > 0 ? span * std::min(done, total) / total : 0;
        if (m_progress && *m_progress && !(*m_progress)(int(std::size_t(m_from) * Scale + share), 100 * Scale))
            throw Cancelled();
    }
    /// The same for one row of many, of which only some are reported.
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

/// Given the first page of a long report as soon as it is settled, before the rest is laid out: a document that isn't
/// complete. Not called for a report that is done at once, or one that leaves out its first page.
using FirstPage = std::function<void(Document&&)>;

/// Runs a report file to finished pages; nothing if it was cancelled. Raises ReportError, or what the store raises.
[[nodiscard]] std::optional<Document> render(const RunRequest& request, const DatabaseProvider& databaseOf,
                                             const Progress& progress = {}, const FirstPage& firstPage = {});
/// The same for a definition that was read already; the request's file only serves messages.
[[nodiscard]] std::optional<Document> render(const Definition& definition, const RunRequest& request,
                                             const DatabaseProvider& databaseOf, const Progress& progress = {},
                                             const FirstPage& firstPage = {});

} // namespace orlo::reporting
