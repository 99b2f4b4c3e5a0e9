#include "reporting/PageMaker.h"

#include <algorithm>

namespace orlo::reporting
{

namespace
{

constexpr double MinBody = 72; // points that the page header and footer must leave
constexpr int WidestNumber = 88'888;
// Rows of page headers and footers may depend on page and page count. There is room for those of these pages.
constexpr std::pair<int, int> MeasuredPages[] = {
    {1, 1}, {1, WidestNumber}, {2, WidestNumber}, {WidestNumber, WidestNumber}};
// A group that begins on the first page and hasn't ended on the third is too long to be kept together.
constexpr std::size_t PagesThatSettleTheFirst = 4;

double heightOf(const std::vector<Strip>& strips)
{
    double height = 0;
    for (const Strip& strip : strips)
        height += strip.height;
    return height;
}

std::size_t firstRow(const Flow& flow, const PageContent& content)
{
    return content.strips.empty() ? 0 : flow.strips[content.strips.front().strip].row;
}

// The records that begin on a page; they are consecutive.
RowRange rowsOn(const Flow& flow, const PageContent& content)
{
    RowRange rows;
    for (const PlacedStrip& placed : content.strips) {
        const Strip& strip = flow.strips[placed.strip];
        if (!strip.beginsRecord)
            continue;
        rows.first = rows.last == 0 ? strip.row : std::min(rows.first, strip.row);
        rows.last = std::max(rows.last, std::max(strip.row, strip.lastRow) + 1);
    }
    return rows;
}

} // namespace

PageMaker::PageMaker(const BoundReport& report, const RunFacts& facts, Typesetter& typesetter)
    : m_definition(report.definition),
      m_area(QRectF(QPointF(), m_definition.paper).marginsRemoved(m_definition.margins)),
      m_bands(m_definition, typesetter, m_area.width(), m_area.height(), m_area.height()),
      m_scope(m_definition, report.rows, facts)
{
    for (const auto& [page, count] : MeasuredPages) {
        m_scope.pageNumber = page;
        m_scope.pageCount = count;
        try {
            m_headerHeight = std::max(m_headerHeight, heightOf(m_bands.strips(m_definition.pageHeader, m_scope, 0)));
            m_footerHeight = std::max(m_footerHeight, heightOf(m_bands.strips(m_definition.pageFooter, m_scope, 0)));
        } catch (const ReportError&) {
            if (page == WidestNumber) // a failure on one of the first pages is raised when that page is made
                throw;
        }
    }
    if (bodyHeight() < MinBody)
        throw ReportError(platform::SyntaxError,
                          QStringLiteral("Margins, page header and page footer leave no room on the page."));
}

PagePlan PageMaker::plan(const Flow& flow, int first, int last)
{
    std::vector<StripSize> sizes;
    sizes.reserve(flow.strips.size());
    for (const Strip& strip : flow.strips)
        sizes.push_back({strip.height, strip.keepWithNext, strip.breakBefore});
    std::vector<RepeatedHeading> headings;
    for (const Flow::Heading& heading : flow.headings)
        headings.push_back({heading.first, heading.last, heightOf(heading.strips)});
    PagePlan plan{paginate(sizes, flow.kept, headings, bodyHeight())};
    const int count = int(plan.pages.size());
    plan.first = std::max(first, 1);
    plan.last = last > 0 ? std::min(last, count) : count;
    m_scope.pageCount = count;
    return plan;
}

std::vector<OutlineEntry> PageMaker::outline(const Flow& flow, const PagePlan& plan) const
{
    std::vector<std::pair<int, double>> placeOf(flow.strips.size()); // page from 1, and top
    for (std::size_t i = 0; i < plan.pages.size(); ++i)
        for (const PlacedStrip& placed : plan.pages[i].strips)
            placeOf[placed.strip] = {int(i) + 1, m_area.top() + m_headerHeight + placed.y};
    std::vector<OutlineEntry> entries;
    for (const Flow::OutlineMark& mark : flow.outline)
        if (mark.strip < placeOf.size())
            if (const auto [page, top] = placeOf[mark.strip]; page >= plan.first && page <= plan.last)
                entries.push_back({mark.text, mark.level, page - plan.first, top});
    return entries;
}

std::vector<Page> PageMaker::make(Flow& flow, const PagePlan& plan, const PartProgress& progress)
{
    std::vector<Page> pages;
    for (int number = plan.first; number <= plan.last; ++number) {
        progress(std::size_t(number - plan.first), std::size_t(plan.last - plan.first + 1));
        pages.push_back(page(flow, plan.pages[std::size_t(number) - 1], number));
    }
    return pages;
}

bool PageMaker::makeFirst(Flow flow, Document& document)
{
    PagePlan firstPages = plan(flow, 1, 1);
    if (firstPages.pages.size() < PagesThatSettleTheFirst)
        return false;
    m_scope.pageCount = 0;
    document.pages.push_back(page(flow, firstPages.pages.front(), 1));
    document.outline = outline(flow, firstPages);
    return true;
}

Page PageMaker::page(Flow& flow, const PageContent& content, int number)
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

void PageMaker::copyStrips(const std::vector<Strip>& strips, double y, Page& page) const
{
    for (const Strip& strip : strips) {
        for (Item item : strip.items) {
            moveItem(item, {m_area.left(), y});
            page.items.push_back(std::move(item));
        }
        y += strip.height;
    }
}

} // namespace orlo::reporting
