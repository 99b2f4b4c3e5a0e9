#include "reporting/Renderer.h"

#include "platform/Conversion.h"
#include "reporting/Layout.h"
#include "reporting/Warnings.h"

#include <algorithm>

namespace orlo::reports
{

namespace
{

/// A row higher than this share of a page's body is cut, so that a long note fills pages instead of leaping.
constexpr double MaxShareOfRow = 0.34;
constexpr double MinBody = 72; ///< points that page header and footer must leave
/// How far a run has come when its pages are made, in percent.
constexpr int PagesMade = 92;
constexpr int WidestPageNumber = 88'888;
/// A group that begins on the first page and isn't over on the third is too long to be kept together.
constexpr std::size_t PagesThatSettleTheFirst = 4;

QString nameOf(const QString& path)
{
    return path.mid(std::max(path.lastIndexOf(u'\\'), path.lastIndexOf(u'/')) + 1);
}

double heightOf(const std::vector<Strip>& strips)
{
    double height = 0;
    for (const Strip& strip : strips)
        height += strip.height;
    return height;
}

/// Puts the pages together from the flow and the page header and footer.
class PageMaker
{
public:
    PageMaker(const BoundReport& report, const RunFacts& facts, Typesetter& typesetter)
        : m_definition(report.definition),
          m_area(QRectF(QPointF(), m_definition.paper).marginsRemoved(m_definition.margins)),
          m_bands(m_definition, typesetter, m_area.width(), m_area.height()), m_scope(m_definition, report.rows, facts)
    {
        m_scope.pageNumber = WidestPageNumber;
        m_scope.pageCount = WidestPageNumber;
        m_headerHeight = heightOf(m_bands.strips(m_definition.pageHeader, m_scope, 0));
        m_footerHeight = heightOf(m_bands.strips(m_definition.pageFooter, m_scope, 0));
        if (bodyHeight() < MinBody || m_area.width() < MinBody)
            throw ReportError(platform::SyntaxError,
                              QStringLiteral("Margins, page header and page footer leave no room on the page."));
    }

    [[nodiscard]] double textWidth() const { return m_area.width(); }
    [[nodiscard]] double bodyHeight() const { return m_area.height() - m_headerHeight - m_footerHeight; }

    void make(Flow& flow, const RunRequest& request, Document& document, const PartProgress& progress)
    {
        const std::vector<PageContent> contents = cut(flow);
        const int first = std::max(request.firstPage, 1);
        const int count = int(contents.size());
        const int last = request.lastPage > 0 ? std::min(request.lastPage, count) : count;
        m_scope.pageCount = count;
        for (int number = first; number <= last; ++number) {
            progress(std::size_t(number - first), std::size_t(last - first + 1));
            document.pages.push_back(page(flow, contents[std::size_t(number - 1)], number));
        }
        addOutline(flow, contents, first, last, document);
    }

    /// The first page out of the beginning of a flow; false as long as what follows could change it.
    bool makeFirst(Flow& flow, Document& document)
    {
        const std::vector<PageContent> contents = cut(flow);
        if (contents.size() < PagesThatSettleTheFirst)
            return false;
        m_scope.pageCount = 0;
        document.pages.push_back(page(flow, contents.front(), 1));
        addOutline(flow, contents, 1, 1, document);
        return true;
    }

private:
    [[nodiscard]] std::vector<PageContent> cut(const Flow& flow) const
    {
        std::vector<StripSize> sizes;
        sizes.reserve(flow.strips.size());
        for (const Strip& strip : flow.strips)
            sizes.push_back({strip.height, strip.keepWithNext, strip.breakBefore});
        std::vector<RepeatedHeading> headings;
        for (const Flow::Heading& heading : flow.headings)
            headings.push_back({heading.first, heading.last, heightOf(heading.strips)});
        return paginate(sizes, flow.kept, headings, bodyHeight());
    }

    Page page(Flow& flow, const PageContent& content, int number)
    {
        Page page;
        m_scope.pageNumber = number;
        m_scope.page = rowsOn(flow, content);
        m_scope.row = m_scope.page.size() > 0 ? m_scope.page.first : firstRow(flow, content);
        copyStrips(m_bands.strips(m_definition.pageHeader, m_scope, 0), m_area.top(), page);
        double y = m_area.top() + m_headerHeight;
        for (const std::size_t heading : content.headings) {
            copyStrips(flow.headings[heading].strips, y, page);
            y += heightOf(flow.headings[heading].strips);
        }
        std::size_t count = page.items.size();
        for (const PlacedStrip& placed : content.strips)
            count += flow.strips[placed.strip].items.size();
        page.items.reserve(count);
        for (const PlacedStrip& placed : content.strips)
            for (Item& item : flow.strips[placed.strip].items) {
                moveItem(item, {m_area.left(), m_area.top() + m_headerHeight + placed.y});
                page.items.push_back(std::move(item));
            }
        copyStrips(m_bands.strips(m_definition.pageFooter, m_scope, 0), m_area.bottom() - m_footerHeight, page);
        return page;
    }

    static std::size_t firstRow(const Flow& flow, const PageContent& content)
    {
        return content.strips.empty() ? 0 : flow.strips[content.strips.front().strip].row;
    }

    /// The records that begin on a page; they follow each other.
    static RowRange rowsOn(const Flow& flow, const PageContent& content)
    {
        RowRange rows;
        for (const PlacedStrip& placed : content.strips) {
            const Strip& strip = flow.strips[placed.strip];
            if (!strip.beginsRecord)
                continue;
            if (rows.last == 0)
                rows.first = strip.row;
            rows.last = std::max(strip.row, strip.lastRow) + 1;
        }
        return rows;
    }

    void copyStrips(const std::vector<Strip>& strips, double y, Page& page) const
    {
        for (const Strip& strip : strips) {
            for (Item item : strip.items) {
                moveItem(item, {m_area.left(), y});
                page.items.push_back(std::move(item));
            }
            y += strip.height;
        }
    }

    void addOutline(const Flow& flow, const std::vector<PageContent>& contents, int first, int last,
                    Document& document) const
    {
        std::vector<std::pair<int, double>> placeOf(flow.strips.size()); // page from 1, and top
        for (std::size_t i = 0; i < contents.size(); ++i)
            for (const PlacedStrip& placed : contents[i].strips)
                placeOf[placed.strip] = {int(i) + 1, m_area.top() + m_headerHeight + placed.y};
        for (const Flow::OutlineMark& mark : flow.outline)
            if (mark.strip < placeOf.size())
                if (const auto [page, top] = placeOf[mark.strip]; page >= first && page <= last)
                    document.outline.push_back({mark.text, mark.level, page - first, top});
    }

    const Definition& m_definition;
    QRectF m_area;
    BandLayout m_bands;
    RowScope m_scope;
    double m_headerHeight = 0;
    double m_footerHeight = 0;
};

/// The rows of one report or subreport as the CSV export writes them.
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
        for (const ExportColumn& column : m_exports)
            line << displayText(column.formula.evaluate(m_scope));
        return line;
    }

    /// What a row of a linked subreport is linked by.
    [[nodiscard]] QString linkedKey(std::size_t row, int field)
    {
        m_scope.row = row;
        const Value key = m_scope.field(field);
        return key.isNull() ? QString() : linkKey(key);
    }

private:
    const BoundReport& m_report;
    const std::vector<ExportColumn>& m_exports;
    RowScope m_scope;
};

/// Rows of a report with their lines of the export.
using ExportedRows = std::vector<std::pair<std::size_t, QStringList>>;

/// A block for each subreport, its own subreports after it. The rows of a linked one stand after the line that they
/// belong to.
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
                const auto linked = inner.byLink.find(main.linkedKey(outer[i].first, inner.linkedIndex));
                if (linked != inner.byLink.end())
                    for (std::size_t row = linked->second.first; row < linked->second.last; ++row)
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

std::optional<Document> renderRead(const Definition& definition, const RunRequest& request,
                                   const DatabaseProvider& databaseOf, const Progress& progress,
                                   const FirstPage& firstPage)
{
    const RunFacts facts{request.reportTitle.trimmed(), platform::today(), QTime::currentTime()};
    const auto report = loadReport(definition, request, databaseOf, facts, progress);
    if (!report)
        return std::nullopt;
    Document document;
    document.title = QString(report->definition.title + u' ' + facts.reportTitle).trimmed();
    const RowScope firstRow(report->definition, report->rows, facts);
    document.author = displayText(report->definition.author.evaluate(firstRow));
    document.subject = displayText(report->definition.subject.evaluate(firstRow));
    document.paper = report->definition.paper;
    document.files = definition.files;

    Typesetter typesetter;
    PageMaker pages(*report, facts, typesetter);
    const QString file = nameOf(request.reportFile);
    document.warnings =
        definition.warnings + layoutWarnings(report->definition, {pages.textWidth(), pages.bodyHeight()}, file);
    FlowSoFar soFar;
    if (firstPage && request.firstPage <= 1)
        soFar = [&](Flow&& part) {
            Document first = document;
            try {
                if (!pages.makeFirst(part, first))
                    return false;
            } catch (const ReportError&) { // a page that computes with the number of pages waits for it
                return true;
            }
            first.fonts = typesetter.fonts();
            first.complete = false;
            firstPage(std::move(first));
            return true;
        };
    auto flow =
        layOut(*report, facts, typesetter, pages.textWidth(), pages.bodyHeight() * MaxShareOfRow, progress, soFar);
    if (!flow)
        return std::nullopt;
    pages.make(*flow, request, document, PartProgress(progress, LaidOut, PagesMade));
    document.fonts = typesetter.fonts();
    fillExport(*report, facts, document, PartProgress(progress, PagesMade, 100));
    return document;
}

} // namespace

std::optional<Document> render(const Definition& definition, const RunRequest& request,
                               const DatabaseProvider& databaseOf, const Progress& progress, const FirstPage& firstPage)
{
    try {
        return renderRead(definition, request, databaseOf, progress, firstPage);
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

} // namespace orlo::reports
