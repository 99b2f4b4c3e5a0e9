#include "reporting/FormulaFunctions.h"
#include "store/engine/Text.h"

#include <algorithm>
#include <cmath>

namespace orlo::reports
{

namespace
{

using Kind = FormulaNode::Kind;
using Type = FormulaNode::Type;

[[noreturn]] void mismatch(const QString& message, Place place)
{
    throw ReportError(platform::TypeMismatch, message, place);
}

double numberIn(const Value& value, Place place)
{
    if (value.isBool())
        return value.toBool() ? 1 : 0;
    if (!value.isNumber())
        mismatch(QStringLiteral("A number is needed here."), place);
    return value.toDouble();
}

/// A condition's three values: yes, no, and Null where a field without a value leaves it open.
Value condition(const Value& value, Place place)
{
    if (value.isNull() || value.isBool())
        return value;
    mismatch(QStringLiteral("A condition is needed here."), place);
}

Value compared(const FormulaNode& node, const FormulaScope& scope)
{
    const Value a = evaluateNode(node.children[0], scope);
    const Value b = evaluateNode(node.children[1], scope);
    if (a.isNull() || b.isNull())
        return {};
    const int order = compareValues(a, b, node.place);
    switch (node.kind) {
    case Kind::Equal:
        return order == 0;
    case Kind::Unequal:
        return order != 0;
    case Kind::Less:
        return order < 0;
    case Kind::LessOrEqual:
        return order <= 0;
    case Kind::Greater:
        return order > 0;
    default:
        return order >= 0;
    }
}

Value inRange(const FormulaNode& node, const FormulaScope& scope)
{
    const Value value = evaluateNode(node.children[0], scope);
    const Value from = evaluateNode(node.children[1], scope);
    const Value to = evaluateNode(node.children[2], scope);
    if (value.isNull() || from.isNull() || to.isNull())
        return {};
    return compareValues(value, from, node.place) >= 0 && compareValues(value, to, node.place) <= 0;
}

Value inList(const FormulaNode& node, const FormulaScope& scope)
{
    const Value value = evaluateNode(node.children[0], scope);
    if (value.isNull())
        return {};
    bool open = false;
    for (std::size_t i = 1; i < node.children.size(); ++i) {
        const Value candidate = evaluateNode(node.children[i], scope);
        open = open || candidate.isNull();
        if (!candidate.isNull() && compareValues(value, candidate, node.place) == 0)
            return true;
    }
    return open ? Value() : Value(false);
}

/// "And" ends at the first no, "or" at the first yes; Null wins over the other value.
Value connected(const FormulaNode& node, const FormulaScope& scope)
{
    const bool decisive = node.kind == Kind::Or;
    bool open = false;
    for (const FormulaNode& child : node.children) {
        const Value value = condition(evaluateNode(child, scope), child.place);
        if (value.isNull())
            open = true;
        else if (value.toBool() == decisive)
            return decisive;
    }
    return open ? Value() : Value(!decisive);
}

Value joinedTexts(const FormulaNode& node, const FormulaScope& scope)
{
    QString text;
    for (const FormulaNode& child : node.children)
        text += displayText(evaluateNode(child, scope));
    return text;
}

Value sumOf(const Value& a, const Value& b, bool subtract, Place place)
{
    if (a.isText() && b.isText() && !subtract)
        return QString(a.toText() + b.toText());
    if (a.isDate() && b.isDate() && subtract)
        return b.toDate().date.daysTo(a.toDate().date);
    if (a.isDate() && b.isNumber()) {
        const double days = b.toDouble();
        store::DateTime moved = a.toDate();
        if (std::abs(days) < 4e6)
            moved.date = moved.date.addDays(qint64(subtract ? -days : days));
        if (std::abs(days) >= 4e6 || moved.date.year() < 100 || moved.date.year() > 9999)
            throw ReportError(platform::Overflow, QStringLiteral("The date is out of range."), place);
        return moved;
    }
    return numberIn(a, place) + (subtract ? -1 : 1) * numberIn(b, place);
}

Value computed(const FormulaNode& node, const FormulaScope& scope)
{
    Value result = evaluateNode(node.children[0], scope);
    for (std::size_t i = 1; i < node.children.size(); ++i) {
        const Value operand = evaluateNode(node.children[i], scope);
        if (result.isNull() || operand.isNull())
            return {};
        if (node.kind == Kind::Add || node.kind == Kind::Subtract) {
            result = sumOf(result, operand, node.kind == Kind::Subtract, node.place);
            continue;
        }
        const double right = numberIn(operand, node.place);
        if (node.kind == Kind::Divide && right == 0)
            throw ReportError(platform::DivisionByZero, QStringLiteral("Division by zero."), node.place);
        const double left = numberIn(result, node.place);
        result = node.kind == Kind::Divide ? left / right : left * right;
    }
    if (result.isNumber() && !std::isfinite(result.toDouble()))
        throw ReportError(platform::Overflow, QStringLiteral("The number is too large."), node.place);
    return result;
}

void requireCondition(const FormulaNode& node);

void requireComparable(const FormulaNode& a, const FormulaNode& b, Place place)
{
    if (a.type != Type::Any && b.type != Type::Any && a.type != b.type)
        mismatch(QStringLiteral("The two sides are of different kinds and can't be compared."), place);
}

void requireConditions(const FormulaNode& node)
{
    for (const FormulaNode& child : node.children)
        if (child.type != Type::Any)
            requireCondition(child);
}

void requireCondition(const FormulaNode& node)
{
    if (node.type != Type::Condition)
        mismatch(QStringLiteral("A condition is needed here."), node.place);
    switch (node.kind) {
    case Kind::And:
    case Kind::Or:
    case Kind::Not:
        requireConditions(node);
        break;
    case Kind::If:
        if (node.children[0].type != Type::Any)
            requireCondition(node.children[0]);
        break;
    case Kind::Equal:
    case Kind::Unequal:
    case Kind::Less:
    case Kind::LessOrEqual:
    case Kind::Greater:
    case Kind::GreaterOrEqual:
    case Kind::InRange:
    case Kind::InList:
        for (std::size_t i = 1; i < node.children.size(); ++i)
            requireComparable(node.children[0], node.children[i], node.place);
        break;
    default:
        break;
    }
}

bool anyNode(const FormulaNode& node, const std::function<bool(const FormulaNode&)>& test)
{
    return test(node) || std::any_of(node.children.begin(), node.children.end(),
                                     [&](const FormulaNode& child) { return anyNode(child, test); });
}

void bindNode(FormulaNode& node, const std::function<int(const QString&)>& indexOf)
{
    if (node.kind == Kind::Field) {
        node.index = indexOf(node.name);
        if (node.index < 0)
            throw ReportError(platform::UnknownName, QStringLiteral("There is no field {%1}.").arg(node.name),
                              node.place);
    }
    for (FormulaNode& child : node.children)
        bindNode(child, indexOf);
}

} // namespace

Value evaluateNode(const FormulaNode& node, const FormulaScope& scope)
{
    switch (node.kind) {
    case Kind::Literal:
        return node.literal;
    case Kind::Field:
        return scope.field(node.index);
    case Kind::Word:
        return node.index == int(Word::NewLine) ? Value(u"\n") : scope.word(Word(node.index));
    case Kind::Summary:
        return scope.summary(node);
    case Kind::Call: {
        std::vector<Value> arguments;
        arguments.reserve(node.children.size());
        for (const FormulaNode& child : node.children)
            arguments.push_back(evaluateNode(child, scope));
        return functionAt(node.index).compute(arguments, node.place);
    }
    case Kind::Not: {
        const Value value = condition(evaluateNode(node.children[0], scope), node.place);
        return value.isNull() ? value : Value(!value.toBool());
    }
    case Kind::Negate: {
        const Value value = evaluateNode(node.children[0], scope);
        return value.isNull() ? value : Value(-numberIn(value, node.place));
    }
    case Kind::And:
    case Kind::Or:
        return connected(node, scope);
    case Kind::Join:
        return joinedTexts(node, scope);
    case Kind::Add:
    case Kind::Subtract:
    case Kind::Multiply:
    case Kind::Divide:
        return computed(node, scope);
    case Kind::InRange:
        return inRange(node, scope);
    case Kind::InList:
        return inList(node, scope);
    case Kind::Like: {
        const Value text = evaluateNode(node.children[0], scope);
        const Value pattern = evaluateNode(node.children[1], scope);
        if (text.isNull() || pattern.isNull())
            return {};
        return store::matchesLike(displayText(text), displayText(pattern));
    }
    case Kind::If: {
        const Value test = condition(evaluateNode(node.children[0], scope), node.place);
        if (!test.isNull() && test.toBool())
            return evaluateNode(node.children[1], scope);
        return node.children.size() > 2 ? evaluateNode(node.children[2], scope) : Value();
    }
    default:
        return compared(node, scope);
    }
}

int compareValues(const Value& a, const Value& b, Place place)
{
    const auto sign = [](auto left, auto right) { return left < right ? -1 : left > right ? 1 : 0; };
    const auto numeric = [](const Value& value) { return value.isNumber() || value.isBool(); };
    if (numeric(a) && numeric(b))
        return sign(numberIn(a, place), numberIn(b, place));
    if (a.isText() && b.isText())
        return store::compareText(a.toText(), b.toText());
    if (a.isDate() && b.isDate())
        return sign(a.toDate(), b.toDate());
    mismatch(QStringLiteral("Values of different kinds can't be compared."), place);
}

QString displayText(const Value& value)
{
    return value.textOrEmpty();
}

bool Formula::usesPages() const
{
    return anyNode(m_root, [](const FormulaNode& node) {
        return node.kind == Kind::Word && (node.index == int(Word::PageNumber) || node.index == int(Word::PageCount));
    });
}

void Formula::requireCondition() const
{
    reports::requireCondition(m_root);
}

void Formula::bind(const std::function<int(const QString&)>& indexOf)
{
    bindNode(m_root, indexOf);
}

Value Formula::evaluate(const FormulaScope& scope) const
{
    return evaluateNode(m_root, scope);
}

bool Formula::holds(const FormulaScope& scope) const
{
    const Value value = condition(evaluate(scope), m_root.place);
    return !value.isNull() && value.toBool();
}

} // namespace orlo::reports
