#include "reporting/Selection.h"

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
        return value.toText();
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

    struct Operand {
        QString text;
        FormulaNode::Type type;
    };

    [[nodiscard]] std::optional<Operand> operand(const FormulaNode& node) const
    {
        if (node.kind == Kind::Literal) {
            const Written text = literal(node.literal);
            return text ? std::optional(Operand{*text, node.type}) : std::nullopt;
        }
        if (node.kind != Kind::Field)
            return std::nullopt;
        const auto column = m_columnOf(node.name);
        if (!column || column->name.contains(u']') || column->name.contains(u'['))
            return std::nullopt;
        return Operand{u'[' + column->name + u']', column->type};
    }

    [[nodiscard]] Written pair(const FormulaNode& node, QStringView sign) const
    {
        return compared(operand(node.children[0]), sign, operand(node.children[1]));
    }

    [[nodiscard]] Written range(const FormulaNode& node) const
    {
        const auto value = operand(node.children[0]);
        const Written from = compared(value, u" >= ", operand(node.children[1]));
        const Written to = compared(value, u" <= ", operand(node.children[2]));
        if (!from || !to)
            return std::nullopt;
        return QString(*from + QLatin1StringView(" And ") + *to);
    }

    static Written compared(const std::optional<Operand>& left, QStringView sign, const std::optional<Operand>& right)
    {
        if (!left || !right || left->type != right->type)
            return std::nullopt;
        return QString(left->text + sign.toString() + right->text);
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
