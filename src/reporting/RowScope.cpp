#include "reporting/ReportData.h"

#include "platform/Application.h"

#include <algorithm>

namespace orlo::reporting
{

namespace
{

const QString WholeReport = QStringLiteral("Report");
const QString OnePage = QStringLiteral("Page");

bool isNamed(const QString& name, const QString& wanted)
{
    return name.compare(wanted, Qt::CaseInsensitive) == 0;
}

} // namespace

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

void Accumulator::add(const Value& value, Place place)
{
    if (value.isNull())
        return;
    ++m_count;
    switch (m_summary) {
    case Summary::Count:
        break;
    case Summary::DistinctCount:
        m_distinct.insert(linkKey(value));
        break;
    case Summary::Minimum:
    case Summary::Maximum:
        if (!m_extreme.isNull()) {
            const int order = compareValues(value, m_extreme, place);
            if (m_summary == Summary::Minimum ? order >= 0 : order <= 0)
                break;
        }
        m_extreme = value;
        break;
    case Summary::Sum:
    case Summary::Average:
    case Summary::Median:
        if (!value.isNumber() && !value.isBool())
            throw ReportError(platform::TypeMismatch, QStringLiteral("Only numbers can be added up."), place);
        const double number = value.isBool() ? double(value.toBool()) : value.toDouble();
        m_sum += number;
        if (m_summary == Summary::Median)
            m_numbers.push_back(number);
    }
}

Value Accumulator::result() const
{
    switch (m_summary) {
    case Summary::Sum:
        return m_sum;
    case Summary::Count:
        return m_count;
    case Summary::DistinctCount:
        return qint64(m_distinct.size());
    case Summary::Average:
        return m_count > 0 ? Value(m_sum / double(m_count)) : Value();
    case Summary::Median: {
        if (m_numbers.empty())
            return {};
        std::vector<double> sorted = m_numbers;
        std::sort(sorted.begin(), sorted.end());
        const std::size_t middle = sorted.size() / 2;
        return sorted.size() % 2 == 1 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
    }
    default:
        return m_extreme;
    }
}

RowScope::RowScope(const Definition& definition, const RowSet& rows, const RunFacts& facts)
    : range{0, rows.rows.size()}, whole(range), m_definition(definition), m_rows(rows), m_facts(facts)
{
}

std::size_t RowScope::currentRow() const
{
    return m_summaryRow != SIZE_MAX ? m_summaryRow : row;
}

Value RowScope::field(int index) const
{
    const int columns = int(m_rows.columns.size());
    const int fixed = columns + int(m_definition.names.size());
    if (index >= fixed)
        return m_rows.fixed[std::size_t(index - fixed)];
    if (index >= columns)
        return m_definition.names[std::size_t(index - columns)].formula.evaluate(*this);
    const std::size_t at = currentRow();
    return at < m_rows.rows.size() ? m_rows.rows[at][std::size_t(index)] : Value();
}

Value RowScope::word(Word word) const
{
    const auto pages = [&] { return pageCount > 0 ? Value(pageCount) : Value(QStringLiteral("…")); };
    switch (word) {
    case Word::PageNumber:
        return pageNumber;
    case Word::PageCount:
        return pages();
    case Word::PageOfPages:
        return QStringLiteral("Page %1 of %2").arg(pageNumber).arg(displayText(pages()));
    case Word::PrintDate:
        return Value(m_facts.printDate);
    case Word::PrintTime:
        return m_facts.printTime.toString(QStringLiteral("h:mm AP"));
    case Word::ReportTitle:
        return m_facts.reportTitle;
    case Word::ProgramName:
        return platform::title();
    case Word::RecordNumber:
        return qint64(currentRow() - whole.first + 1);
    case Word::GroupNumber:
        return groupNumber;
    case Word::OnFirstRecord:
        return currentRow() == whole.first;
    case Word::OnLastRecord:
        return currentRow() + 1 == whole.last;
    case Word::Repeated:
        return repeated;
    case Word::NewLine:
        break;
    }
    return u"\n";
}

Value RowScope::inRow(int offset, const FormulaNode& expression) const
{
    const std::size_t at = currentRow();
    const bool isThere = offset < 0 ? at > whole.first : at + 1 < whole.last;
    if (!isThere || at >= whole.last)
        return {};
    const std::size_t before = std::exchange(m_summaryRow, offset < 0 ? at - 1 : at + 1);
    const Restored restored{m_summaryRow, before};
    return evaluateNode(expression, *this);
}

RowRange RowScope::rangeOf(const FormulaNode& node) const
{
    const QString& name = node.as<FormulaNode::Summarised>()->group;
    if (name.isEmpty())
        return range;
    for (std::size_t i = 0; i < groups.size(); ++i)
        if (isNamed(m_definition.groups[i].name, name))
            return groups[i];
    if (isNamed(name, WholeReport))
        return whole;
    if (isNamed(name, OnePage))
        return page;
    throw ReportError(platform::UnknownName, QStringLiteral("There is no group \"%1\" around this.").arg(name),
                      node.place);
}

Value RowScope::summary(const FormulaNode& node) const
{
    const auto& part = *node.as<FormulaNode::Summarised>();
    RowRange rows = rangeOf(node);
    if (part.running)
        rows.last = std::clamp(row + 1, rows.first, rows.last);
    if (node.children.empty())
        return qint64(rows.size());
    Kept& kept = m_kept.try_emplace(&node, Kept{rows.first, rows.first, Accumulator(part.summary)}).first->second;
    if (kept.first != rows.first || kept.last > rows.last)
        kept = {rows.first, rows.first, Accumulator(part.summary)};
    const Restored restored{m_summaryRow, SIZE_MAX};
    const FormulaNode& expression = node.children.front();
    for (; kept.last < rows.last; ++kept.last) {
        m_summaryRow = kept.last;
        try {
            kept.sum.add(evaluateNode(expression, *this), expression.place);
        } catch (const ReportError& error) {
            throw error.atRecord(kept.last + 1);
        }
    }
    return kept.sum.result();
}

std::size_t RowScope::endOfGroup(const Group& group, RowRange rows)
{
    row = rows.first;
    const QString key = linkKey(group.key.evaluate(*this));
    for (row = rows.first + 1; row < rows.last; ++row)
        if (linkKey(group.key.evaluate(*this)) != key)
            break;
    return row;
}

bool isGroupOfAll(const QString& name)
{
    return isNamed(name, WholeReport);
}

bool isGroupOfPage(const QString& name)
{
    return isNamed(name, OnePage);
}

} // namespace orlo::reporting
