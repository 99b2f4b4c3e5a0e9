#pragma once

#include "reporting/Definition.h"
#include "reporting/Renderer.h"

namespace orlo::reports
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

    [[nodiscard]] std::size_t size() const { return last - first; }
    friend bool operator==(const RowRange&, const RowRange&) = default;
};

/// What the words of the formula language stand for in one run.
struct RunFacts {
    QString reportTitle;
    QDate printDate;
    QTime printTime;
};

/// Formulas' view of the rows: a current row, the groups around it, the page being made.
class RowScope final : public FormulaScope
{
public:
    RowScope(const Definition& definition, const RowSet& rows, const RunFacts& facts);

    [[nodiscard]] Value field(int index) const override;
    [[nodiscard]] Value word(Word word) const override;
    [[nodiscard]] Value summary(const FormulaNode& node) const override;

    std::size_t row = 0;
    RowRange range;               ///< what a summary without a group's name covers
    std::vector<RowRange> groups; ///< the open groups, outermost first
    int pageNumber = 0;
    int pageCount = 0; ///< 0 while it isn't known
    bool repeated = false;

private:
    [[nodiscard]] Value computed(Summary summary, const FormulaNode* expression, RowRange rows) const;
    [[nodiscard]] RowRange rangeOf(const FormulaNode& node) const;

    const Definition& m_definition;
    const RowSet& m_rows;
    const RunFacts& m_facts;
    mutable std::size_t m_summaryRow = SIZE_MAX;
    struct Kept {
        RowRange range;
        Value value;
    };
    mutable std::map<const FormulaNode*, Kept> m_kept; // a summary used in each detail row is computed once a group
};

/// One report's definition, its formulas bound to the rows that its queries gave.
struct BoundReport {
    Definition definition;
    RowSet rows; ///< in the order of the report
    std::map<QString, BoundReport> subreports;
    std::map<QString, RowRange> byLink; ///< of a linked subreport: its rows by the link's key
    int linkedIndex = -1;               ///< the main report's field of the link, -1 for none
};

/// The key under which equal values of a link meet.
[[nodiscard]] QString linkKey(const Value& value);

/// Reads and sorts the rows of a report and of its subreports. Raises ReportError for unknown fields, cleared slots, a
/// selection that can't be read; what the store raises gets the query's place. Nothing if progress cancelled it.
[[nodiscard]] std::optional<BoundReport> loadReport(const Definition& definition, const RunRequest& request,
                                                    const DatabaseProvider& databaseOf, const RunFacts& facts,
                                                    const Progress& progress);

} // namespace orlo::reports
