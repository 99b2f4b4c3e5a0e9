#include "reporting/FormulaFunctions.h"
#include "reporting/FormulaLexer.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace orlo::reporting
{

namespace
{

using Type = FormulaNode::Type;
using TokenKind = FormulaToken::Kind;

// Parsing, evaluating and freeing a formula recurse as deep as its nesting: these limits protect the stack.
constexpr int DeepestNesting = 200;
constexpr qsizetype MaxFormulaSize = 100'000;

using Sign = QLatin1StringView;
constexpr std::array ComparisonSigns{Sign("="), Sign("<>"), Sign("<"), Sign("<="), Sign(">"), Sign(">=")};

Type literalType(const Value& value)
{
    if (value.isNumber())
        return Type::Number;
    return value.isDate() ? Type::Date : Type::Text;
}

class Parser
{
public:
    explicit Parser(std::vector<FormulaToken> tokens) : m_tokens(std::move(tokens)) {}

    FormulaNode run()
    {
        FormulaNode root = expression();
        if (token().kind != TokenKind::End)
            fail(QStringLiteral("The formula should end before \"%1\".").arg(token().written));
        return root;
    }

private:
    [[nodiscard]] const FormulaToken& token() const { return m_tokens[m_at]; }
    [[noreturn]] void fail(const QString& message) const
    {
        throw ReportError(platform::SyntaxError, message, token().place);
    }
    [[nodiscard]] bool isSign(QLatin1StringView sign) const
    {
        return token().kind == TokenKind::Sign && token().text == sign;
    }
    [[nodiscard]] bool isWord(QLatin1StringView word) const
    {
        return token().kind == TokenKind::Name && token().text.compare(word, Qt::CaseInsensitive) == 0;
    }
    bool acceptSign(const char* sign)
    {
        const bool found = isSign(QLatin1StringView(sign));
        m_at += found;
        return found;
    }
    bool acceptWord(const char* word)
    {
        const bool found = isWord(QLatin1StringView(word));
        m_at += found;
        return found;
    }
    void expectSign(const char* sign)
    {
        if (!acceptSign(sign))
            failWithout(sign);
    }
    void expectWord(const char* word)
    {
        if (!acceptWord(word))
            failWithout(word);
    }
    [[noreturn]] void failWithout(const char* wanted) const
    {
        const QLatin1StringView missing(wanted);
        fail(token().kind == TokenKind::End
                 ? QStringLiteral("\"%1\" is missing at the end.").arg(missing)
                 : QStringLiteral("\"%1\" is missing before \"%2\".").arg(missing, token().written));
    }

    template <typename Part>
    [[nodiscard]] static FormulaNode made(Part part, Type type, Place place, std::vector<FormulaNode> children = {})
    {
        FormulaNode node;
        node.part = std::move(part);
        node.type = type;
        node.place = place;
        for (const FormulaNode& child : children)
            node.depth = std::max(node.depth, child.depth + 1);
        if (node.depth > DeepestNesting)
            throw ReportError(platform::SyntaxError, QStringLiteral("The formula is nested too deeply."), place);
        node.children = std::move(children);
        return node;
    }

    template <typename... Operands>
    [[nodiscard]] static FormulaNode operation(const char* sign, Place place, Operands... operands)
    {
        std::vector<FormulaNode> children;
        (children.push_back(std::move(operands)), ...);
        return operationOf(sign, place, std::move(children));
    }
    [[nodiscard]] static FormulaNode operationOf(const char* sign, Place place, std::vector<FormulaNode> children)
    {
        const FormulaFunction& function = operatorNamed(Sign(sign));
        return made(FormulaNode::Call{&function}, function.type, place, std::move(children));
    }

    class Nesting
    {
    public:
        explicit Nesting(Parser& parser) : m_parser(parser)
        {
            if (++m_parser.m_nesting > DeepestNesting)
                m_parser.fail(QStringLiteral("The formula is nested too deeply."));
        }
        ~Nesting() { --m_parser.m_nesting; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;

    private:
        Parser& m_parser;
    };

    FormulaNode expression()
    {
        const Nesting nesting(*this);
        const Place place = token().place;
        if (!acceptWord("if"))
            return disjunction();
        std::vector<FormulaNode> parts;
        parts.push_back(expression());
        expectWord("then");
        parts.push_back(expression());
        if (acceptWord("else"))
            parts.push_back(expression());
        const Type type = parts.size() == 3 && parts[1].type == parts[2].type ? parts[1].type : Type::Any;
        return made(FormulaNode::Choice{}, type, place, std::move(parts));
    }

    template <typename Operand>
    FormulaNode chain(bool isOr, const char* word, Operand operand)
    {
        const Place place = token().place;
        std::vector<FormulaNode> children;
        children.push_back(operand());
        while (acceptWord(word))
            children.push_back(operand());
        return children.size() == 1 ? std::move(children.front())
                                    : made(FormulaNode::Connected{isOr}, Type::Condition, place, std::move(children));
    }

    FormulaNode disjunction()
    {
        return chain(true, "or", [this] { return chain(false, "and", [this] { return negation(); }); });
    }

    FormulaNode negation()
    {
        const Place place = token().place;
        if (!acceptWord("not"))
            return comparison();
        const Nesting nesting(*this);
        return operation("not", place, negation());
    }

    FormulaNode comparison()
    {
        FormulaNode left = joined();
        const Place place = token().place;
        for (const Sign sign : ComparisonSigns)
            if (isSign(sign)) {
                ++m_at;
                return operation(sign.data(), place, std::move(left), joined());
            }
        if (!isWord(QLatin1StringView("not")))
            return worded(std::move(left), place);
        ++m_at;
        const std::size_t before = m_at;
        FormulaNode compared = worded(std::move(left), place);
        if (m_at == before)
            failWithout("like");
        return operation("not", place, std::move(compared));
    }

    // The comparisons spelled as words: like, startswith, in.
    FormulaNode worded(FormulaNode left, Place place)
    {
        for (const char* word : {"like", "startswith"})
            if (acceptWord(word))
                return operation(word, place, std::move(left), joined());
        if (!acceptWord("in"))
            return left;
        std::vector<FormulaNode> parts;
        parts.push_back(std::move(left));
        if (acceptSign("[")) {
            do
                range(parts);
            while (acceptSign(","));
            expectSign("]");
        } else if (!range(parts)) { // a text within a text
            parts.pop_back();
            return operationOf("within", place, std::move(parts));
        }
        return operationOf("in", place, std::move(parts));
    }

    // Parses "a to b"; false for a single value, which is both ends.
    bool range(std::vector<FormulaNode>& parts)
    {
        parts.push_back(joined());
        const bool isRange = acceptWord("to");
        parts.push_back(isRange ? joined() : made(FormulaNode::Again{}, parts.back().type, parts.back().place));
        return isRange;
    }

    // "&" binds weaker than "+" and "-": "Total: " & 1 + 2 appends the sum.
    FormulaNode joined()
    {
        return operations({"&"}, false, [this] { return sum(); });
    }
    FormulaNode sum()
    {
        return operations({"+", "-"}, false, [this] {
            return operations({"mod"}, true, [this] {
                return operations({"\\"}, false, [this] {
                    return operations({"*", "/"}, false, [this] { return factor(); });
                });
            });
        });
    }

    // Operators of one precedence, left to right.
    template <typename Operand>
    FormulaNode operations(std::initializer_list<const char*> signs, bool word, Operand operand)
    {
        FormulaNode left = operand();
        for (;;) {
            const auto sign = std::find_if(signs.begin(), signs.end(), [&](const char* one) {
                return word ? isWord(QLatin1StringView(one)) : isSign(QLatin1StringView(one));
            });
            if (sign == signs.end())
                return left;
            const Place place = m_tokens[m_at++].place;
            left = extended(operatorNamed(Sign(*sign)), place, std::move(left), operand());
        }
    }

    // Adds an operand of a left-associative operator; repeating the operator only lengthens its list.
    FormulaNode extended(const FormulaFunction& function, Place place, FormulaNode left, FormulaNode right)
    {
        Type type = function.type;
        if (type == Type::Any && left.type == right.type) // the difference between two dates is a number
            type = left.type == Type::Date ? Type::Number : left.type;
        // "(a - b) - c" lengthens the list, too; "a - (b - c)" doesn't.
        if (const auto* call = left.as<FormulaNode::Call>(); call && call->function == &function) {
            left.depth = std::max(left.depth, right.depth + 1);
            left.type = type;
            left.children.push_back(std::move(right));
            return left;
        }
        std::vector<FormulaNode> children;
        children.push_back(std::move(left));
        children.push_back(std::move(right));
        return made(FormulaNode::Call{&function}, type, place, std::move(children));
    }

    FormulaNode factor()
    {
        const Place place = token().place;
        const bool negative = isSign(Sign("-"));
        if (!negative && !isSign(Sign("+")))
            return operations({"^"}, false, [this] { return isSign(Sign("-")) ? factor() : subscripted(); });
        ++m_at;
        const Nesting nesting(*this);
        return negative ? operation("negative", place, factor()) : factor();
    }

    // {Text}[1], {Text}[1 to 3]
    FormulaNode subscripted()
    {
        FormulaNode node = primary();
        while (isSign(Sign("["))) {
            const Nesting nesting(*this);
            const Place place = m_tokens[m_at++].place;
            std::vector<FormulaNode> parts;
            parts.push_back(std::move(node));
            parts.push_back(joined());
            if (acceptWord("to"))
                parts.push_back(joined());
            expectSign("]");
            node = operationOf("[", place, std::move(parts));
        }
        return node;
    }

    FormulaNode primary()
    {
        const FormulaToken& here = token();
        switch (here.kind) {
        case TokenKind::Number:
        case TokenKind::Text:
        case TokenKind::Date:
            ++m_at;
            return made(FormulaNode::Literal{here.value}, literalType(here.value), here.place);
        case TokenKind::Field:
            ++m_at;
            return made(FormulaNode::Field{here.text}, Type::Any, here.place);
        case TokenKind::Name:
            return named();
        case TokenKind::Sign:
            if (acceptSign("(")) {
                FormulaNode node = expression();
                expectSign(")");
                return node;
            }
            break;
        case TokenKind::End:
            break;
        }
        fail(here.kind == TokenKind::End ? QStringLiteral("The formula breaks off here.")
                                         : QStringLiteral("\"%1\" has no meaning here.").arg(here.written));
    }

    FormulaNode named()
    {
        const FormulaToken& here = m_tokens[m_at++];
        const auto is = [&](const char* word) {
            return here.text.compare(QLatin1StringView(word), Qt::CaseInsensitive) == 0;
        };
        if (is("true") || is("false"))
            return made(FormulaNode::Literal{Value(is("true"))}, Type::Condition, here.place);
        if (const WordEntry* word = wordNamed(here.text)) {
            if (acceptSign("("))
                expectSign(")");
            return made(FormulaNode::NamedWord{word->word}, word->type, here.place);
        }
        const auto summary = summaryNamed(here.text);
        const FormulaFunction* function = functionNamed(here.text);
        const bool neighbour = is("previous") || is("next");
        if (!summary && !function && !neighbour && !is("iif"))
            throw ReportError(platform::UnknownName,
                              QStringLiteral("\"%1\" is no known word or function.").arg(here.text), here.place);
        std::vector<FormulaNode> arguments = bracketed();
        if (neighbour) {
            requireCount(here, arguments, 1);
            const Type type = arguments[0].type;
            return made(FormulaNode::Neighbour{is("next") ? 1 : -1}, type, here.place, std::move(arguments));
        }
        if (is("iif")) {
            requireCount(here, arguments, 3);
            const Type type = arguments[1].type == arguments[2].type ? arguments[1].type : Type::Any;
            return made(FormulaNode::Choice{}, type, here.place, std::move(arguments));
        }
        return summary ? summarised(*summary, here, std::move(arguments))
                       : called(*function, here, std::move(arguments));
    }

    static void requireCount(const FormulaToken& here, const std::vector<FormulaNode>& arguments, int min, int max = -1)
    {
        const int count = int(arguments.size());
        if (count < min || count > std::max(min, max))
            throw ReportError(platform::SyntaxError,
                              QStringLiteral("%1 doesn't take %2 arguments.").arg(here.text).arg(count), here.place);
    }

    std::vector<FormulaNode> bracketed()
    {
        expectSign("(");
        std::vector<FormulaNode> arguments;
        if (acceptSign(")"))
            return arguments;
        do
            arguments.push_back(expression());
        while (acceptSign(","));
        expectSign(")");
        return arguments;
    }

    FormulaNode summarised(SummaryName name, const FormulaToken& here, std::vector<FormulaNode> arguments) const
    {
        QString group;
        if (!arguments.empty())
            if (const auto* last = arguments.back().as<FormulaNode::Literal>(); last && last->value.isText()) {
                group = last->value.toText();
                arguments.pop_back();
            }
        if (arguments.size() > 1 || (arguments.empty() && name.summary != Summary::Count))
            throw ReportError(platform::SyntaxError,
                              QStringLiteral("%1 takes one expression and, if wanted, a group's name.").arg(here.text),
                              here.place);
        const bool keepsType = name.summary == Summary::Minimum || name.summary == Summary::Maximum;
        const Type type = keepsType ? arguments.front().type : Type::Number;
        return made(FormulaNode::Summarised{name.summary, group, name.running}, type, here.place, std::move(arguments));
    }

    static FormulaNode called(const FormulaFunction& function, const FormulaToken& here,
                              std::vector<FormulaNode> arguments)
    {
        requireCount(here, arguments, function.min, function.max);
        FormulaNode node = made(FormulaNode::Call{&function}, function.type, here.place, std::move(arguments));
        if (&function == functionNamed(u"Date"))
            foldDate(node, function);
        return node;
    }

    // Evaluates a literal date while parsing, so an impossible one fails before any row is read.
    static void foldDate(FormulaNode& node, const FormulaFunction& date)
    {
        std::vector<Value> values;
        for (const FormulaNode& child : node.children) {
            const auto* literal = child.as<FormulaNode::Literal>();
            if (!literal)
                return;
            values.push_back(literal->value);
        }
        const Place place = node.place;
        node = made(FormulaNode::Literal{date.compute(values, place)}, Type::Date, place);
    }

    std::vector<FormulaToken> m_tokens;
    std::size_t m_at = 0;
    int m_nesting = 0;
};

} // namespace

Formula::Formula(QStringView text, Place origin)
{
    if (text.size() > MaxFormulaSize)
        throw ReportError(platform::SyntaxError, QStringLiteral("The formula is too long."), origin);
    m_root = std::make_unique<FormulaNode>(Parser(formulaTokens(text, origin)).run());
}

} // namespace orlo::reporting
