#include "reporting/FormulaStands.h"

#include <algorithm>

namespace orlo::reporting
{

namespace
{

[[noreturn]] void failWithoutOrder(const QString& what, Place place)
{
    throw ReportError(platform::SyntaxError, QStringLiteral("The rows have no order here: %1 mean nothing.").arg(what),
                      place);
}

[[noreturn]] void failInExport(Place place)
{
    throw ReportError(platform::SyntaxError, QStringLiteral("The rows of an export stand in no group."), place);
}

void checkWord(Word word, Stands stands, Place place)
{
    const bool ofPages = word == Word::PageNumber || word == Word::PageCount || word == Word::PageOfPages;
    if (ofPages && stands != Stands::OnPages)
        throw ReportError(platform::SyntaxError,
                          QStringLiteral("Page numbers stand in page-header and page-footer only."), place);
    if ((word == Word::OnFirstRecord || word == Word::OnLastRecord) &&
        (stands == Stands::InRows || stands == Stands::InGroupOrder))
        failWithoutOrder(QStringLiteral("OnFirstRecord and OnLastRecord"), place);
    if (word == Word::GroupNumber && stands == Stands::InExport)
        failInExport(place);
}

void checkSummary(const Definition& definition, const FormulaNode::Summarised& summary, Stands stands, Place place)
{
    if (stands == Stands::InRows)
        throw ReportError(platform::SyntaxError,
                          QStringLiteral("A summary means nothing here: the rows aren't grouped yet."), place);
    const bool isGroup = std::any_of(definition.groups.begin(), definition.groups.end(), [&](const Group& group) {
        return group.name.compare(summary.group, Qt::CaseInsensitive) == 0;
    });
    if (isGroup && stands == Stands::InExport)
        failInExport(place);
    if (summary.group.isEmpty() || isGroup || isGroupOfAll(summary.group))
        return;
    if (!isGroupOfPage(summary.group))
        throw ReportError(platform::UnknownName, QStringLiteral("There is no group \"%1\".").arg(summary.group), place);
    if (stands != Stands::OnPages)
        throw ReportError(platform::SyntaxError,
                          QStringLiteral("The sums of a page stand in page-header and page-footer only."), place);
}

void checkNode(const BoundReport& report, const FormulaNode& node, Stands stands, bool inOtherRows)
{
    if (const auto* field = node.as<FormulaNode::Field>()) {
        const qsizetype name = field->index - report.rows.columns.size();
        if (name >= 0 && name < qsizetype(report.definition.names.size()))
            checkNode(report, report.definition.names[std::size_t(name)].formula.root(), stands, inOtherRows);
    } else if (const auto* word = node.as<FormulaNode::NamedWord>()) {
        checkWord(word->word, stands, node.place);
    } else if (const auto* summary = node.as<FormulaNode::Summarised>()) {
        if (inOtherRows)
            throw ReportError(platform::SyntaxError,
                              QStringLiteral("A summary can't stand in another, in Previous or in Next."), node.place);
        checkSummary(report.definition, *summary, stands, node.place);
        inOtherRows = true;
    } else if (node.as<FormulaNode::Neighbour>()) {
        if (stands == Stands::InRows || stands == Stands::InGroupOrder || stands == Stands::OnPages)
            failWithoutOrder(QStringLiteral("Previous and Next"), node.place);
        inOtherRows = true;
    }
    for (const FormulaNode& child : node.children)
        checkNode(report, child, stands, inOtherRows);
}

} // namespace

void eachFormula(Definition& definition, const std::function<void(Formula& formula, Stands stands)>& visit)
{
    const auto each = [&](auto& self, std::vector<Row>& rows, Stands stands) -> void {
        for (Row& row : rows) {
            visit(row.condition, stands);
            for (Element& element : row.elements) {
                visit(element.formula, stands);
                visit(element.styleChoice, stands);
                self(self, element.rows, stands);
            }
        }
    };
    const auto band = [&](Band& one, Stands stands) {
        visit(one.condition, stands);
        each(each, one.rows, stands);
    };
    visit(definition.author, Stands::InBands);
    visit(definition.subject, Stands::InBands);
    visit(definition.unique, Stands::InRows);
    for (SortKey& key : definition.sort)
        visit(key.formula, Stands::InRows);
    for (ExportColumn& column : definition.exports)
        visit(column.formula, Stands::InExport);
    for (Group& group : definition.groups) {
        visit(group.key, Stands::InRows);
        visit(group.outline, Stands::InBands);
        for (SortKey& key : group.sort)
            visit(key.formula, Stands::InGroupOrder);
        band(group.header, Stands::InBands);
        band(group.footer, Stands::InBands);
    }
    for (Band* one : {&definition.reportHeader, &definition.reportFooter, &definition.headings, &definition.detail,
                      &definition.nothing})
        band(*one, Stands::InBands);
    band(definition.pageHeader, Stands::OnPages);
    band(definition.pageFooter, Stands::OnPages);
}

void checkFormula(const BoundReport& report, const Formula& formula, Stands stands)
{
    checkNode(report, formula.root(), stands, false);
}

} // namespace orlo::reporting
