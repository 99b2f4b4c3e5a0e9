#include "reports/engine/Selection.h"

namespace orlo::reports
{

namespace
{

using Kind = FormulaNode::Kind;
using Written = std::optional<QString>;

QString quoted(QString text)
{
    return u'\'' + text.replace(u'\'', QLatin1StringView("''")) + u'\'';
}

Written literal(const Value& value)
{
    if (value.isBool())
        return QString::number(int(value.toBool()));
    if (value.isNumber())
        return QString::number(value.toDouble(), 'g', 17);
    if (value.isText())
        return value.toText().contains(QChar(u'\0')) ? std::nullopt : Written(quoted(value.toText()));
    const store::DateTime date = value.toDate();
    const QString time = date.time == QTime(0, 0) ? QString() : date.time.toString(QStringLiteral(" HH:mm:ss"));
    return u'#' + platform::longDate(date.date) + time + u'#';
}

class Writer
{
public:
    explicit Writer(const ColumnOf& columnOf) : m_columnOf(columnOf) {}

    [[nodiscard]] Written condition(const FormulaNode& node) const
    {
        switch (node.kind) {
        case Kind::And:
            return connected(node, QStringLiteral(" And "));
        case Kind::Or:
            return connected(node, QStringLiteral(" Or "));
        case Kind::Not:
            if (const Written inner = condition(node.children[0]))
                return QStringLiteral("Not (%1)").arg(*inner);
            return std::nullopt;
        case Kind::Equal:
            return pair(node, u" = ");
        case Kind::Unequal:
            return pair(node, u" <> ");
        case Kind::Less:
            return pair(node, u" < ");
        case Kind::LessOrEqual:
            return pair(node, u" <= ");
        case Kind::Greater:
            return pair(node, u" > ");
        case Kind::GreaterOrEqual:
            return pair(node, u" >= ");
        case Kind::InRange:
            return range(node);
        default:
            return std::nullopt;
        }
    }

private:
    [[nodiscard]] Written connected(const FormulaNode& node, const QString& word) const
    {
        QString text;
        for (const FormulaNode& child : node.children) {
            const Written part = condition(child);
            if (!part)
                return std::nullopt;
            text += (text.isEmpty() ? QString() : word) + u'(' + *part + u')';
        }
        return text;
    }

    [[nodiscard]] Written operand(const FormulaNode& node) const
    {
        if (node.kind == Kind::Literal)
            return literal(node.literal);
        if (node.kind != Kind::Field)
            return std::nullopt;
        const auto column = m_columnOf(node.name);
        if (!column || column->contains(u']') || column->contains(u'['))
            return std::nullopt;
        return u'[' + *column + u']';
    }

    [[nodiscard]] Written pair(const FormulaNode& node, QStringView sign) const
    {
        const Written left = operand(node.children[0]);
        const Written right = operand(node.children[1]);
        return left && right ? Written(*left + sign.toString() + *right) : std::nullopt;
    }

    [[nodiscard]] Written range(const FormulaNode& node) const
    {
        const Written value = operand(node.children[0]);
        const Written from = operand(node.children[1]);
        const Written to = operand(node.children[2]);
        if (!value || !from || !to)
            return std::nullopt;
        return QString(*value + QLatin1StringView(" >= ") + *from + QLatin1StringView(" And ") + *value +
                       QLatin1StringView(" <= ") + *to);
    }

    const ColumnOf& m_columnOf;
};

} // namespace

QString handDown(const Formula& formula, const ColumnOf& columnOf)
{
    QString condition;
    const Writer writer(columnOf);
    const FormulaNode& root = formula.root();
    const std::span<const FormulaNode> parts =
        root.kind == Kind::And ? std::span<const FormulaNode>(root.children) : std::span(&root, 1);
    for (const FormulaNode& part : parts) {
        if (const Written one = writer.condition(part))
            condition += (condition.isEmpty() ? QStringLiteral("(") : QStringLiteral(" And (")) + *one + u')';
    }
    return condition;
}

QString withCondition(const QString& query, const QString& condition)
{
    return condition.isEmpty() ? query
                               : QStringLiteral("Select * From (%1) As Report_Rows Where %2").arg(query, condition);
}

} // namespace orlo::reports
