#pragma once

#include "reporting/Definition.h"
#include "reporting/FormulaNode.h"
#include "reporting/Renderer.h"

#include <QSet>

namespace orlo::reporting
{

/// A name's index, ignoring case; -1 if not found.
[[nodiscard]] int placeOf(const QString& name, const QStringList& names);

/// The rows of a query.
struct RowSet {
    QStringList columns;
    std::vector<FormulaNode::Type> types; ///< of the columns
    std::vector<std::vector<Value>> rows;
    QStringList fixedNames; ///< fields of named sources, as SOURCE.COLUMN
    std::vector<Value> fixed;

    /// A column's index, ignoring case; -1 if not found.
    [[nodiscard]] int columnOf(const QString& name) const;
};

/// A range of rows, end excluded.
struct RowRange {
    std::size_t first = 0;
    std::size_t last = 0;

    /// The number of rows.
    [[nodiscard]] std::size_t size() const { return last - first; }
    friend bool operator==(const RowRange&, const RowRange&) = default;
};

/// The values of the formula language's words in one run.
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
    /// Adds a value; Null is ignored. Raises ReportError 13 for a value that can't be added up.
    void add(const Value& value, Place place);
    /// The summary so far; Null for an average, median or extreme of nothing.
    [[nodiscard]] Value result() const;

private:
    Summary m_summary;
    double m_sum = 0;
    qint64 m_count = 0;
    Value m_extreme;
    std::vector<double> m_numbers;
    QSet<QString> m_distinct;
};

/// What formulas see: the current row, the groups around it and the page being made.
class RowScope final : public FormulaScope
{
public:
    RowScope(const Definition& definition, const RowSet& rows, const RunFacts& facts);

    [[nodiscard]] Value field(int index) const override;
    [[nodiscard]] Value word(Word word) const override;
    [[nodiscard]] Value summary(const FormulaNode& node) const override;
    [[nodiscard]] Value inRow(int offset, const FormulaNode& expression) const override;

    /// The end of the rows that share the first one's key; makes the last of them current.
    [[nodiscard]] std::size_t endOfGroup(const Group& group, RowRange rows);

    std::size_t row = 0;
    RowRange range;               ///< covered by a summary without a group's name
    RowRange whole;               ///< all rows of the report
    RowRange page;                ///< those that begin on the page
    std::vector<RowRange> groups; ///< open groups, outermost first
    int groupNumber = 0;          ///< of the innermost open group, from 1
    int pageNumber = 0;
    int pageCount = 0; ///< 0 while unknown
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
    mutable std::size_t m_summaryRow = SIZE_MAX; // while evaluating a summary or a neighbour
    struct Kept {
        std::size_t first;
        std::size_t last;
        Accumulator sum;
    };
    mutable std::map<const FormulaNode*, Kept> m_kept; // lets a running summary continue where it was
};

/// A definition with its formulas bound to the rows of its queries.
struct BoundReport {
    Definition definition;
    RowSet rows; ///< in report order
    std::map<QString, BoundReport> subreports;
    std::map<QString, RowRange> byLink; ///< of a linked subreport: row ranges by link key
    int linkedIndex = -1;               ///< the main report's field for the link, -1 for none

    /// The rows of a linked subreport that belong to a value; none for Null.
    [[nodiscard]] RowRange linkedTo(const Value& value) const;
};

/// Shares of the work done when rows are read and when loadReport() ends, in percent.
inline constexpr int RowsRead = 15;
inline constexpr int DataRead = 30;

/// The key by which equal link values match.
[[nodiscard]] QString linkKey(const Value& value);

/// True for the names of all rows and of a page's rows, unless a group has that name.
[[nodiscard]] bool isGroupOfAll(const QString& name);
[[nodiscard]] bool isGroupOfPage(const QString& name);

/// Reads and sorts the rows of a report and its subreports. Raises ReportError for unknown fields, cleared slots and
/// invalid selections; failures of the store get the query's position. Nothing if cancelled.
[[nodiscard]] std::optional<BoundReport> loadReport(const Definition& definition, const RunRequest& request,
                                                    const DatabaseProvider& databaseOf, const RunFacts& facts,
                                                    const Progress& progress);

} // namespace orlo::reporting
