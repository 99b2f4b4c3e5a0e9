#include "reporting/Renderer.h"

#include "platform/Conversion.h"
#include "reporting/PageMaker.h"
#include "reporting/Warnings.h"

#include <algorithm>

namespace orlo::reporting
{

namespace
{

// A row higher than this share of a page's body is cut, so that a long note fills pages instead of jumping to the
// next.
constexpr double MaxShareOfRow = 0.34;
// Shares of the work done when a run is laid out and when its pages are made, in percent.
constexpr int LaidOut = 80;
constexpr int PagesMade = 92;

QString nameOf(const QString& path)
{
    return path.mid(std::max(path.lastIndexOf(u'\\'), path.lastIndexOf(u'/')) + 1);
}

// The rows of a report or subreport for the CSV export.
class Export
{
public:
    Export(const BoundReport& report, const RunFacts& facts)
        : m_report(report), m_exports(report.definition.exports), m_scope(report.definition, report.rows, facts)
    {
    }

    [[nodiscard]] QStringList columns() const
    {
        QStringList columns = m_exports.empty() ? m_report.rows.columns : QStringList();
        for (const ExportColumn& column : m_exports)
            columns << column.heading;
        return columns;
    }

    [[nodiscard]] QStringList line(std::size_t row)
    {
        m_scope.row = row;
        QStringList line;
        line.reserve(qsizetype(m_exports.size()));
        if (m_exports.empty())
            for (const Value& value : m_report.rows.rows[row])
                line << displayText(value);
        try {
            for (const ExportColumn& column : m_exports)
                line << displayText(column.formula.evaluate(m_scope));
        } catch (const ReportError& error) {
            throw error.atRecord(row + 1);
        }
        return line;
    }

    // The rows of a subreport that belong to a row.
    [[nodiscard]] RowRange linked(std::size_t row, const BoundReport& inner)
    {
        m_scope.row = row;
        return inner.linkedTo(m_scope.field(inner.linkedIndex));
    }

private:
    const BoundReport& m_report;
    const std::vector<ExportColumn>& m_exports;
    RowScope m_scope;
};

// A report's row numbers with their lines of the export.
using ExportedRows = std::vector<std::pair<std::size_t, QStringList>>;

// Adds a block for each subreport, followed by its own subreports. A linked one's rows follow the line they belong to.
void addBlocks(const BoundReport& report, const RunFacts& facts, const QStringList& columns, const ExportedRows& outer,
               Document& document, const PartProgress& progress)
{
    Export main(report, facts);
    for (const auto& [name, definition] : report.definition.subreports) {
        const BoundReport& inner = report.subreports.at(name.toCaseFolded());
        Export own(inner, facts);
        DataBlock block{name, own.columns(), {}};
        ExportedRows lines;
        if (inner.linkedIndex < 0) {
            for (std::size_t row = 0; row < inner.rows.rows.size(); ++row)
                lines.emplace_back(row, own.line(row));
        } else {
            block.columns = columns + block.columns;
            for (std::size_t i = 0; i < outer.size(); ++i) {
                progress.row(i, outer.size());
                const RowRange linked = main.linked(outer[i].first, inner);
                for (std::size_t row = linked.first; row < linked.last; ++row)
                    lines.emplace_back(row, outer[i].second + own.line(row));
            }
        }
        if (lines.empty())
            continue;
        for (const auto& [row, line] : lines)
            block.rows.push_back(line);
        const QStringList columnsOfBlock = block.columns;
        document.blocks.push_back(std::move(block));
        addBlocks(inner, facts, columnsOfBlock, lines, document, progress);
    }
}

void fillExport(const BoundReport& report, const RunFacts& facts, Document& document, const PartProgress& progress)
{
    Export main(report, facts);
    document.columns = main.columns();
    document.rows.reserve(report.rows.rows.size());
    ExportedRows lines;
    for (std::size_t row = 0; row < report.rows.rows.size(); ++row) {
        progress.row(row, report.rows.rows.size());
        document.rows.push_back(main.line(row));
        if (!report.definition.subreports.empty())
            lines.emplace_back(row, document.rows.back());
    }
    addBlocks(report, facts, document.columns, lines, document, progress);
}

// One run of a report whose rows have been read.
class Run
{
public:
    Run(const Definition& definition, const RunRequest& request, BoundReport report, const RunFacts& facts)
        : m_request(request), m_report(std::move(report)), m_facts(facts), m_pages(m_report, m_facts, m_typesetter)
    {
        m_document.title = QString(m_report.definition.title + u' ' + facts.reportTitle).trimmed();
        const RowScope firstRow(m_report.definition, m_report.rows, m_facts);
        m_document.author = displayText(m_report.definition.author.evaluate(firstRow));
        m_document.subject = displayText(m_report.definition.subject.evaluate(firstRow));
        m_document.paper = m_report.definition.paper;
        m_document.exactSize = m_report.definition.detail.height > 0;
        m_document.files = definition.files;
        m_document.warnings =
            definition.warnings + layoutWarnings(m_report.definition, {m_pages.textWidth(), m_pages.bodyHeight()},
                                                 nameOf(request.reportFile));
    }

    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    Document wholeDocument(const Progress& progress, const FirstPage& firstPage)
    {
        FlowWatch watch;
        if (firstPage && m_request.firstPage <= 1)
            watch = [&](const Flow& flow) { return showFirst(flow, firstPage); };
        Flow flow = laidOut(PartProgress(progress, DataRead, LaidOut), watch);
        PagePlan plan = planned(flow);
        m_document.pages = m_pages.make(flow, plan, PartProgress(progress, LaidOut, PagesMade));
        m_document.warnings << m_typesetter.warnings(nameOf(m_request.reportFile));
        m_document.warnings.removeDuplicates();
        fillExport(m_report, m_facts, m_document, PartProgress(progress, PagesMade, 100));
        return std::move(m_document);
    }

private:
    Flow laidOut(const PartProgress& progress, const FlowWatch& watch)
    {
        return layOut(m_report, {m_facts, m_typesetter, m_pages.textWidth(), m_pages.bodyHeight(),
                                 m_pages.bodyHeight() * MaxShareOfRow, progress, watch});
    }

    PagePlan planned(const Flow& flow)
    {
        PagePlan plan = m_pages.plan(flow, m_request.firstPage, m_request.lastPage);
        m_document.outline = m_pages.outline(flow, plan);
        m_document.fonts = m_typesetter.fonts();
        return plan;
    }

    bool showFirst(const Flow& flow, const FirstPage& firstPage)
    {
        Document first = m_document;
        try {
            if (!m_pages.makeFirst(soFar(flow), first))
                return false;
        } catch (const ReportError&) { // a page that computes with the page count must wait for it
            return true;
        }
        first.fonts = m_typesetter.fonts();
        first.complete = false;
        firstPage(std::move(first));
        return true;
    }

    const RunRequest& m_request;
    BoundReport m_report;
    RunFacts m_facts;
    Typesetter m_typesetter;
    PageMaker m_pages;
    Document m_document;
};

} // namespace

std::optional<Document> render(const Definition& definition, const RunRequest& request,
                               const DatabaseProvider& databaseOf, const Progress& progress, const FirstPage& firstPage)
{
    try {
        const RunFacts facts{request.reportTitle.trimmed(), platform::today(), QTime::currentTime()};
        auto report = loadReport(definition, request, databaseOf, facts, progress);
        if (!report)
            return std::nullopt;
        return Run(definition, request, std::move(*report), facts).wholeDocument(progress, firstPage);
    } catch (const Cancelled&) {
        return std::nullopt;
    } catch (const ReportError& error) {
        if (request.reportFile.isEmpty())
            throw;
        throw error.inFile(nameOf(request.reportFile)).having(definition.files);
    }
}

std::optional<Document> render(const RunRequest& request, const DatabaseProvider& databaseOf, const Progress& progress,
                               const FirstPage& firstPage)
{
    return render(readDefinitionFile(request.reportFile), request, databaseOf, progress, firstPage);
}

} // namespace orlo::reporting
