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

/// A node of a parsed formula.
struct FormulaNode {
    /// What is known of a node's type before it is computed; a field can be of any type.
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
    /// A function or an operator applied to the children.
    struct Call {
        const FormulaFunction* function;
    };
    /// "and" or "or"; evaluates only as many children as needed.
    struct Connected {
        bool isOr;
    };
    /// "if": the condition, the value and, optionally, the other value.
    struct Choice {
    };
    struct Summarised {
        Summary summary;
        QString group;        ///< "" for the rows around its own place
        bool running = false; ///< only up to the current row
    };
    /// A copy of the argument before it: a single value in a list is both ends of a range.
    struct Again {
    };
    /// The only child, evaluated in another row.
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
    Formula() = default;
    /// Parses a text whose first character is at the given position. Raises ReportError 3075.
    explicit Formula(QStringView text, Place origin = {1, 1});

    /// True if there is no formula.
    [[nodiscard]] bool isEmpty() const { return m_empty; }
    /// The root of the parsed formula.
    [[nodiscard]] const FormulaNode& root() const { return m_root; }
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
    FormulaNode m_root;
    bool m_empty = true;
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
