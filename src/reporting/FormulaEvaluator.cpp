#include "platform/Conversion.h"
#include "reporting/FormulaFunctions.h"

#include <QVarLengthArray>

#include <algorithm>

namespace orlo::reporting
{

namespace
{

using Type = FormulaNode::Type;

constexpr int UsualArguments = 4;

[[noreturn]] void mismatch(const QString& message, Place place)
{
    throw ReportError(platform::TypeMismatch, message, place);
}

// A condition's three values: yes, no, and Null if it depends on an empty field.
Value condition(const Value& value, Place place)
{
    if (value.isNull() || value.isBool())
        return value;
    mismatch(QStringLiteral("A condition is needed here."), place);
}

// Evaluates a node by its kind.
struct Evaluation {
    const FormulaNode& node;
    const FormulaScope& scope;

    [[nodiscard]] Value child(std::size_t i) const { return evaluateNode(node.children[i], scope); }

    Value operator()(const FormulaNode::Literal& part) const { return part.value; }
    Value operator()(const FormulaNode::Field& part) const { return scope.field(part.index); }
    Value operator()(const FormulaNode::NamedWord& part) const
    {
        return part.word == Word::NewLine ? Value(u"\n") : scope.word(part.word);
    }
    Value operator()(const FormulaNode::Again&) const { return {}; } // the call itself copies the value
    Value operator()(const FormulaNode::Summarised&) const { return scope.summary(node); }
    Value operator()(const FormulaNode::Neighbour& part) const
    {
        return scope.inRow(part.offset, node.children.front());
    }

    Value operator()(const FormulaNode::Call& part) const
    {
        QVarLengthArray<Value, UsualArguments> arguments;
        for (const FormulaNode& argument : node.children) {
            const bool again = argument.as<FormulaNode::Again>() != nullptr;
            arguments.push_back(again ? Value(arguments.back()) : evaluateNode(argument, scope));
            if (arguments.back().isNull() && !part.function->takesNull)
                return {};
        }
        return part.function->compute({arguments.data(), std::size_t(arguments.size())}, node.place);
    }

    // "And" stops at the first no, "or" at the first yes; otherwise a Null makes the result Null.
    Value operator()(const FormulaNode::Connected& part) const
    {
        bool open = false;
        for (const FormulaNode& one : node.children) {
            const Value value = condition(evaluateNode(one, scope), one.place);
            if (value.isNull())
                open = true;
            else if (value.toBool() == part.isOr)
                return part.isOr;
        }
        return open ? Value() : Value(!part.isOr);
    }

    Value operator()(const FormulaNode::Choice&) const
    {
        const Value test = condition(child(0), node.children.front().place);
        if (!test.isNull() && test.toBool())
            return child(1);
        return node.children.size() > 2 ? child(2) : Value();
    }
};

// True if a literal text reads as a value of the other type.
bool readsAs(const FormulaNode& node, Type type)
{
    const auto* literal = node.as<FormulaNode::Literal>();
    if (!literal)
        return true; // known only when evaluated
    const QString text = literal->value.toText();
    return type == Type::Number ? platform::readNumber(text).has_value()
                                : type == Type::Date && platform::readDate(text).has_value();
}

void requireComparable(const FormulaNode& a, const FormulaNode& b, Place place)
{
    const bool known = a.type != Type::Any && b.type != Type::Any && a.type != b.type;
    const bool reads = (a.type == Type::Text && readsAs(a, b.type)) || (b.type == Type::Text && readsAs(b, a.type));
    if (known && !reads)
        mismatch(QStringLiteral("The two sides are of different kinds and can't be compared."), place);
}

void requireConditionOf(const FormulaNode& node)
{
    if (node.type != Type::Condition)
        mismatch(QStringLiteral("A condition is needed here."), node.place);
    const auto* call = node.as<FormulaNode::Call>();
    if (call && call->function->compares)
        for (std::size_t i = 1; i < node.children.size(); ++i)
            requireComparable(node.children[0], node.children[i], node.place);
    if (node.as<FormulaNode::Connected>() || node.as<FormulaNode::Choice>() ||
        (call && call->function == &operatorNamed(QLatin1StringView("not"))))
        for (const FormulaNode& child : node.children)
            if (child.type != Type::Any)
                requireConditionOf(child);
}

bool anyNode(const FormulaNode& node, const std::function<bool(const FormulaNode&)>& test)
{
    return test(node) || std::any_of(node.children.begin(), node.children.end(),
                                     [&](const FormulaNode& child) { return anyNode(child, test); });
}

void bindNode(FormulaNode& node, const std::function<int(const QString&)>& indexOf)
{
    if (auto* field = std::get_if<FormulaNode::Field>(&node.part)) {
        field->index = indexOf(field->name);
        if (field->index < 0)
            throw ReportError(platform::UnknownName, QStringLiteral("There is no field {%1}.").arg(field->name),
                              node.place);
    }
    for (FormulaNode& child : node.children)
        bindNode(child, indexOf);
}

} // namespace

Value evaluateNode(const FormulaNode& node, const FormulaScope& scope)
{
    return std::visit(Evaluation{node, scope}, node.part);
}

QString displayText(const Value& value)
{
    return value.textOrEmpty();
}

Formula::Formula() = default;
Formula::~Formula() = default;
Formula::Formula(Formula&& other) noexcept = default;
Formula& Formula::operator=(Formula&& other) noexcept = default;

Formula::Formula(const Formula& other) : m_root(other.m_root ? std::make_unique<FormulaNode>(*other.m_root) : nullptr)
{
}

Formula& Formula::operator=(const Formula& other)
{
    return *this = Formula(other);
}

const FormulaNode& Formula::root() const
{
    static const FormulaNode Null;
    return m_root ? *m_root : Null;
}

Place Formula::place() const
{
    return root().place;
}

bool Formula::any(const std::function<bool(const FormulaNode&)>& test) const
{
    return anyNode(root(), test);
}

void Formula::requireCondition() const
{
    requireConditionOf(root());
}

void Formula::bind(const std::function<int(const QString&)>& indexOf)
{
    if (m_root)
        bindNode(*m_root, indexOf);
}

Value Formula::evaluate(const FormulaScope& scope) const
{
    return evaluateNode(root(), scope);
}

bool Formula::holds(const FormulaScope& scope) const
{
    const Value value = condition(evaluate(scope), place());
    return !value.isNull() && value.toBool();
}

} // namespace orlo::reporting
