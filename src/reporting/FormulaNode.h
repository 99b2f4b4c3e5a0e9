#pragma once

#include "reporting/Formula.h"
#include "store/engine/Value.h"

#include <variant>
#include <vector>

namespace orlo::reporting
{

struct FormulaFunction;

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
    std::vector<FormulaNode> children;

    template <typename Part>
    [[nodiscard]] const Part* as() const
    {
        return std::get_if<Part>(&part);
    }
};

} // namespace orlo::reporting
