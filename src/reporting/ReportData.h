#pragma once

#include "reporting/Definition.h"
#include "reporting/Renderer.h"

#include <QSet>

namespace orlo::reporting
{

/// A name's place among others, without regard to case; -1 for an unknown one.
[[nodiscard]] int placeOf(const QString& name, const QStringList& names);

/// The rows that a query gave.
struct RowSet {
    QStringList columns;
    std::vector<FormulaNode::Type> types; ///< of the query's columns
    std::vector<std::vector<Value>> rows;
    QStringList fixedNames; ///< fields of the named sources, as SOURCE.COLUMN
    std::vector<Value> fixed;

    /// Without regard to case; -1 for an unknown name.
    [[nodiscard]] int columnOf(const QString& name) const;
};

/// A stretch of rows, the second end excluded.
struct RowRange {
    std::size_t first = 0;
    std::size_t last = 0;

    /// The number of rows.
    [[nodiscard]] std::size_t size() const { return last - first; }
    friend bool operator==(const RowRange&, const RowRange&) = default;
};

/// What the words of the formula language stand for in one run.
struct RunFacts {
    QString reportTitle;
    QDate printDate;
    QTime printTime;
};

/// Computes a summary value by value.
class Accumulator
{
public:
    explicit Accumulator(Summary summary) : m_summary(summary) {}
    /// Adds a value; Null counts for nothing. Raises ReportError 13 for a value that can't be added up.
    void add(const Value& value, Place place);
    /// The summary of what was added; Null for an average, median or extreme of nothing.
    [[nodiscard]] Value result() const;

private:
    Summary m_summary;
    double m_sum = 0;
    qint64 m_count = 0;
    Value m_extreme;
    std::vector<double> m_numbers;
    QSet<QString> m_distinct;
};

/// Formulas' view of the rows: a current row, the groups around it, the page being made.
class RowScope final : public FormulaScope
{
public:
    RowScope(const Definition& definition, const RowSet& rows, const RunFacts& facts);

    [[nodiscard]] Value field(int index) const override;
    [[nodiscard]] Value word(Word word) const override;
    [[nodiscard]] Value summary(const FormulaNode& node) const override;
    [[nodiscard]] Value inRow(int offset, const FormulaNode& expression) const override;

    /// The end of the run of rows that have the first one's key; the current row moves there.
    [[nodiscard]] std::size_t endOfGroup(const Group& group, RowRange rows);

    std::size_t row = 0;
    RowRange range;               ///< what a summary without a group's name covers
    RowRange whole;               ///< all rows of the report
    RowRange page;                ///< those that begin on the page
    std::vector<RowRange> groups; ///< the open groups, outermost first
    int groupNumber = 0;          ///< of the innermost open group, from 1
    int pageNumber = 0;
    int pageCount = 0; ///< 0 while it isn't known
    bool repeated = false;

private:
    struct Restored {
        std::size_t& at;
        std::size_t before;
        ~Restored() { at = before; }
    };
    [[nodiscard]] RowRange rangeOf(const FormulaNode& node) const;
    [[nodiscard]] std::size_t currentRow() const;

    const Definition& m_definition;
    const RowSet& m_rows;
    const RunFacts& m_facts;
    mutable std::size_t m_summaryRow = SIZE_MAX; // while a summary or a neighbour is computed
    struct Kept {
        std::size_t first;
        std::size_t last;
        Accumulator sum;
    };
    mutable std::map<const FormulaNode*, Kept> m_kept; // one that stands in each row goes on where it was
};

/// One report's definition, its formulas bound to the rows that its queries gave.
struct BoundReport {
    Definition definition;
    RowSet rows; ///< in the order of the report
    std::map<QString, BoundReport> subreports;
    std::map<QString, RowRange> byLink; ///< of a linked subreport: its rows by the link's key
    int linkedIndex = -1;               ///< the main report's field of the link, -1 for none
};

/// How far a run has come when its rows are read, and when loadReport() is done, in percent.
inline constexpr int RowsRead = 15;
inline constexpr int DataRead = 30;

/// The key under which equal values of a link meet.
[[nodiscard]] QString linkKey(const Value& value);

/// True for the names that stand for all rows and for those of a page, where they aren't a group's.
[[nodiscard]] bool isGroupOfAll(const QString& name);
[[nodiscard]] bool isGroupOfPage(const QString& name);

/// Reads and sorts the rows of a report and of its subreports. Raises ReportError for unknown fields, cleared slots, a
/// selection that can't be read; what the store raises gets the query's place. Nothing if progress cancelled it.
[[nodiscard]] std::optional<BoundReport> loadReport(const Definition& definition, const RunRequest& request,
                                                    const DatabaseProvider& databaseOf, const RunFacts& facts,
                                                    const Progress& progress);

} // namespace orlo::reporting
