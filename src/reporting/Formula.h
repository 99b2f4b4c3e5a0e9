#pragma once

#include "reporting/ReportError.h"
#include "store/engine/Value.h"

#include <functional>
#include <span>
#include <vector>

namespace orlo::reports
{

using store::Value;

/// The words of the language that stand for what the run knows.
enum class Word {
    PageNumber,
    PageCount,
    PrintDate,
    PrintTime,
    ReportTitle,
    ProgramName,
    RecordNumber,
    Repeated,
    NewLine
};

/// What a summary computes over the rows of a group or of the whole report.
enum class Summary { Sum, Count, Average, Minimum, Maximum, DistinctCount };

/// One part of a formula that was read.
struct FormulaNode {
    enum class Kind {
        Literal,
        Field,
        Word,
        Call,
        Summary,
        Not,
        Negate,
        And,
        Or,
        Add,
        Subtract,
        Join,
        Multiply,
        Divide,
        Equal,
        Unequal,
        Less,
        LessOrEqual,
        Greater,
        GreaterOrEqual,
        InRange,
        InList,
        Like,
        If
    };
    /// What is known of a part's value before it is computed; a field may be anything.
    enum class Type { Any, Condition, Number, Text, Date };

    Kind kind = Kind::Literal;
    Type type = Type::Any;
    Place place;
    int depth = 1;
    Value literal;
    QString name; ///< of a field or function; a summary's group
    bool bracketed = false;
    int index = -1; ///< of the bound field, the function, the word or the summary
    std::vector<FormulaNode> children;
};

/// Where a formula's fields, words and summaries take their values from.
class FormulaScope
{
public:
    virtual ~FormulaScope() = default;
    [[nodiscard]] virtual Value field(int index) const = 0;
    [[nodiscard]] virtual Value word(Word word) const = 0;
    /// The summary of a node, whose only child is computed for each row; without a child the rows are counted.
    [[nodiscard]] virtual Value summary(const FormulaNode& node) const = 0;
};

/// An expression of the report language. Keywords, functions and field names are read without regard to case.
class Formula
{
public:
    Formula() = default;
    /// Reads a text; its first character stands at the given place. Raises ReportError 3075 for what can't be read.
    explicit Formula(QStringView text, Place origin = {1, 1});

    [[nodiscard]] bool isEmpty() const { return m_empty; }
    [[nodiscard]] const FormulaNode& root() const { return m_root; }
    /// True if the text uses the page's number or the number of pages.
    [[nodiscard]] bool usesPages() const;

    /// Raises ReportError 13 unless the formula is a condition whose comparisons can hold.
    void requireCondition() const;
    /// Gives every field its index; -1 from the function raises ReportError 3061 with the field's place.
    void bind(const std::function<int(const QString&)>& indexOf);
    /// Computes the value. Raises ReportError 13, 11, 6 or 5 with the place of the part that can't be computed.
    [[nodiscard]] Value evaluate(const FormulaScope& scope) const;
    /// True only if the formula gives true; Null is not.
    [[nodiscard]] bool holds(const FormulaScope& scope) const;

private:
    FormulaNode m_root;
    bool m_empty = true;
};

/// Computes one node, as Formula::evaluate() does for the root.
[[nodiscard]] Value evaluateNode(const FormulaNode& node, const FormulaScope& scope);

/// Orders two values that aren't Null: numbers and yes/no by size, dates by time, texts without regard to case.
/// Raises ReportError 13 for kinds that don't compare.
[[nodiscard]] int compareValues(const Value& a, const Value& b, Place place = {});

/// A value as a report prints it: "" for Null, the short date, the plain number.
[[nodiscard]] QString displayText(const Value& value);

} // namespace orlo::reports
