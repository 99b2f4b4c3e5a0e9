#pragma once

#include "reporting/ReportError.h"
#include "store/engine/Value.h"

#include <functional>
#include <span>
#include <variant>
#include <vector>

namespace orlo::reporting
{

using store::Value;

struct FormulaFunction;

/// The words of the language that stand for what the run knows.
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

/// One part of a formula that was read.
struct FormulaNode {
    /// What is known of a part's value before it is computed; a field may be anything.
    enum class Type { Any, Condition, Number, Text, Date };

    struct Literal {
        Value value;
    };
    struct Field {
        QString name;
        int index = -1; ///< of the bound field
    };
    struct NamedWord {
        Word word;
    };
    /// A function or an operator of the children.
    struct Call {
        const FormulaFunction* function;
    };
    /// "and" or "or" of the children, which aren't computed further than needed.
    struct Connected {
        bool isOr;
    };
    /// "if": the condition, the value, and the other one if there is any.
    struct Choice {
    };
    struct Summarised {
        Summary summary;
        QString group;        ///< "" for the rows around the place where it stands
        bool running = false; ///< only up to the row that it stands in
    };
    /// The argument before it once more: a value alone in a list is both ends of a range.
    struct Again {
    };
    /// The only child in another row.
    struct Neighbour {
        int offset; ///< -1 for the row before, 1 for the next
    };

    std::variant<Literal, Field, NamedWord, Call, Connected, Choice, Again, Summarised, Neighbour> part;
    Type type = Type::Any;
    Place place;
    int depth = 1;
    bool bracketed = false;
    std::vector<FormulaNode> children;

    template <typename Part>
    [[nodiscard]] const Part* as() const
    {
        return std::get_if<Part>(&part);
    }
};

/// Where a formula's fields, words and summaries take their values from.
class FormulaScope
{
public:
    virtual ~FormulaScope() = default;
    /// The field that Formula::bind() gave this index.
    [[nodiscard]] virtual Value field(int index) const = 0;
    /// What a word stands for where the formula is computed.
    [[nodiscard]] virtual Value word(Word word) const = 0;
    /// The summary of a node, whose only child is computed for each row; without a child the rows are counted.
    [[nodiscard]] virtual Value summary(const FormulaNode& node) const = 0;
    /// The value of an expression in a row before or after the current one; Null where there is none.
    [[nodiscard]] virtual Value inRow(int offset, const FormulaNode& expression) const = 0;
};

/// An expression of the report language. Keywords, functions and field names are read without regard to case.
class Formula
{
public:
    Formula() = default;
    /// Reads a text; its first character stands at the given place. Raises ReportError 3075 for what can't be read.
    explicit Formula(QStringView text, Place origin = {1, 1});

    /// True for a formula that was left out.
    [[nodiscard]] bool isEmpty() const { return m_empty; }
    /// The whole as a part: what it consists of hangs below.
    [[nodiscard]] const FormulaNode& root() const { return m_root; }
    /// True if any part of the formula passes the test.
    [[nodiscard]] bool any(const std::function<bool(const FormulaNode&)>& test) const;

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

/// Orders two values that aren't Null: numbers and yes/no by size, dates by time, texts without regard to case; a text
/// that reads as a number or a date goes by it beside one. Raises ReportError 13 for kinds that don't compare.
[[nodiscard]] int compareValues(const Value& a, const Value& b, Place place = {});

/// A value as a report prints it: "" for Null, the short date, the plain number.
[[nodiscard]] QString displayText(const Value& value);

} // namespace orlo::reporting
