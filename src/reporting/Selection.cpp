#include "reporting/Selection.h"

#include "platform/Conversion.h"
#include "reporting/FormulaFunctions.h"

namespace orlo::reporting
{

namespace
{

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
        if (const auto* connected = node.as<FormulaNode::Connected>())
            return all(node, QLatin1StringView(connected->isOr ? " Or " : " And "));
        const auto* call = node.as<FormulaNode::Call>();
        if (!call || call->function->sql.isEmpty())
            return std::nullopt;
        if (node.children.size() == 1) {
            const Written inner = condition(node.children[0]);
            return inner ? Written(QStringLiteral("%1 (%2)").arg(call->function->sql, *inner)) : std::nullopt;
        }
        if (node.children.size() > 2)
            return ranges(node);
        return compared(operand(node.children[0]), call->function->sql, operand(node.children[1]));
    }

private:
    [[nodiscard]] Written all(const FormulaNode& node, QLatin1StringView word) const
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
        if (const auto* known = node.as<FormulaNode::Literal>()) {
            const Written text = literal(known->value);
            return text ? std::optional(Operand{*text, node.type}) : std::nullopt;
        }
        const auto* field = node.as<FormulaNode::Field>();
        if (!field)
            return std::nullopt;
        const auto column = m_columnOf(field->name);
        if (!column || column->name.contains(u']') || column->name.contains(u'['))
            return std::nullopt;
        return Operand{u'[' + column->name + u']', column->type};
    }

    // The ranges of an "in", two children each.
    [[nodiscard]] Written ranges(const FormulaNode& node) const
    {
        QStringList parts;
        const auto value = operand(node.children[0]);
        for (std::size_t i = 1; i + 1 < node.children.size(); i += 2) {
            const bool single = node.children[i + 1].as<FormulaNode::Again>() != nullptr;
            const Written from = compared(value, QLatin1StringView(">="), operand(node.children[i]));
            const Written to = compared(value, QLatin1StringView("<="), operand(node.children[single ? i : i + 1]));
            if (!from || !to)
                return std::nullopt;
            parts << QString(*from + QLatin1StringView(" And ") + *to);
        }
        return parts.size() == 1 ? parts.front() : u'(' + parts.join(QLatin1StringView(") Or (")) + u')';
    }

    static Written compared(const std::optional<Operand>& left, QLatin1StringView sign,
                            const std::optional<Operand>& right)
    {
        if (!left || !right || left->type != right->type)
            return std::nullopt;
        return QStringLiteral("%1 %2 %3").arg(left->text, sign, right->text);
    }

    const ColumnOf& m_columnOf;
};

} // namespace

QString handDown(const Formula& formula, const ColumnOf& columnOf)
{
    QString condition;
    const Writer writer(columnOf);
    const FormulaNode& root = formula.root();
    const auto* connected = root.as<FormulaNode::Connected>();
    const bool isAnd = connected && !connected->isOr;
    const std::span<const FormulaNode> parts =
        isAnd ? std::span<const FormulaNode>(root.children) : std::span(&root, 1);
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

} // namespace orlo::reporting
