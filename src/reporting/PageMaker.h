#pragma once

#include "reporting/Layout.h"

namespace orlo::reporting
{

/// The contents of each page.
struct PagePlan {
    std::vector<PageContent> pages;
    int first = 1; ///< the first wanted page, from 1
    int last = 0;
};

/// Assembles pages from a flow and the page header and footer.
class PageMaker
{
public:
    /// Raises SyntaxError (3075) if margins, header and footer leave no room.
    PageMaker(const BoundReport& report, const RunFacts& facts, Typesetter& typesetter);

    [[nodiscard]] double textWidth() const { return m_area.width(); }                                     ///< points
    [[nodiscard]] double bodyHeight() const { return m_area.height() - m_headerHeight - m_footerHeight; } ///< points

    /// Distributes the flow over the pages. Those before first and after last aren't made; 0 for no limit.
    [[nodiscard]] PagePlan plan(const Flow& flow, int first, int last);
    /// The positions of group headings on the wanted pages.
    [[nodiscard]] std::vector<OutlineEntry> outline(const Flow& flow, const PagePlan& plan) const;
    /// Makes the wanted pages, moving their items out of the flow. Throws Cancelled.
    [[nodiscard]] std::vector<Page> make(Flow& flow, const PagePlan& plan, const PartProgress& progress);
    /// Makes the first page from the beginning of a flow; false while it may still change.
    bool makeFirst(Flow flow, Document& document);

private:
    [[nodiscard]] Page page(Flow& flow, const PageContent& content, int number);
    void copyStrips(const std::vector<Strip>& strips, double y, Page& page) const;

    const Definition& m_definition;
    QRectF m_area;
    BandLayout m_bands;
    RowScope m_scope;
    double m_headerHeight = 0;
    double m_footerHeight = 0;
};

} // namespace orlo::reporting
