#include "reporting/FormulaFunctions.h"
#include "reporting/FormulaLexer.h"

#include <array>

namespace orlo::reports
{

namespace
{

using Kind = FormulaNode::Kind;
using Type = FormulaNode::Type;
using TokenKind = FormulaToken::Kind;

// Reading, computing and freeing a formula go as deep as its brackets: these bounds keep a hostile text off the stack.
constexpr int DeepestNesting = 200;
constexpr qsizetype LongestFormula = 100'000;

struct Comparison {
    QLatin1StringView sign;
    Kind kind;
};
constexpr std::array Comparisons{
    Comparison{QLatin1StringView("="), Kind::Equal},   Comparison{QLatin1StringView("<>"), Kind::Unequal},
    Comparison{QLatin1StringView("<"), Kind::Less},    Comparison{QLatin1StringView("<="), Kind::LessOrEqual},
    Comparison{QLatin1StringView(">"), Kind::Greater}, Comparison{QLatin1StringView(">="), Kind::GreaterOrEqual},
};

Type literalType(const Value& value)
{
    if (value.isBool())
        return Type::Condition;
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
            fail(QStringLiteral("The formula should end here."));
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
            fail(QStringLiteral("\"%1\" is missing here.").arg(QLatin1StringView(sign)));
    }
    void expectWord(const char* word)
    {
        if (!acceptWord(word))
            fail(QStringLiteral("\"%1\" is missing here.").arg(QLatin1StringView(word)));
    }

    [[nodiscard]] static FormulaNode made(Kind kind, Type type, Place place, std::vector<FormulaNode> children)
    {
        FormulaNode node;
        node.kind = kind;
        node.type = type;
        node.place = place;
        for (const FormulaNode& child : children)
            node.depth = std::max(node.depth, child.depth + 1);
        if (node.depth > DeepestNesting)
            throw ReportError(platform::SyntaxError, QStringLiteral("The formula is nested too deeply."), place);
        node.children = std::move(children);
        return node;
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
        return made(Kind::If, type, place, std::move(parts));
    }

    template <typename Operand>
    FormulaNode chain(Kind kind, const char* word, Operand operand)
    {
        const Place place = token().place;
        std::vector<FormulaNode> children;
        children.push_back(operand());
        while (acceptWord(word))
            children.push_back(operand());
        return children.size() == 1 ? std::move(children.front())
                                    : made(kind, Type::Condition, place, std::move(children));
    }

    FormulaNode disjunction()
    {
        return chain(Kind::Or, "or", [this] { return chain(Kind::And, "and", [this] { return negation(); }); });
    }

    FormulaNode negation()
    {
        const Place place = token().place;
        if (!acceptWord("not"))
            return comparison();
        const Nesting nesting(*this);
        std::vector<FormulaNode> child;
        child.push_back(negation());
        return made(Kind::Not, Type::Condition, place, std::move(child));
    }

    FormulaNode comparison()
    {
        std::vector<FormulaNode> parts;
        parts.push_back(joined());
        const Place place = token().place;
        for (const Comparison& comparison : Comparisons)
            if (isSign(comparison.sign)) {
                ++m_at;
                parts.push_back(joined());
                return made(comparison.kind, Type::Condition, place, std::move(parts));
            }
        if (acceptWord("like")) {
            parts.push_back(joined());
            return made(Kind::Like, Type::Condition, place, std::move(parts));
        }
        if (!acceptWord("in"))
            return std::move(parts.front());
        if (acceptSign("[")) {
            do
                parts.push_back(joined());
            while (acceptSign(","));
            expectSign("]");
            return made(Kind::InList, Type::Condition, place, std::move(parts));
        }
        parts.push_back(joined());
        expectWord("to");
        parts.push_back(joined());
        return made(Kind::InRange, Type::Condition, place, std::move(parts));
    }

    /// "&" binds below "+" and "-": "Total: " & 1 + 2 joins the sum.
    FormulaNode joined()
    {
        FormulaNode left = sum();
        while (isSign(QLatin1StringView("&"))) {
            const FormulaToken& sign = m_tokens[m_at++];
            FormulaNode right = sum();
            left = extended(Kind::Join, Type::Text, sign.place, std::move(left), std::move(right));
        }
        return left;
    }

    FormulaNode sum()
    {
        FormulaNode left = product();
        while (isSign(QLatin1StringView("+")) || isSign(QLatin1StringView("-"))) {
            const FormulaToken& sign = m_tokens[m_at++];
            const Kind kind = sign.text == u'+' ? Kind::Add : Kind::Subtract;
            FormulaNode right = product();
            const Type type = left.type == right.type ? left.type : Type::Any;
            left = extended(kind, type, sign.place, std::move(left), std::move(right));
        }
        return left;
    }

    FormulaNode product()
    {
        FormulaNode left = factor();
        while (isSign(QLatin1StringView("*")) || isSign(QLatin1StringView("/"))) {
            const FormulaToken& sign = m_tokens[m_at++];
            const Kind kind = sign.text == u'*' ? Kind::Multiply : Kind::Divide;
            FormulaNode right = factor();
            left = extended(kind, Type::Number, sign.place, std::move(left), std::move(right));
        }
        return left;
    }

    /// Joins the operand of a left-associative operator; the same operator again only lengthens the list.
    FormulaNode extended(Kind kind, Type type, Place place, FormulaNode left, FormulaNode right)
    {
        // A bracket keeps its operation apart: "(a - b) - c" may run on, "a - (b - c)" is another matter.
        if (left.kind == kind && !left.bracketed) {
            left.depth = std::max(left.depth, right.depth + 1);
            left.type = type;
            left.children.push_back(std::move(right));
            return left;
        }
        std::vector<FormulaNode> children;
        children.push_back(std::move(left));
        children.push_back(std::move(right));
        return made(kind, type, place, std::move(children));
    }

    FormulaNode factor()
    {
        const Place place = token().place;
        if (!acceptSign("-"))
            return primary();
        const Nesting nesting(*this);
        std::vector<FormulaNode> child;
        child.push_back(factor());
        return made(Kind::Negate, Type::Number, place, std::move(child));
    }

    FormulaNode primary()
    {
        const FormulaToken& here = token();
        FormulaNode node;
        node.place = here.place;
        switch (here.kind) {
        case TokenKind::Number:
        case TokenKind::Text:
        case TokenKind::Date:
            node.literal = here.value;
            node.type = literalType(here.value);
            ++m_at;
            return node;
        case TokenKind::Field:
            node.kind = Kind::Field;
            node.name = here.text;
            ++m_at;
            return node;
        case TokenKind::Name:
            return named();
        case TokenKind::Sign:
            if (acceptSign("(")) {
                node = expression();
                expectSign(")");
                node.bracketed = true;
                return node;
            }
            break;
        case TokenKind::End:
            break;
        }
        fail(here.kind == TokenKind::End ? QStringLiteral("The formula breaks off here.")
                                         : QStringLiteral("\"%1\" has no meaning here.").arg(here.text));
    }

    FormulaNode named()
    {
        const FormulaToken& here = m_tokens[m_at++];
        FormulaNode node;
        node.place = here.place;
        const auto is = [&](const char* word) {
            return here.text.compare(QLatin1StringView(word), Qt::CaseInsensitive) == 0;
        };
        if (is("true") || is("false")) {
            node.literal = Value(is("true"));
            node.type = Type::Condition;
            return node;
        }
        if (const auto word = wordNamed(here.text)) {
            if (acceptSign("("))
                expectSign(")");
            node.kind = Kind::Word;
            node.index = int(*word);
            node.type = typeOf(*word);
            return node;
        }
        const auto summary = summaryNamed(here.text);
        const int function = functionIndex(here.text);
        if (!summary && function < 0 && !is("iif"))
            throw ReportError(platform::UnknownName,
                              QStringLiteral("\"%1\" is no known word or function.").arg(here.text), here.place);
        std::vector<FormulaNode> arguments = bracketed();
        if (is("iif")) {
            if (arguments.size() != 3)
                throw ReportError(platform::SyntaxError, QStringLiteral("IIf takes three arguments."), here.place);
            const Type type = arguments[1].type == arguments[2].type ? arguments[1].type : Type::Any;
            return made(Kind::If, type, here.place, std::move(arguments));
        }
        return summary ? summarised(*summary, here, std::move(arguments))
                       : called(function, here, std::move(arguments));
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

    FormulaNode summarised(Summary summary, const FormulaToken& here, std::vector<FormulaNode> arguments) const
    {
        QString group;
        if (!arguments.empty() && arguments.back().kind == Kind::Literal && arguments.back().literal.isText()) {
            group = arguments.back().literal.toText();
            arguments.pop_back();
        }
        if (arguments.size() > 1 || (arguments.empty() && summary != Summary::Count))
            throw ReportError(platform::SyntaxError,
                              QStringLiteral("%1 takes one expression and, if wanted, a group's name.").arg(here.text),
                              here.place);
        const bool keepsType = summary == Summary::Minimum || summary == Summary::Maximum;
        const Type type = keepsType ? arguments.front().type : Type::Number;
        FormulaNode node = made(Kind::Summary, type, here.place, std::move(arguments));
        node.index = int(summary);
        node.name = group;
        return node;
    }

    static FormulaNode called(int function, const FormulaToken& here, std::vector<FormulaNode> arguments)
    {
        const FormulaFunction& known = functionAt(function);
        const int count = int(arguments.size());
        if (count < known.least || count > known.most)
            throw ReportError(platform::SyntaxError,
                              QStringLiteral("%1 doesn't take %2 arguments.").arg(known.name).arg(count), here.place);
        FormulaNode node = made(Kind::Call, known.type, here.place, std::move(arguments));
        node.index = function;
        node.name = known.name;
        if (function == functionIndex(u"Date"))
            foldDate(node, known);
        return node;
    }

    /// A date written with numbers is known at once, so an impossible one fails before any row is read.
    static void foldDate(FormulaNode& node, const FormulaFunction& date)
    {
        std::vector<Value> values;
        for (const FormulaNode& child : node.children) {
            if (child.kind != Kind::Literal)
                return;
            values.push_back(child.literal);
        }
        FormulaNode folded;
        folded.literal = date.compute(values, node.place);
        folded.type = Type::Date;
        folded.place = node.place;
        node = std::move(folded);
    }

    std::vector<FormulaToken> m_tokens;
    std::size_t m_at = 0;
    int m_nesting = 0;
};

} // namespace

Formula::Formula(QStringView text, Place origin) : m_empty(false)
{
    if (text.size() > LongestFormula)
        throw ReportError(platform::SyntaxError, QStringLiteral("The formula is too long."), origin);
    m_root = Parser(formulaTokens(text, origin)).run();
}

} // namespace orlo::reports
