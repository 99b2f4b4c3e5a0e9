#include "reporting/ReportData.h"

#include "platform/Application.h"

#include <QSet>

namespace orlo::reports
{

int placeOf(const QString& name, const QStringList& names)
{
    for (qsizetype i = 0; i < names.size(); ++i)
        if (names[i].compare(name, Qt::CaseInsensitive) == 0)
            return int(i);
    return -1;
}

int RowSet::columnOf(const QString& name) const
{
    return placeOf(name, columns);
}

RowScope::RowScope(const Definition& definition, const RowSet& rows, const RunFacts& facts)
    : range{0, rows.rows.size()}, m_definition(definition), m_rows(rows), m_facts(facts)
{
}

Value RowScope::field(int index) const
{
    const int columns = int(m_rows.columns.size());
    const int fixed = columns + int(m_definition.names.size());
    if (index >= fixed)
        return m_rows.fixed[std::size_t(index - fixed)];
    if (index >= columns)
        return m_definition.names[std::size_t(index - columns)].formula.evaluate(*this);
    const std::size_t at = m_summaryRow != SIZE_MAX ? m_summaryRow : row;
    return at < m_rows.rows.size() ? m_rows.rows[at][std::size_t(index)] : Value();
}

Value RowScope::word(Word word) const
{
    switch (word) {
    case Word::PageNumber:
        return pageNumber;
    case Word::PageCount:
        return pageCount > 0 ? Value(pageCount) : Value(QStringLiteral("…"));
    case Word::PrintDate:
        return Value(m_facts.printDate);
    case Word::PrintTime:
        return m_facts.printTime.toString(QStringLiteral("h:mm AP"));
    case Word::ReportTitle:
        return m_facts.reportTitle;
    case Word::ProgramName:
        return platform::title();
    case Word::RecordNumber:
        return qint64((m_summaryRow != SIZE_MAX ? m_summaryRow : row) - range.first + 1);
    case Word::Repeated:
        return repeated;
    case Word::NewLine:
        break;
    }
    return u"\n";
}

RowRange RowScope::rangeOf(const FormulaNode& node) const
{
    if (node.name.isEmpty())
        return range;
    for (std::size_t i = 0; i < groups.size(); ++i)
        if (m_definition.groups[i].name.compare(node.name, Qt::CaseInsensitive) == 0)
            return groups[i];
    throw ReportError(platform::UnknownName, QStringLiteral("There is no group \"%1\" around this.").arg(node.name),
                      node.place);
}

Value RowScope::summary(const FormulaNode& node) const
{
    if (m_summaryRow != SIZE_MAX)
        throw ReportError(platform::SyntaxError, QStringLiteral("A summary can't hold another."), node.place);
    const RowRange rows = rangeOf(node);
    if (const auto kept = m_kept.find(&node); kept != m_kept.end() && kept->second.range == rows)
        return kept->second.value;
    struct Reset {
        std::size_t& at;
        ~Reset() { at = SIZE_MAX; }
    } const reset{m_summaryRow};
    Value value = computed(Summary(node.index), node.children.empty() ? nullptr : &node.children.front(), rows);
    m_kept[&node] = {rows, value};
    return value;
}

Value RowScope::computed(Summary summary, const FormulaNode* expression, RowRange rows) const
{
    if (!expression)
        return qint64(rows.size());
    double sum = 0;
    qint64 count = 0;
    Value extreme;
    QSet<QString> distinct;
    for (m_summaryRow = rows.first; m_summaryRow < rows.last; ++m_summaryRow) {
        const Value value = evaluateNode(*expression, *this);
        if (value.isNull())
            continue;
        ++count;
        if (summary == Summary::DistinctCount) {
            distinct.insert(linkKey(value));
        } else if (summary == Summary::Sum || summary == Summary::Average) {
            if (!value.isNumber() && !value.isBool())
                throw ReportError(platform::TypeMismatch, QStringLiteral("Only numbers can be added up."),
                                  expression->place);
            sum += value.isBool() ? double(value.toBool()) : value.toDouble();
        } else if (summary != Summary::Count && !extreme.isNull()) {
            const int order = compareValues(value, extreme, expression->place);
            if (summary == Summary::Minimum ? order < 0 : order > 0)
                extreme = value;
        } else {
            extreme = value;
        }
    }
    switch (summary) {
    case Summary::Sum:
        return sum;
    case Summary::Count:
        return count;
    case Summary::Average:
        return count > 0 ? Value(sum / double(count)) : Value();
    case Summary::DistinctCount:
        return qint64(distinct.size());
    default:
        return extreme;
    }
}

} // namespace orlo::reports
