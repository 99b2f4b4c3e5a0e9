#pragma once

#include <cstddef>
#include <vector>

namespace orlo::reporting
{

/// Strips that are higher than a page's body by no more than this still fit, since heights are sums; points.
constexpr double HeightTolerance = 0.01;

/// All that paging knows of a strip; it never looks at the contents.
struct StripSize {
    double height = 0;
    bool keepWithNext = false; ///< a heading, or a row of a band above the next one
    bool breakBefore = false;  ///< begins a new page
};

/// Strips, end excluded, that stay on one page if they fit on one.
struct KeptTogether {
    std::size_t first = 0;
    std::size_t last = 0;
    double mayLeaveEmpty = 1; ///< largest share of a page's body left empty to keep them together
};

/// A heading repeated at the top of each page that begins with one of the strips.
struct RepeatedHeading {
    std::size_t first = 0;
    std::size_t last = 0;
    double height = 0;
};

/// The position of a strip.
struct PlacedStrip {
    std::size_t strip = 0;
    double y = 0; ///< from the top of the page's body
};

/// One page: the repeated headings, outermost first, and its strips.
struct PageContent {
    std::vector<std::size_t> headings;
    std::vector<PlacedStrip> strips;
};

/// Distributes strips over pages. Nothing is left out: a strip higher than a page gets a page of its own. Ranges must
/// be nested properly, outer ones first. There is at least one page.
[[nodiscard]] std::vector<PageContent> paginate(const std::vector<StripSize>& strips,
                                                const std::vector<KeptTogether>& kept,
                                                const std::vector<RepeatedHeading>& headings, double bodyHeight);

} // namespace orlo::reporting
