#pragma once

#include "reporting/ReportError.h"

#include <QString>

#include <functional>
#include <memory>

namespace orlo::store
{
class Value;
}

namespace orlo::reporting
{

using store::Value;

struct FormulaNode;

/// The words of the language that stand for facts about the run.
enum class Word {
    PageNumber,
    PageCount,
    PageOfPages,
    PrintDate,
    PrintTime,
    ReportTitle,
    ProgramName,
    RecordNumber,
    GroupNumber,
    OnFirstRecord,
    OnLastRecord,
    Repeated,
    NewLine
};

/// What a summary computes over the rows of a group or of the whole report.
enum class Summary { Sum, Count, Average, Minimum, Maximum, DistinctCount, Median };

/// Where a formula's fields, words and summaries get their values.
class FormulaScope
{
public:
    virtual ~FormulaScope() = default;
    /// The field that Formula::bind() gave this index.
    [[nodiscard]] virtual Value field(int index) const = 0;
    /// A word's value at the formula's place.
    [[nodiscard]] virtual Value word(Word word) const = 0;
    /// The summary of a node, whose only child is evaluated for each row; without a child the rows are counted.
    [[nodiscard]] virtual Value summary(const FormulaNode& node) const = 0;
    /// An expression's value in a row before or after the current one; Null if there is none.
    [[nodiscard]] virtual Value inRow(int offset, const FormulaNode& expression) const = 0;
};

/// An expression of the report language. Keywords, functions and field names ignore case.
class Formula
{
public:
    Formula();
    ~Formula();
    Formula(const Formula& other);
    Formula& operator=(const Formula& other);
    Formula(Formula&& other) noexcept;
    Formula& operator=(Formula&& other) noexcept;
    /// Parses a text whose first character is at the given position. Raises ReportError 3075.
    explicit Formula(QStringView text, Place origin = {1, 1});

    /// True if there is no formula.
    [[nodiscard]] bool isEmpty() const { return !m_root; }
    /// The root of the parsed formula; of none, Null.
    [[nodiscard]] const FormulaNode& root() const;
    /// Where it stands in its file.
    [[nodiscard]] Place place() const;
    /// True if any node passes the test.
    [[nodiscard]] bool any(const std::function<bool(const FormulaNode&)>& test) const;

    /// Raises ReportError 13 unless the formula is a condition with comparable operands.
    void requireCondition() const;
    /// Gives every field its index; if the function returns -1, raises ReportError 3061 with the field's position.
    void bind(const std::function<int(const QString&)>& indexOf);
    /// Evaluates the formula. Raises ReportError 13, 11, 6 or 5 with the position of the part that failed.
    [[nodiscard]] Value evaluate(const FormulaScope& scope) const;
    /// True only if the formula yields true; Null doesn't count.
    [[nodiscard]] bool holds(const FormulaScope& scope) const;

private:
    std::unique_ptr<FormulaNode> m_root;
};

/// Evaluates one node, as Formula::evaluate() does for the root.
[[nodiscard]] Value evaluateNode(const FormulaNode& node, const FormulaScope& scope);

/// Compares two values, neither of them Null: numbers and yes/no by size, dates by time, texts ignoring case. A text
/// that reads as a number or date is compared as one with a number or date. Raises ReportError 13 for kinds that can't
/// be compared.
[[nodiscard]] int compareValues(const Value& a, const Value& b, Place place = {});

/// A value as a report prints it: "" for Null, the short date, the plain number.
[[nodiscard]] QString displayText(const Value& value);

} // namespace orlo::reporting
